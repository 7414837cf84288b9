#!/usr/bin/env bash
# Runs a command with a PostgreSQL server of its own, which lives in a temporary folder, is reached by
# a local socket alone, and is gone afterwards. The command finds the server's connection settings in
# TEST_SERVER. SERVER_OPTIONS are options of the server ("-c fsync=on"); by default it does not wait
# for the disk.
#     with_server.sh COMMAND [ARGUMENT...]
set -eu
bin=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -n 1)
[ -n "$bin" ] || { echo "no PostgreSQL server is installed" >&2; exit 1; }

folder=$(mktemp -d /tmp/test-server.XXXXXX)
server=
finish() {
    [ -z "$server" ] || { kill -INT "$server" && wait "$server" || true; }
    rm -rf "$folder"
}
trap finish EXIT

as_user=() # a server runs as no root
if [ "$(id -u)" -eq 0 ]; then
    chown nobody "$folder"
    as_user=(setpriv --reuid=nobody --regid="$(id -g nobody)" --clear-groups)
fi

cd "$folder"
"${as_user[@]}" "$bin/initdb" --pgdata=data --username=suite --auth=trust --encoding=UTF8 \
    --locale=C --no-sync >initdb.log || { cat initdb.log >&2; exit 1; }
# shellcheck disable=SC2086
"${as_user[@]}" "$bin/postgres" -D data -k "$folder" -c listen_addresses= -c fsync=off \
    -c max_wal_size=4GB ${SERVER_OPTIONS:-} >server.log 2>&1 &
server=$!
settings="host=$folder user=suite dbname=postgres"
for ((turn = 0; turn < 200; ++turn)); do
    kill -0 "$server" 2>/dev/null || { cat server.log >&2; server=; exit 1; }
    "$bin/psql" -Xq "$settings" -c "CREATE EXTENSION citext" 2>/dev/null && break
    sleep 0.1
done
cd "$OLDPWD"
TEST_SERVER=$settings "$@"
