#!/usr/bin/env bash
# Fails when a C or C++ file is not formatted as .clang-format says.
set -euo pipefail
cd "$(dirname "$0")/.."

git ls-files -z '*.h' '*.c' '*.cpp' | xargs -0 clang-format --dry-run -Werror
echo "$(git ls-files '*.h' '*.c' '*.cpp' | wc -l) files are formatted"
