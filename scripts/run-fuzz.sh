#!/usr/bin/env bash
# Builds the libFuzzer targets with clang (ASan + UBSan) in their own build
# directory and runs each on a scratch copy of its seed corpus.
#
#   scripts/run-fuzz.sh [seconds-per-target] [target...]
#
# Fails when a target finds a crash; the input that did it is kept in
# $TALVEX_FUZZ_OUT/artifacts/<target>/ (default build-fuzz/fuzz-out).
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
seconds="${1:-8}"
shift || true
all_targets=(variant_json text_split message_convert notice rich_text_layout html_paste bullet_convert)
targets=("${@:-${all_targets[@]}}")

# clang and its libFuzzer runtime, besides what the project builds with.
"$root/scripts/install-deps.sh"
need=()
command -v clang++ >/dev/null || need+=(clang)
ls /usr/lib/llvm-*/lib/clang/*/lib/linux/libclang_rt.fuzzer-x86_64.a >/dev/null 2>&1 || need+=(libclang-rt-14-dev)
if [ ${#need[@]} -gt 0 ]; then
  SUDO=
  [ "$(id -u)" -ne 0 ] && SUDO=sudo
  echo "Installing: ${need[*]}"
  export DEBIAN_FRONTEND=noninteractive
  $SUDO apt-get update -qq
  $SUDO apt-get install -y -qq --no-install-recommends "${need[@]}"
fi

build="${TALVEX_FUZZ_BUILD_DIR:-$root/build-fuzz}"
out="${TALVEX_FUZZ_OUT:-$build/fuzz-out}"
jobs="$(nproc 2>/dev/null || echo 2)"
CC=clang CXX=clang++ cmake -S "$root" -B "$build" -G Ninja \
  -DTALVEX_FUZZ=ON \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O1 -gline-tables-only" >/dev/null
cmake --build "$build" -j "$jobs" --target fuzz

export QT_QPA_PLATFORM=offscreen
export LSAN_OPTIONS="suppressions=$root/tests/lsan.supp:print_suppressions=0"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"

# Inputs longer than this find nothing new here and only slow a run down.
max_len_of() {
  case "$1" in
    variant_json|html_paste) echo 8192 ;;
    rich_text_layout) echo 2048 ;;
    *) echo 4096 ;;
  esac
}

failed=()
printf '\n%-18s %10s %8s %8s %8s  %s\n' target execs exec/s cov ft result
for t in "${targets[@]}"; do
  corpus="$out/corpus/$t"
  artifacts="$out/artifacts/$t"
  log="$out/logs/$t.log"
  # New inputs go to the scratch copy, never into the repository.
  rm -rf "$corpus"
  mkdir -p "$corpus" "$artifacts" "$(dirname "$log")"
  cp "$root/fuzz/corpus/$t/"* "$corpus/"
  dict=()
  [ -f "$root/fuzz/dict/$t.dict" ] && dict=(-dict="$root/fuzz/dict/$t.dict")
  result=ok
  if ! "$build/bin/fuzz_$t" "$corpus" "${dict[@]}" -max_total_time="$seconds" -max_len="$(max_len_of "$t")" \
      -timeout=10 -rss_limit_mb=3072 -print_final_stats=1 -artifact_prefix="$artifacts/" >"$log" 2>&1; then
    result="CRASH (see $log, input in $artifacts/)"
    failed+=("$t")
  fi
  last="$(grep -a -E '^#[0-9]+' "$log" | tail -1 || true)"
  cov="$(sed -n 's/.* cov: \([0-9]*\).*/\1/p' <<<"$last")"
  ft="$(sed -n 's/.* ft: \([0-9]*\).*/\1/p' <<<"$last")"
  execs="$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")"
  rate="$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log")"
  printf '%-18s %10s %8s %8s %8s  %s\n' "$t" "${execs:-?}" "${rate:-?}" "${cov:-?}" "${ft:-?}" "$result"
done

if [ ${#failed[@]} -gt 0 ]; then
  echo
  for t in "${failed[@]}"; do
    echo "=== $t"
    grep -a -E 'ERROR|SUMMARY|runtime error|expected|actual|^    #[0-9] ' "$out/logs/$t.log" | head -30
  done
  echo "fuzzing found crashes in: ${failed[*]}"
  exit 1
fi
