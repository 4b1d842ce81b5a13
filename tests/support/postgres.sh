#!/usr/bin/env bash
# The server on which the tests run a second time. Usage: postgres.sh start|stop FOLDER
# FOLDER holds the cluster and its socket and is gone after stop. There is no password: only this machine's
# users reach the socket. The server does not wait for the disk.
set -euo pipefail
folder=$2
bin=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -1)
[ -x "$bin/initdb" ] || { echo "postgres.sh: no PostgreSQL server installed (tools/install.sh test)" >&2; exit 1; }
as=()
# The server refuses to run as root.
[ "$(id -u)" -ne 0 ] || as=(setpriv --reuid=postgres --regid=postgres --init-groups --)
server() { (cd / && "${as[@]}" env LC_ALL=C "$bin/$1" "${@:2}"); }

stop() {
  [ -d "$folder/data" ] && server pg_ctl -D "$folder/data" -m immediate -w stop >/dev/null 2>&1 || true
  rm -rf "$folder"
}

case "$1" in
  start)
    stop
    mkdir -m 755 "$folder"
    [ "$(id -u)" -ne 0 ] || chown postgres: "$folder"
    server initdb -D "$folder/data" -U kasse -A trust -E UTF8 --locale=C.UTF-8 --no-sync >"/dev/null"
    server pg_ctl -D "$folder/data" -l "$folder/log" -w start -o "-k $folder -c listen_addresses= \
      -c fsync=off -c full_page_writes=off -c max_connections=200 -c max_locks_per_transaction=256" >/dev/null
    server psql -q -h "$folder" -U kasse postgres -c "CREATE DATABASE laden"
    ;;
  stop) stop ;;
  *) echo "usage: postgres.sh start|stop FOLDER" >&2; exit 2 ;;
esac
