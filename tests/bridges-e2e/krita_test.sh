#!/usr/bin/env bash
# Krita on a virtual display with Kro's plug-in installed by `kro krita-plugin install` and enabled: `kro send`
# sets the active view's foreground and background and `kro get` reads them back, the picker in "Send to
# software" mode sends the pixel under the pointer, a listener of another user on the plug-in's socket is
# refused, and a Krita that stops answering fails within the time limit.
source "$(dirname "$0")/lib.sh" "$1" krita

kro krita-plugin install >/dev/null || fail "the plug-in did not install"
[[ -f $XDG_DATA_HOME/krita/pykrita/kro_bridge/kro_bridge_server.py ]] || fail "the plug-in's files are not in pykrita"

# No Krita yet: the read fails and says how to enable the plug-in.
kro get --primary --app org.kde.krita >"$WORK/get.out" 2>&1 && fail "a read without Krita succeeded"
grep -q "Krita gave no color" "$WORK/get.out" || fail "without Krita: $(cat "$WORK/get.out")"
agent_log | grep -q "krita-plugin install" || fail "the log does not say how to install the plug-in"

# A listener on the plug-in's socket that runs as another user, offering a colour: it is refused.
if (($(id -u) == 0)); then
    python3 - "$KRITA_SOCKET" >"$WORK/impostor.log" 2>&1 <<'PY' &
import os, socket, sys
listener = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
listener.bind(sys.argv[1])
os.chmod(sys.argv[1], 0o666)
os.chmod(os.path.dirname(sys.argv[1]), 0o711)
os.setgid(65534)
os.setuid(65534)  # the listener's credentials are those it listens with
listener.listen(1)
print("listening", flush=True)
connection, _ = listener.accept()
connection.sendall(b'{"ok": true, "color": "#ffffff"}\n')
PY
    PIDS+=($!)
    for _ in $(seq 50); do grep -q listening "$WORK/impostor.log" 2>/dev/null && break; sleep 0.1; done
    kro get --primary --app org.kde.krita >"$WORK/get.out" 2>&1 && fail "a colour from another user's socket was taken: $(cat "$WORK/get.out")"
    agent_log | grep -q "belongs to another user" || fail "the refusal is not logged"
    rm -f "$KRITA_SOCKET"
    chmod 700 "$XDG_RUNTIME_DIR"
else
    echo "not root: the other-user socket check is skipped"
fi

start_program

kro send --primary FF0080 --app org.kde.krita || fail "send --primary"
[[ $(kro get --primary --app org.kde.krita) == FF0080 ]] || fail "get --primary did not return what was set"
kro send --secondary 00C0FF --app Krita || fail "send --secondary"
[[ $(kro get --secondary --app Krita) == 00C0FF ]] || fail "get --secondary did not return what was set"
[[ $(kro get --primary --app Krita) == FF0080 ]] || fail "setting the background changed the foreground"

# The picker over the picture, in "Send to software": a click sends the pixel to Krita's foreground.
click_in_plugin_mode_over krita
for _ in $(seq 20); do [[ $(kro get --primary --app Krita) == 2080C0 ]] && break; sleep 0.25; done
[[ $(kro get --primary --app Krita) == 2080C0 ]] || fail "the pick did not reach Krita: $(kro get --primary --app Krita)"
xdotool key Escape

# A Krita that stops answering: the read fails and nothing hangs.
kill -STOP $PROGRAM_PID
start=$SECONDS
kro get --primary --app Krita >"$WORK/get.out" 2>&1 && fail "a read from a stopped Krita succeeded: $(cat "$WORK/get.out")"
# The two-second limit itself is the unit tests' to check; here only that nothing hangs on a loaded machine.
((SECONDS - start <= 30)) || fail "the failed read hung for $((SECONDS - start)) s"
kill -KILL $PROGRAM_PID

stop_agent
echo "krita bridge test passed"
