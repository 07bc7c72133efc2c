#!/bin/sh
# Learns the bill matcher's re-ranking weights from the shared project bills
# and writes service/matching/rerank-weights.json. Prints the cross-validated
# quality per book (weights learned on the other books) on the way.
#   scripts/train-match-weights.sh [data folder]   (default: VELORA_DATA_DIR of the build)
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build-rel}
cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVELORA_BUILD_BENCH=ON >/dev/null
cmake --build "$build" -j2 --target velora-match-eval
data=${1:-$(sed -n 's/^VELORA_DATA_DIR:PATH=//p' "$build/CMakeCache.txt")}
"$build/bench/matching/velora-match-eval" --write-weights "$root/service/matching/rerank-weights.json" \
    "$data"/project-bills/*.json
