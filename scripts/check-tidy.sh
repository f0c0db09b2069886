#!/usr/bin/env bash
# Runs the profile in .clang-tidy over every source that is compiled for the
# library, the tool, the tests and the fuzzers.
set -euo pipefail
cd "$(dirname "$0")/.."

for preset in clang fuzz; do
  [[ -e build/$preset/compile_commands.json ]] || cmake --preset "$preset" >/dev/null
done

check() {  # build folder, expression for the sources
  local output
  if ! output=$(run-clang-tidy -quiet -j"$(nproc)" -p "build/$1" "$2" 2>&1); then
    output=$(sed 's/\x1b\[[0-9;]*m//g' <<<"$output")
    grep -E ' (error|warning): ' <<<"$output" | sort -u >&2 || echo "$output" >&2
    return 1
  fi
}
check clang "^$PWD/(blocks|utf8|search|pattern|edit|selection|host|tests)/"
check fuzz "^$PWD/fuzz/"
echo "clang-tidy is content"
