#!/bin/bash
# Throughput and latency of velora-cloud under wrk on loopback: the server on
# core 0, wrk on core 1, 32 connections, light methods beside GET /health and
# "getppqd". wrk comes from Debian: apt-get install -y wrk
#
#   bench/server/wrk-bench.sh [velora-cloud binary] [seconds per load]
#   DATABASE=postgresql://USER@HOST:PORT/DB bench/server/wrk-bench.sh ...
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
cloud=${1:-$here/../../build-bench/server/velora-cloud}
seconds=${2:-10}
port=${PORT:-18795}
connections=32
command -v wrk >/dev/null || { echo "wrk is missing: apt-get install -y wrk" >&2; exit 1; }
[ -x "$cloud" ] || { echo "no velora-cloud at $cloud (build target velora-cloud)" >&2; exit 1; }

data=$(mktemp -d /tmp/velora-wrk.XXXXXX)
# DATABASE=postgresql://... : that (empty) database instead of a data folder.
store=(--data "$data/cloud")
[ -n "${DATABASE:-}" ] && store=(--database "$DATABASE")
taskset -c 0 "$cloud" "${store[@]}" --seed full --listen 127.0.0.1:$port >"$data/server.log" 2>&1 &
server=$!
trap 'kill $server 2>/dev/null; wait $server 2>/dev/null; rm -rf "$data"' EXIT
for _ in $(seq 300); do curl -sf "http://127.0.0.1:$port/health" >/dev/null && break; sleep 0.1; done

envelope() { # token, data object
    printf '{"cmd":"cloudSoft","app_type":1,"orgin_token":"%s","data":%s}' "$1" "$2"
}
call() { # session, body
    curl -sf -H "X-Velora-Session: $1" -H 'Content-Type: application/json' --data-binary "$2" "http://127.0.0.1:$port/cloud"
}
session=$(call "" "$(envelope kv_token '{"method":"login","username":"demo","password":"Velora@2024"}')" | jq -r .data.session)
[ -n "$session" ] && [ "$session" != null ] || { echo "login failed" >&2; exit 1; }

ppqd='{"method":"getppqd","usetype":"3","ltdID":-1,"tagNum":10,"cond":{"qdly":3},"data":[{"qdbh":"030801001001","xmmc":"镀锌钢管","xmtz":"1.安装部位:室内\n2.介质:给水\n3.规格、压力等级:DN50\n4.连接形式:螺纹连接","dw":"m","gznr":"管道安装"}]}'
loads=(
    "getserverlist|kv_token|{\"method\":\"getserverlist\"}"
    "getBZQDKList|kv_token_user|{\"method\":\"getBZQDKList\",\"reqeuestype\":0,\"qyid\":0}"
    "materiallist|kv_token_user|{\"method\":\"materiallist\"}"
    "listeditpermissionjudgmentforperson|kv_token_user|{\"method\":\"listeditpermissionjudgmentforperson\",\"qiyeID\":-1,\"usetype\":\"1\"}"
    "getppqd|kv_token|$ppqd"
)

cpu_ticks() { awk '{print $14 + $15}' /proc/$server/stat; }

# req/s and latency as wrk saw them, and the server's CPU time per request
# (user + system, all threads): on a shared machine the second is the steadier
# figure, and 1e6 / (µs per request) is what one core would serve. The load
# average (1 min) is read as each load ends.
run() { # label, then wrk arguments
    local label=$1; shift
    local out before after
    before=$(cpu_ticks)
    out=$(taskset -c 1 wrk -t1 -c$connections -d${seconds}s --latency "$@")
    after=$(cpu_ticks)
    local rps p50 p99 count errors us
    rps=$(awk '/Requests\/sec/ {print $2}' <<<"$out")
    p50=$(awk '$1 == "50%" {print $2}' <<<"$out")
    p99=$(awk '$1 == "99%" {print $2}' <<<"$out")
    count=$(awk '/requests in/ {print $1}' <<<"$out")
    errors=$(awk '/Non-2xx|Socket errors/ {printf "%s ", $0}' <<<"$out")
    us=$(awk -v t=$((after - before)) -v n="$count" -v hz="$(getconf CLK_TCK)" 'BEGIN {printf "%.0f", t * 1e6 / hz / n}')
    printf '| %-36s | %10s | %8s | %8s | %8s | %8s | %5s | %s |\n' "$label" "$rps" "$p50" "$p99" "$us" \
        "$(awk -v u="$us" 'BEGIN {printf "%.0f", 1e6 / u}')" "$(cut -d' ' -f1 /proc/loadavg)" "${errors:-0}"
}

echo "velora-cloud $cloud; wrk -t1 -c$connections -d${seconds}s; load average $(cut -d' ' -f1-3 /proc/loadavg)"
printf '| %-36s | %10s | %8s | %8s | %8s | %8s | %5s | %s |\n' load req/s p50 p99 'CPU µs' 'req/CPU-s' 'load avg' errors
printf '|%s|%s|%s|%s|%s|%s|%s|%s|\n' -------------------------------------- -----------: ---------: ---------: ---------: ---------: ------: --------
run "GET /health" "http://127.0.0.1:$port/health"
for entry in "${loads[@]}"; do
    IFS='|' read -r label token body <<<"$entry"
    request=$(envelope "$token" "$body")
    reply=$(call "$session" "$request")
    [ "$(jq -r .code <<<"$reply")" = 0 ] || { echo "$label: $reply" >&2; exit 1; }
    WRK_BODY=$request WRK_SESSION=$session run "$label" -s "$here/wrkpost.lua" "http://127.0.0.1:$port"
done
