#!/bin/sh
# Runs a command on a virtual display with a window manager: on-desktop.sh COMMAND...
exec xvfb-run -a -s "-screen 0 1440x900x24" sh -c '
    ready=$(mktemp -u)
    mkfifo "$ready"
    openbox --sm-disable --startup "sh -c \"echo >$ready\"" &
    read -r _ <"$ready"
    rm "$ready"
    status=0
    "$@" || status=$?
    kill $! 2>/dev/null
    exit $status' sh "$@"
