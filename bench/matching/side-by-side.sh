#!/bin/bash
# The engine and Xapian on the same generated corpus and queries, one after
# the other on one core, at 100k and 1M bills; prints a table with the ratio.
# Both programs generate the corpus with the same seeds and print its
# checksum, which must agree. Xapian runs niced (its 1M index takes minutes).
# Needs xapian-core (Debian: libxapian-dev) for velora-match-xapian.
#
#   bench/matching/side-by-side.sh [build dir] [core]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
build=${1:-$here/../../build-bench}
core=${2:-1}
queries=${QUERIES:-2000}
cmake --build "$build" --target velora-match-bench velora-match-xapian >/dev/null
out=$(mktemp -d /tmp/velora-side.XXXXXX)
echo "raw output in $out; load average $(cut -d' ' -f1-3 /proc/loadavg)" >&2

field() { # file, line pattern, awk program on that line
    grep -m1 -- "$2" "$1" | awk "$3"
}
pct() { # file, line pattern, "p50"|"p99" → the number after it
    grep -m1 -- "$2" "$1" | sed -E "s/.*$3 ([0-9.]+) ms.*/\1/"
}

rows=()
for bills in ${SIZES:-100000 1000000}; do
    plain=$((bills >= 1000000 ? 150 : 500))
    engine=$out/engine-$bills.txt xapian=$out/xapian-$bills.txt
    taskset -c "$core" "$build/bench/matching/velora-match-bench" $bills $queries >"$engine"
    nice -n 10 taskset -c "$core" "$build/bench/matching/velora-match-xapian" $bills $queries $plain >"$xapian"
    [ "$(field "$engine" 'corpus checksum' '{print $3}')" = "$(field "$xapian" 'corpus checksum' '{print $3}')" ] ||
        { echo "the two corpora differ" >&2; exit 1; }
    build_s=$(field "$engine" '^bills' '{gsub(/,/, ""); print ($4 + $7) / 1000}')
    xbuild_s=$(field "$xapian" 'xapian bills' '{gsub(/,/, ""); print $5 / 1000}')
    per_bill=$(field "$engine" 'index bytes per bill' '{print $5}')
    xper_bill=$(field "$xapian" 'database bytes per bill' '{print $5}')
    e50=$(pct "$engine" '^getppqd  (code' p50) e99=$(pct "$engine" '^getppqd  (code' p99)
    c50=$(pct "$engine" '^getppqd  thread' p50) c99=$(pct "$engine" '^getppqd  thread' p99)
    m50=$(pct "$engine" '^MatchQdtz (name' p50) m99=$(pct "$engine" '^MatchQdtz (name' p99)
    mc50=$(pct "$engine" '^MatchQdtz thread' p50) mc99=$(pct "$engine" '^MatchQdtz thread' p99)
    x50=$(pct "$xapian" 'elite set 20 (getppqd' p50) x99=$(pct "$xapian" 'elite set 20 (getppqd' p99)
    xc50=$(pct "$xapian" 'elite set 20 thread' p50) xc99=$(pct "$xapian" 'elite set 20 thread' p99)
    o50=$(pct "$xapian" 'plain OR    (getppqd' p50) o99=$(pct "$xapian" 'plain OR    (getppqd' p99)
    oc50=$(pct "$xapian" 'plain OR    thread' p50) oc99=$(pct "$xapian" 'plain OR    thread' p99)
    ratio() { awk -v a="$1" -v b="$2" 'BEGIN {printf "%.2f", a / b}'; }
    rows+=("| $bills | engine getppqd top 10 | $build_s s | $per_bill B in memory | $e50 | $e99 | $c50 | $c99 | 1 |")
    rows+=("| $bills | engine MatchQdtz top 10 | | | $m50 | $m99 | $mc50 | $mc99 | |")
    rows+=("| $bills | Xapian elite set 20, top 10 | $xbuild_s s | $xper_bill B on disk | $x50 | $x99 | $xc50 | $xc99 | $(ratio "$xc99" "$c99") |")
    rows+=("| $bills | Xapian plain OR, top 10 ($plain queries) | | | $o50 | $o99 | $oc50 | $oc99 | $(ratio "$oc99" "$c99") |")
done
echo "| bills | query | index build | size per bill | wall p50 ms | wall p99 ms | CPU p50 ms | CPU p99 ms | CPU p99 / engine getppqd |"
echo "|---:|---|---:|---:|---:|---:|---:|---:|---:|"
printf '%s\n' "${rows[@]}"
