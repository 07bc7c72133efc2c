#!/usr/bin/env bash
# The whole test suite, offscreen, in the address+undefined sanitizer build.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
build="$here/build-asan"
"$here/scripts/setup.sh" "$build" -DVELORA_SANITIZE=ON -DVELORA_BUILD_BENCH=OFF
cd "$build"
# The cloud service's tests run a second time (the -pg variants) on a
# throw-away PostgreSQL cluster when PostgreSQL is installed.
if [ -x /usr/lib/postgresql/15/bin/initdb ]; then
  scratch=$(mktemp -d)
  chmod 755 "$scratch"
  trap '"$here/scripts/pg-scratch.sh" stop "$scratch/pg"; rm -rf "$scratch"' EXIT
  VELORA_TEST_PG=$("$here/scripts/pg-scratch.sh" start "$scratch/pg")
  export VELORA_TEST_PG
fi
QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j "$(nproc)"
