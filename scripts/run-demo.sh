#!/usr/bin/env bash
# Builds the demo client and runs it on the simulated meeting. Without a
# display it renders offscreen, writes demo-output/demo.png and
# demo-output/transcript.md, and exits.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/install-deps.sh"

build="${TALVEX_DEMO_BUILD_DIR:-$root/build-demo}"
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DTALVEX_BUILD_TESTS=OFF -DTALVEX_BUILD_BENCH=OFF
cmake --build "$build" -j "$(nproc 2>/dev/null || echo 2)" --target talvex_demo chat_module
exec "$build/bin/talvex_demo" --out "${TALVEX_DEMO_OUT:-$root/demo-output}" "$@"
