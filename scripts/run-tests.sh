#!/usr/bin/env bash
# Builds everything with AddressSanitizer and UndefinedBehaviorSanitizer and
# runs every test (widgets offscreen).
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/install-deps.sh"

build="${TALVEX_TEST_BUILD_DIR:-$root/build-test}"
jobs="$(nproc 2>/dev/null || echo 2)"
cmake -S "$root" -B "$build" -G Ninja \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DTALVEX_SANITIZE=ON \
  -DTALVEX_BUILD_BENCH=ON
cmake --build "$build" -j "$jobs"
export QT_QPA_PLATFORM=offscreen
cd "$build"
ctest --output-on-failure -j "$jobs"
