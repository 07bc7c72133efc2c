#!/usr/bin/env bash
# Builds the libFuzzer targets with clang in their own build folder and runs
# each from its corpus, then writes the figures to bench/fuzz/RESULTS.md.
# Not part of CI. Usage: bench/fuzz/run.sh [target...]
#   RUNS=N       executions per target (default 10000000)
#   BUILD=DIR    build folder (default build-fuzz)
#   MAX_TIME=S   stop a target after S seconds as well (default: no limit)
#   RSS_LIMIT_MB=N  memory limit of a run (default 4096; under the address
#                sanitizer a long run holds more than the target itself does)
#   MAX_LEN=N    longest input the mutator makes (default 65536); the long
#                runs slow down as libFuzzer lets their inputs grow towards it
#   LEAKS=0      skip the leak check; the slow unwinding it needs to see
#                through Qt's frames costs about ten times the speed
# Seeds come from the embedded service (fuzz_seedcorpus). New crashes land in bench/fuzz/crashes/; add each, once fixed, to the
# target's corpus as a regression case.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
build=${BUILD:-"$root/build-fuzz"}
runs=${RUNS:-10000000}
targets=("$@")
[ ${#targets[@]} -eq 0 ] && targets=(reply serverlist chapters composition features prices projectinfo service)

CC=clang CXX=clang++ cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DVELORA_FUZZ=ON -DVELORA_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" -j 2 --target fuzz_seedcorpus "${targets[@]/#/fuzz_}"
# Seeds from the embedded service (file names are content hashes, so a rerun
# adds only what changed).
QT_QPA_PLATFORM=offscreen ASAN_OPTIONS=detect_leaks=0 "$build/bench/fuzz/fuzz_seedcorpus" "$here/corpus"

export QT_QPA_PLATFORM=offscreen
if [ "${LEAKS:-1}" = 0 ]; then
  # Without the leak check allocations keep no stack either: recording them
  # took a third of a long run's time. Re-run a crash with
  # ASAN_OPTIONS=detect_leaks=0 to see where its memory came from.
  export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=0:malloc_context_size=0}
else
  export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:fast_unwind_on_malloc=0}
fi
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
mkdir -p "$here/crashes"
results="$here/RESULTS.md"
# Replaces the target's row of the table in RESULTS.md (or adds it after the
# table's last row); the prose around the table stays.
record() {
  local t=$1 row=$2
  awk -v t="| $t |" -v row="$row" '
    index($0, t) == 1 { print row; done = 1; next }
    /^\|/ { intable = 1 }
    !/^\|/ && intable && !done { print row; done = 1; intable = 0 }
    { print }
    END { if (!done) print row }' "$results" >"$results.new"
  mv "$results.new" "$results"
}
status=0
for t in "${targets[@]}"; do
  corpus="$here/corpus/$t"
  work=$(mktemp -d)
  log="$work/log"
  seeds=$(find "$corpus" -type f 2>/dev/null | wc -l)
  set +e
  "$build/bench/fuzz/fuzz_$t" -runs="$runs" ${MAX_TIME:+-max_total_time=$MAX_TIME} -print_final_stats=1 \
    -detect_leaks="${LEAKS:-1}" \
    -artifact_prefix="$here/crashes/$t-" -rss_limit_mb="${RSS_LIMIT_MB:-4096}" -max_len="${MAX_LEN:-65536}" "$work" "$corpus" >"$log" 2>&1
  rc=$?
  set -e
  execs=$(grep -o 'stat::number_of_executed_units: *[0-9]*' "$log" | grep -o '[0-9]*$' || echo 0)
  speed=$(grep -o 'stat::average_exec_per_sec: *[0-9]*' "$log" | grep -o '[0-9]*$' || echo 0)
  cov=$(grep -o 'cov: [0-9]*' "$log" | tail -1 | grep -o '[0-9]*' || echo 0)
  ft=$(grep -o 'ft: [0-9]*' "$log" | tail -1 | grep -o '[0-9]*' || echo 0)
  crashes=0
  if [ $rc -ne 0 ]; then
    crashes=1
    status=1
    tail -40 "$log"
  fi
  found=$(find "$work" -type f ! -name log | wc -l)
  record "$t" "| $t | $execs | $speed | $cov | $ft | $seeds + $found | $crashes | $(date -u '+%Y-%m-%d %H:%M') | ${LEAKS:-1} |"
  echo "fuzz_$t: $execs runs, $speed/s, cov $cov, rc $rc"
  rm -rf "$work"
done
exit $status
