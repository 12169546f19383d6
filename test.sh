#!/usr/bin/env bash
# Builds everything and runs the tests. Installs the Debian packages it needs when they are missing.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/packages.sh
ensure_packages

BUILD=${BUILD:-build}
cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=${BUILD_TYPE:-RelWithDebInfo} ${CMAKE_ARGS:-} >/dev/null
cmake --build "$BUILD" --parallel "$(nproc)"
export QT_QPA_PLATFORM=offscreen
ctest --test-dir "$BUILD" --output-on-failure --parallel 2 ${CTEST_ARGS:-}
