#!/usr/bin/env bash
# Takes the pictures of README.md anew from the tour. $1: the tour's program.
set -euo pipefail
tour=$(realpath "$1")
cd "$(dirname "$0")/../.."

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
QT_QPA_PLATFORM=offscreen "$tour" "$folder"
# picture=step
for pair in encounter=encounter-chosen initiative=initiative stepped-back=stepped-back \
  conditions-form=conditions-form fight=conditions saving-throws=overruled short-rest=short-rest \
  players=players-display; do
  cp "$folder"/[0-9][0-9]-"${pair#*=}".png "docs/pictures/${pair%%=*}.png"
done
