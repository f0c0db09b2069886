#!/usr/bin/env bash
# Installs the Debian packages that a purpose needs, and only those missing:
#
#   scripts/install-dependencies.sh build   the library, the tool and the tests
#   scripts/install-dependencies.sh demo    the same, and a text to work on
#   scripts/install-dependencies.sh check   the same as build, and what the
#                                           checks, fuzzers, benchmarks and
#                                           documentation use
#
# Runs as root or through sudo. Touches no network when nothing is missing.
set -euo pipefail

build=(g++ cmake ninja-build pkg-config libicu-dev libcli11-dev libgtest-dev)
demo=(bible-kjv)
check=(clang clang-tidy clang-format llvm libclang-rt-dev libbenchmark-dev
       doxygen git binutils g++-aarch64-linux-gnu qemu-user)

case "${1-}" in
  build) wanted=("${build[@]}") ;;
  demo) wanted=("${build[@]}" "${demo[@]}") ;;
  check) wanted=("${build[@]}" "${check[@]}") ;;
  *) echo "usage: $0 build|demo|check" >&2; exit 2 ;;
esac

is_installed() {
  [[ $(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null) == installed ]]
}

missing=()
for package in "${wanted[@]}"; do
  is_installed "$package" || missing+=("$package")
done
((${#missing[@]})) || exit 0

as_root=()
((EUID == 0)) || as_root=(sudo)
echo "installing ${missing[*]}" >&2
"${as_root[@]}" apt-get -q update >&2
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
  apt-get -qy install --no-install-recommends "${missing[@]}" >&2
