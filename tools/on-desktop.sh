#!/bin/sh
# Runs a command on a virtual display with a window manager, as a user who runs nothing else:
# on-desktop.sh COMMAND... $SCREEN is its size, 1440x900 unless it says otherwise.
set -eu
work=$(mktemp -d)
display=
trap 'kill $display 2>/dev/null || true; rm -rf "$work"' EXIT
mkfifo "$work/number" "$work/managed"

Xvfb -displayfd 3 -ac -screen 0 "${SCREEN:-1440x900}x24" 3>"$work/number" 2>"$work/log" &
display=$!
read -r number <"$work/number"
export DISPLAY=":$number" XDG_RUNTIME_DIR="$work"
unset WAYLAND_DISPLAY QT_QPA_PLATFORM

openbox --sm-disable --startup "sh -c 'echo >$work/managed'" >>"$work/log" 2>&1 &
read -r _ <"$work/managed"

status=0
"$@" || status=$?
exit $status
