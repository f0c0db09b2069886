#!/usr/bin/env bash
# Compares what the shared library exports with cmake/exports.symbols: nothing
# may be missing, and nothing more may leak out.
# Usage: scripts/check-symbols.sh [libquillcore.so]
set -euo pipefail
cd "$(dirname "$0")/.."
export LC_ALL=C

library=${1:-build/release/libquillcore.so}
[[ -e $library ]] || { echo "$library is not built" >&2; exit 1; }

exported=$(nm --dynamic --defined-only --format=posix "$library" | cut -d' ' -f1 | sort)
listed=$(grep -v '^#' cmake/exports.symbols | sort)

if ! difference=$(diff <(echo "$listed") <(echo "$exported")); then
  echo "$library does not export what cmake/exports.symbols lists:"
  sed -n 's/^< /  missing: /p; s/^> /  not in the list: /p' <<<"$difference" | c++filt
  exit 1
fi
echo "$library exports exactly the $(wc -l <<<"$listed") listed symbols"
