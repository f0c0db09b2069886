#!/usr/bin/env bash
# Builds everything in release mode and passes all tests, after installing
# what is missing (as root or with sudo).
# Usage: scripts/test.sh [PRESET]    release unless another preset is named
set -euo pipefail
cd "$(dirname "$0")/.."

preset=${1:-release}
scripts/install-dependencies.sh build
cmake --preset "$preset"
cmake --build --preset "$preset"
ctest --preset "$preset"
