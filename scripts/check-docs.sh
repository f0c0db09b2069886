#!/usr/bin/env bash
# Fails when Doxygen has anything to say about the public header, or when the
# example in the header or the README is not the one that is compiled.
set -euo pipefail
cd "$(dirname "$0")/.."

example=docs/examples/replace_all.c
diff <(sed -n '/^\/\/\/ @code/,/^\/\/\/ @endcode/p' include/quillcore.h |
         sed -E '1d;$d;s/^\/\/\/ ?//') "$example"
diff <(sed -n '/^```c$/,/^```$/p' README.md | sed '1d;$d') "$example"
echo "the header and the README show $example"

mkdir -p build
doxygen docs/Doxyfile
echo "every declaration in include/quillcore.h is documented"
