#!/usr/bin/env bash
# Builds the thread-sanitizer build and runs the whole test suite under it;
# fails on any test failure and on any sanitizer report. The suppressions in
# scripts/tsan.supp cover only races inside Debian's Qt, which is not built
# with the sanitizer. The worker stress test runs its full 100 rounds here.
# Usage: scripts/run-tsan-tests.sh [BUILD_DIR] [ctest arguments...]
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-"$here/build-tsan"}
shift || true

"$here/scripts/setup.sh" "$build" -DVELORA_TSAN=ON -DVELORA_BUILD_BENCH=OFF

export TSAN_OPTIONS="suppressions=$here/scripts/tsan.supp:halt_on_error=0:second_deadlock_stack=1${TSAN_OPTIONS:+:$TSAN_OPTIONS}"
export VELORA_STRESS_RUNS=${VELORA_STRESS_RUNS:-100}
export QT_QPA_PLATFORM=offscreen
status=0
(cd "$build" && ctest -j 2 --output-on-failure "$@") || status=1
reports=$(grep -c "WARNING: ThreadSanitizer" "$build/Testing/Temporary/LastTest.log" || true)
echo "thread sanitizer reports: $reports"
[ "$reports" -eq 0 ] || status=1
exit $status
