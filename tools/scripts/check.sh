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

# Lines that are neither blank nor a comment: tests and fuzzers are a third of all, and no more.
lines() {
  git ls-files -- "$@" | grep -E '\.(cpp|h)$' | xargs cat | grep -vcE '^\s*(//|$)'
}
scripts() {
  git ls-files -- "$@" | grep -E '(\.(py|sh|cmake)|CMakeLists\.txt)$' | xargs cat | grep -vcE '^\s*(#|$)'
}
tests=$(($(lines tests fuzz) + $(scripts tests fuzz)))
all=$((tests + $(lines src tools) + $(scripts src tools)))
if [ $((tests * 100)) -gt $((all * 33)) ]; then
  echo "tests and fuzzers are $tests of $all lines, more than 33 in 100" >&2
  exit 1
fi

tools/scripts/faults.py --check

bash -n run.sh test.sh .ci/run tools/scripts/*.sh
