#!/usr/bin/env bash
# Formatting, spelling and metadata: quick, and the same here and on the build server.
set -euo pipefail
cd "$(dirname "$0")/../.."

mapfile -t sources < <(git ls-files -- '*.cpp' '*.h')
clang-format --dry-run --Werror "${sources[@]}"

# The texts of the windows are fixed, with their spelling; .codespell-keep lists those words.
codespell --ignore-words .codespell-keep --quiet-level 2 \
  $(git ls-files -- '*.md' '*.cpp' '*.h' '*.sh' '*.cmake' '*CMakeLists.txt' '*.xml' '*.desktop' \
    demo-data)

for file in packaging/*.desktop; do desktop-file-validate "$file"; done
for file in packaging/*.metainfo.xml; do appstreamcli validate --no-net "$file" >/dev/null; done

tools/scripts/drawrooms.py | diff -q - docs/rooms.svg >/dev/null || {
  echo "docs/rooms.svg isn't the rooms of src/CMakeLists.txt: run tools/scripts/drawrooms.py" >&2
  exit 1
}

bash -n run.sh test.sh .ci/run tools/scripts/*.sh
