#!/usr/bin/env bash
# Installs the library, shared and static, moves the installed tree elsewhere,
# and builds and runs hosts in C11 and C++17 against it: through
# find_package(Quillcore CONFIG), through pkg-config and, from the sources,
# through add_subdirectory.
set -euo pipefail
cd "$(dirname "$0")/.."

root=$PWD
work=$root/build/consumers
expected="A dog, the dog's hat, and a bobcat."
rm -rf "$work"
mkdir -p "$work"

# Standard output is shown only on failure.
quietly() {
  "$@" >"$work/log" 2>&1 || { cat "$work/log" >&2; echo "failed: $*" >&2; return 1; }
}

build() {  # folder, what to configure
  quietly cmake -S "$2" -B "$1" -G Ninja -DCMAKE_BUILD_TYPE=Release "${@:3}"
  quietly cmake --build "$1"
}

run_tests() {  # build folder
  quietly ctest --test-dir "$1" --output-on-failure --no-tests=error
}

install_library() {  # shared or static, build tree
  quietly cmake --install "$2" --prefix "$work/first/$1"
  mkdir -p "$work/moved"
  mv "$work/first/$1" "$work/moved/$1"
}

check_find_package() {  # shared or static, languages
  local tree="$work/find_package-$1-${2/;/-}"
  build "$tree" tests/consumer "-DCONSUMER_LANGUAGES=$2" \
    "-DQuillcore_ROOT=$work/moved/$1"
  grep -q "Quillcore_DIR:PATH=$work/moved/$1/" "$tree/CMakeCache.txt"
  run_tests "$tree"
}

check_pkg_config() {  # shared or static, compiler, source, standard
  local pc flags=() program="$work/pkg-config-$1-$2"
  pc=$(find "$work/moved/$1" -name quillcore.pc)
  [[ $1 == static ]] && flags=(--static)
  export PKG_CONFIG_PATH=${pc%/*}
  # shellcheck disable=SC2046  # the flags are words
  "$2" "-std=$4" -Wall -Wextra -Wpedantic -Werror "$3" -o "$program" \
    $(pkg-config "${flags[@]}" --cflags --libs quillcore) \
    "-Wl,-rpath,$(pkg-config --variable=libdir quillcore)"
  [[ $("$program") == "$expected" ]] || { echo "$program printed: $("$program")" >&2; return 1; }
}

scripts/install-dependencies.sh build
quietly cmake --preset release
quietly cmake --build --preset release
install_library shared build/release

# The static library comes out of a project that has the sources in its tree.
build "$work/subproject" tests/consumer/subproject \
  -DQUILLCORE_SHARED=OFF -DQUILLCORE_INSTALL=ON
run_tests "$work/subproject"
install_library static "$work/subproject"
echo "add_subdirectory: the library alone"

for kind in shared static; do
  check_find_package $kind "C;CXX"
  check_find_package $kind C
  for compiler in gcc clang; do
    command -v $compiler >/dev/null || continue
    check_pkg_config $kind $compiler docs/examples/replace_all.c c11
  done
  check_pkg_config $kind g++ tests/consumer/replace_all.cpp c++17
  echo "$kind: find_package and pkg-config, C and C++"
done
