#!/usr/bin/env bash
# Builds the command-line tool and shows it at work on a real text: the King
# James Bible, repeated to 64 MiB for the main job. Installs what is missing.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-dependencies.sh demo
cmake --preset release >/dev/null
cmake --build --preset release --target quill -- --quiet
quill=$PWD/build/release/host/quill

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

title() { printf '\n== %s\n' "$1"; }
# Prints a command as a reader would type it, and runs it.
show() {
  printf '$ quill'
  printf ' %q' "$@"
  echo
  "$quill" "$@"
}

bible -f ge1:1-re22:21 </dev/null >bible.txt
copies=$(((64 << 20) / $(wc -c <bible.txt) + 1))
for ((i = 0; i < copies; i++)); do cat bible.txt; done >big.txt
size=$(wc -c <big.txt)

title "The main job: replace a word in $((size >> 20)) MiB, whole words in any case"
grep -m 2 -n 'LORD' big.txt | cut -c1-100
started=$(date +%s%N)
show replace --ignore-case --whole-word --count lord Master big.txt
nanoseconds=$(($(date +%s%N) - started))
grep -m 2 -n 'Master' big.txt | cut -c1-100
awk -v n="$nanoseconds" -v size="$size" 'BEGIN {
  printf "%.2f s, %.0f MB/s: reading, checking, searching, replacing, and " \
         "writing to the disk\n", n / 1e9, size / n * 1e3 }'

title "Find with a pattern: the last verses that name a rainbow"
show find --pattern '[Rr]ainbow[^\n]*' bible.txt | tail -n 2 | cut -c1-120

title 'Words: modern forms from a table'
printf '%s\t%s\n' thou you thee you thy your hath has unto to >modern.tsv
sed -n '3p' bible.txt
grep -m 1 'thee' bible.txt
show words --ignore-case --count modern.tsv bible.txt --output modern.txt
grep -m 1 "$(grep -m 1 'thee' bible.txt | cut -d' ' -f1) " modern.txt

title 'Wrap lines, then sort them'
show wrap-lines --width 60 bible.txt --output wrapped.txt
head -n 4 wrapped.txt
show sort bible.txt --output sorted.txt
head -n 2 sorted.txt | cut -c1-100
