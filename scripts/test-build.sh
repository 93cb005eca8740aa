# Sourced by the scripts that use the sanitized test build: configures it in
# $build (default build-test) the same way for all of them.
# shellcheck shell=bash
build="${TALVEX_TEST_BUILD_DIR:-$root/build-test}"
jobs="$(nproc 2>/dev/null || echo 2)"
configure_test_build() {
  cmake -S "$root" -B "$build" -G Ninja \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DTALVEX_SANITIZE=ON \
    -DTALVEX_BUILD_BENCH=ON
}
