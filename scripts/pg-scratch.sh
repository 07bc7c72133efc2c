#!/usr/bin/env bash
# A throw-away PostgreSQL cluster on loopback for the tests.
#   pg-scratch.sh start DIR   creates and starts a cluster under DIR (a new,
#                             empty folder), prints its URL
#   pg-scratch.sh stop DIR    stops it and removes DIR
# The server never runs as root: as root the cluster belongs to the system
# user velora-pg (created here when missing).
set -euo pipefail
bin=${VELORA_PG_BIN:-/usr/lib/postgresql/15/bin}
cmd=${1:-}
dir=${2:-}
[ -n "$cmd" ] && [ -n "$dir" ] || { echo "usage: $0 start|stop DIR" >&2; exit 2; }

as_owner() {
  if [ "$(id -u)" -eq 0 ]; then
    runuser -u velora-pg -- "$@"
  else
    "$@"
  fi
}


case "$cmd" in
start)
  [ -x "$bin/initdb" ] || { echo "pg-scratch: no PostgreSQL in $bin" >&2; exit 1; }
  mkdir -p "$dir"
  if [ "$(id -u)" -eq 0 ]; then
    id velora-pg >/dev/null 2>&1 ||
      useradd --system --no-create-home --home-dir /nonexistent --shell /usr/sbin/nologin velora-pg
    chown velora-pg "$dir"
  fi
  as_owner "$bin/initdb" -D "$dir/data" -U velora --auth=trust --no-locale -E UTF8 >"$dir/initdb.log" 2>&1 ||
    { cat "$dir/initdb.log" >&2; exit 1; }
  # A random high port; the server refuses to start on a taken one, then
  # another is tried.
  for _ in 1 2 3 4 5 6 7 8; do
    port=$((20000 + RANDOM % 40000))
    if as_owner "$bin/pg_ctl" -D "$dir/data" -l "$dir/server.log" -w -t 30 start \
        -o "-p $port -k $dir -c listen_addresses=127.0.0.1 -c fsync=off -c synchronous_commit=off \
            -c full_page_writes=off -c max_connections=400" >/dev/null; then
      echo "postgresql://velora@127.0.0.1:$port/postgres"
      exit 0
    fi
  done
  cat "$dir/server.log" >&2
  exit 1
  ;;
stop)
  [ -d "$dir/data" ] && as_owner "$bin/pg_ctl" -D "$dir/data" -m immediate -w stop >/dev/null 2>&1 || true
  rm -rf "$dir"
  ;;
*)
  echo "usage: $0 start|stop DIR" >&2
  exit 2
  ;;
esac
