#!/bin/bash
# with-window-manager.sh COMMAND...: runs COMMAND on a private X display with openbox, in a home
# of its own, and ends both afterwards.
set -u
folder=$(mktemp -d)
export HOME=$folder XDG_CONFIG_HOME=$folder/config XDG_DATA_HOME=$folder/data \
  XDG_CACHE_HOME=$folder/cache XDG_RUNTIME_DIR=$folder/run QT_QPA_PLATFORM=xcb
mkdir -p "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"
# -noreset: the server must not start over between two clients, or the window manager's connection
# may be lost with it.
exec 6>"$folder/display"
Xvfb -displayfd 6 -screen 0 1280x800x24 -nolisten tcp -noreset >"$folder/xvfb.log" 2>&1 &
server=$!
for _ in $(seq 200); do [ -s "$folder/display" ] && break; sleep 0.05; done
DISPLAY=:$(cat "$folder/display")
export DISPLAY
openbox >"$folder/openbox.log" 2>&1 &
manager=$!
# A window manager announces itself on the root window.
for _ in $(seq 200); do
  xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id' && break
  sleep 0.05
done
if xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; then
  "$@"
  status=$?
else
  echo "the window manager did not start" >&2
  cat "$folder/openbox.log" "$folder/xvfb.log" >&2
  status=1
fi
kill "$manager" "$server" 2>/dev/null
wait "$manager" "$server" 2>/dev/null
rm -rf "$folder"
exit $status
