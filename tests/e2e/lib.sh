# Shared set-up for the end-to-end tests: a virtual X display with a tray host, private XDG folders,
# and helpers to start and stop the real agent. Source it; it cleans up after itself on exit.
# KRO_E2E_SCREEN sets the display's size (1280x800x24); E2E_TRAY=later leaves the tray host to the test.
set -euo pipefail

KRO=${1:?usage: $0 PATH_TO_KRO}
WORK=$(mktemp -d /tmp/kro-e2e-XXXXXX)
export XDG_DATA_HOME=$WORK/data XDG_CONFIG_HOME=$WORK/config XDG_CACHE_HOME=$WORK/cache XDG_RUNTIME_DIR=$WORK/runtime
export HOME=$WORK/home KRO_LOG=1
mkdir -p "$XDG_DATA_HOME" "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME" "$HOME"
mkdir -m 700 "$XDG_RUNTIME_DIR"
# The welcome window, due at a first start, and the colour dock would cover the test's windows: the one has
# been seen, the other is hidden. (A test of either writes its own defaults.)
mkdir -p "$XDG_CONFIG_HOME/kroapp.Kro"
echo "{\"UserDefaults.Kro.Onboarding.Needs.Display\": false, \"UserDefaults.Kro.DockVisible\": \"$(printf false | base64)\"}" \
    >"$XDG_CONFIG_HOME/kroapp.Kro/defaults.json"
unset WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS
export QT_QPA_PLATFORM=xcb

PIDS=()
AGENT_PID=""
cleanup() {
    local status=$?
    # The agent may have been started by a command (`kro pick`), not by start_agent.
    [[ -n $AGENT_PID ]] && kill "$AGENT_PID" 2>/dev/null || true
    for pid in "${PIDS[@]}"; do kill "$pid" 2>/dev/null || true; done
    # What does not end on SIGTERM within two seconds is killed, so a failing run never hangs here.
    sleep 0.2
    for pid in $AGENT_PID "${PIDS[@]}"; do
        for _ in $(seq 20); do kill -0 "$pid" 2>/dev/null || break; sleep 0.1; done
        kill -KILL "$pid" 2>/dev/null || true
    done
    wait 2>/dev/null || true
    if ((status != 0)); then
        echo "--- agent log ---"
        cat "$WORK"/agent-*.log 2>/dev/null | tail -60 || true
        echo "--- X server log ---"
        tail -20 "$WORK/xvfb.log" 2>/dev/null || true
    fi
    rm -rf "$WORK"
    exit $status
}
trap cleanup EXIT

fail() { echo "FAIL: $*" >&2; exit 1; }

# A free display number: the first without a lock file.
display=90
while [[ -e /tmp/.X${display}-lock || -e /tmp/.X11-unix/X${display} ]]; do display=$((display + 1)); done
export DISPLAY=:$display
# -noreset: the root's colour and resources set by a test stay when its last client leaves.
Xvfb "$DISPLAY" -screen 0 "${KRO_E2E_SCREEN:-1280x800x24}" -nolisten tcp -noreset >"$WORK/xvfb.log" 2>&1 &
PIDS+=($!)
for _ in $(seq 100); do xdpyinfo >/dev/null 2>&1 && break; sleep 0.1; done
xdpyinfo >/dev/null 2>&1 || fail "Xvfb did not start"

# The tray host: an XEmbed system tray that owns _NET_SYSTEM_TRAY_S0. Its window appears before it takes
# the selection, so wait for the selection's owner itself: the agent looks for the tray once, at start.
start_tray_host() {
    trayer --edge top --align right --widthtype pixel --width 200 --heighttype pixel --height 24 >"$WORK/trayer.log" 2>&1 &
    PIDS+=($!)
    for _ in $(seq 100); do tray_owned && return 0; sleep 0.1; done
    fail "the tray host did not take the tray"
}
tray_owned() {
    python3 - <<'PY'
import ctypes, sys
x11 = ctypes.CDLL("libX11.so.6")
x11.XOpenDisplay.restype = ctypes.c_void_p
x11.XInternAtom.restype = ctypes.c_ulong
x11.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
x11.XGetSelectionOwner.restype = ctypes.c_ulong
x11.XGetSelectionOwner.argtypes = [ctypes.c_void_p, ctypes.c_ulong]
display = x11.XOpenDisplay(None)
sys.exit(0 if display and x11.XGetSelectionOwner(display, x11.XInternAtom(display, b"_NET_SYSTEM_TRAY_S0", 0)) else 1)
PY
}
[[ ${E2E_TRAY:-} == later ]] || start_tray_host

source "$(dirname "${BASH_SOURCE[0]}")/../support/agent.sh"
start_agent() { start_agent_with; }

# Waits until the library file satisfies a Python expression over `user` (the parsed JSON).
wait_for_library() {
    local expression=$1
    for _ in $(seq 200); do
        if [[ -f $USER_JSON ]] && python3 - "$USER_JSON" "$expression" <<'PY'
import json, sys
user = json.load(open(sys.argv[1]))
sys.exit(0 if eval(sys.argv[2]) else 1)
PY
        then return 0; fi
        sleep 0.1
    done
    return 1
}
