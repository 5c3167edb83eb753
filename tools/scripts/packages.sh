# Sourced by run.sh and test.sh: installs the Debian packages that are missing.
# The check costs milliseconds when everything is there.

BUILD_PACKAGES="g++ cmake ninja-build ccache mold pkg-config libgl-dev
  qt6-base-dev qt6-svg-dev qt6-image-formats-plugins libbenchmark-dev"
RUN_PACKAGES="fonts-dejavu-core"
TEST_PACKAGES="clang clang-format clang-tidy libclang-rt-14-dev codespell appstream
  desktop-file-utils git dbus-daemon"

need_packages() {
  local missing="" package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' ||
      missing="$missing $package"
  done
  [ -z "$missing" ] && return 0
  echo "Installing:$missing"
  local sudo=""
  if [ "$(id -u)" != 0 ]; then
    command -v sudo >/dev/null || {
      echo "Please install these packages as root, then call this script again." >&2
      return 1
    }
    sudo=sudo
  fi
  $sudo apt-get update -qq &&
    $sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
      $missing >/dev/null
}
