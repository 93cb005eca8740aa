#!/usr/bin/env bash
# A webinar's chat storm through the whole demo client, built with
# AddressSanitizer: the panel and the overlay on screen, a thousand
# attendees writing at a steady rate, the meeting keeping its newest 500
# messages.
#
#   scripts/run-soak.sh [seconds] [messages-per-second]     (default 60 50)
#
# Fails when resident memory after the warm-up grows 5 % or more, when the
# live widgets keep multiplying, or when LeakSanitizer reports a leak at exit.
# The figures go to $TALVEX_SOAK_OUT (default build-test/soak): soak.csv, a
# sample a second, and soak.txt, the verdict.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
seconds="${1:-60}"
rate="${2:-50}"
"$root/scripts/install-deps.sh"
. "$root/scripts/test-build.sh"
[ -f "$build/build.ninja" ] || configure_test_build
cmake --build "$build" -j "$jobs" --target talvex_demo chat_module

out="${TALVEX_SOAK_OUT:-$build/soak}"
mkdir -p "$out"
export QT_QPA_PLATFORM=offscreen
# Freed blocks go back to the allocator at once instead of waiting in the
# quarantine, which would otherwise fill for minutes and read as growth.
export ASAN_OPTIONS="detect_leaks=1:quarantine_size_mb=0:detect_odr_violation=0"
export LSAN_OPTIONS="suppressions=$root/tests/lsan.supp:print_suppressions=0"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
exec "$build/bin/talvex_demo" --headless --soak "$seconds" --rate "$rate" --out "$out"
