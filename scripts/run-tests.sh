#!/usr/bin/env bash
# Builds everything with AddressSanitizer and UndefinedBehaviorSanitizer and
# runs every test (widgets offscreen).
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/install-deps.sh"
. "$root/scripts/test-build.sh"
configure_test_build
cmake --build "$build" -j "$jobs"
export QT_QPA_PLATFORM=offscreen
cd "$build"
ctest --output-on-failure -j "$jobs"
