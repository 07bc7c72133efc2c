#!/bin/sh
# velora-host from its launch to the main window's first paint, offscreen,
# on one application folder: the first run (which also creates the embedded
# cloud's data) apart, then RUNS runs as the program reports them
# (--first-paint, from the launch clock handed over in VELORA_LAUNCH_NS),
# then hyperfine over the whole process (start to exit after that paint).
#
#   bench/host/coldstart.sh [build-bench/app/velora-host]
set -e
HOST=${1:-build-bench/app/velora-host}
RUNS=${RUNS:-10}
DIR=$(mktemp -d)
trap 'rm -rf "$DIR"' EXIT
export QT_QPA_PLATFORM=offscreen
echo "load $(cut -d' ' -f1-3 /proc/loadavg)"
launch() { VELORA_LAUNCH_NS=$(date +%s%N) "$HOST" --app-dir "$DIR" --first-paint; }
echo "first run: $(launch | grep 'first paint')"
TIMES=$(for i in $(seq "$RUNS"); do launch | sed -n 's/first paint \([0-9]*\) ms/\1/p'; done | sort -n)
echo "later runs (ms, sorted): $(echo $TIMES)"
echo "median: $(echo "$TIMES" | awk '{a[NR]=$1} END {print a[int((NR+1)/2)]}') ms"
if command -v hyperfine >/dev/null; then
    hyperfine --warmup 1 --runs "$RUNS" -N "$HOST --app-dir $DIR --first-paint" 2>&1 | grep -v '^ *$'
fi
echo "load $(cut -d' ' -f1-3 /proc/loadavg)"
