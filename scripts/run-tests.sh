#!/usr/bin/env bash
# The whole test suite, offscreen, in the address+undefined sanitizer build.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
build="$here/build-asan"
"$here/scripts/setup.sh" "$build" -DVELORA_SANITIZE=ON -DVELORA_BUILD_BENCH=OFF
cd "$build"
QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j "$(nproc)"
