# Shared set-up of the design-application tests: the end-to-end harness (virtual display, tray host,
# private folders), plus a private session bus and a window manager that keeps _NET_ACTIVE_WINDOW, then
# the agent. Source it with the program's name; a missing program skips the test (exit 77).
PROGRAM=${2:?usage: $0 PATH_TO_KRO PROGRAM}
if ! command -v "$PROGRAM" >/dev/null 2>&1; then
    echo "SKIP: $PROGRAM is not installed (scripts/setup-deps installs it)"
    exit 77
fi
source "$(dirname "${BASH_SOURCE[0]}")/../e2e/lib.sh" "$1"

# GTK programs look for the accessibility bus and a settings service; neither is needed here.
export NO_AT_BRIDGE=1 GTK_A11Y=none GSETTINGS_BACKEND=memory

bus_out=$(dbus-daemon --session --fork --print-address=1 --print-pid=1)
export DBUS_SESSION_BUS_ADDRESS=$(sed -n 1p <<<"$bus_out")
PIDS+=($(sed -n 2p <<<"$bus_out"))

openbox >"$WORK/openbox.log" 2>&1 &
PIDS+=($!)
for _ in $(seq 100); do xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id' && break; sleep 0.1; done

start_agent
kro() { "$KRO" "$@"; }

clipboard() {
    python3 -c 'import tkinter; r = tkinter.Tk(); r.withdraw(); print(r.clipboard_get())' 2>/dev/null
}

# Runs a command until it succeeds, for at most $1 seconds; its last output is in $LAST.
retry_for() {
    local limit=$1
    shift
    local until=$((SECONDS + limit))
    while ((SECONDS < until)); do
        LAST=$("$@" 2>&1) && return 0
        sleep 1
    done
    return 1
}

# The window of a program by its WM_CLASS, the most recently mapped one.
program_window() { { xdotool search --onlyvisible --class "$1" 2>/dev/null || true; } | tail -1; }

# Moves the pointer to the middle of a window.
point_at_middle() {
    eval "$(xdotool getwindowgeometry --shell "$1")"
    xdotool mousemove $((X + WIDTH / 2)) $((Y + HEIGHT / 2))
}

# Opens the picker, switches it to "Send to software" through its mode menu (held Ctrl), and leaves it open.
open_picker_in_plugin_mode() {
    xdotool key ctrl+alt+p
    sleep 1.5
    xdotool keydown ctrl
    sleep 0.5
    xdotool keyup ctrl
    sleep 0.8
    # Pick Color, Multiple Colors, Send to software.
    xdotool key Down Down Down Return
    sleep 1.0
}
