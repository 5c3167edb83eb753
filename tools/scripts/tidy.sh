#!/usr/bin/env bash
# Static checks of a short positive list (.clang-tidy), each source again only when it or a header
# changed. $1: a build folder of Clang's, with its precompiled headers built.
set -euo pipefail
cd "$(dirname "$0")/../.."
build=$1
stamps=$build/tidy
mkdir -p "$stamps"

headers=$(cat .clang-tidy $(git ls-files 'src/*.h') | sha256sum | cut -c1-16)
todo=()
for source in $(git ls-files 'src/*.cpp'); do
  key=$headers-$(sha256sum <"$source" | cut -c1-16)
  stamp=$stamps/$(basename "$source").$key
  [ -e "$stamp" ] || todo+=("$source:$stamp")
done
[ ${#todo[@]} -eq 0 ] && exit 0

check() {
  local source=${1%%:*} stamp=${1#*:}
  clang-tidy --quiet -p "$2" "$source" >"$stamp.log" 2>&1 || {
    cat "$stamp.log" >&2
    rm -f "$stamp.log"
    return 1
  }
  mv "$stamp.log" "$stamp"
}
export -f check
printf '%s\n' "${todo[@]}" | xargs -P "$(nproc)" -I{} bash -c 'check "$1" "$2"' _ {} "$build"
