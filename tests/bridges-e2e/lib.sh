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

# A one-colour PNG of the given size: the middle of a window showing it is that colour.
write_picture() {
    python3 - "$1" "$2" "$3" <<'PY'
import struct, sys, zlib
path, w, h = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])
raw = b"".join(b"\x00" + bytes([0x20, 0x80, 0xC0]) * w for _ in range(h))
chunk = lambda t, d: struct.pack(">I", len(d)) + t + d + struct.pack(">I", zlib.crc32(t + d) & 0xFFFFFFFF)
open(path, "wb").write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", w, h, 8, 2, 0, 0, 0))
                       + chunk(b"IDAT", zlib.compress(raw)) + chunk(b"IEND", b""))
PY
}

inkscape_action() {
    gdbus call --session --dest org.inkscape.Inkscape --object-path /org/inkscape/Inkscape \
        --method org.gtk.Actions.Activate "$1" "${2:-[]}" {} >/dev/null
}

KRITA_SOCKET=$XDG_RUNTIME_DIR/kroapp.Kro.krita.socket

# Starts the program on a picture (GIMP, Krita: #2080C0) or a document (Inkscape: a selected square in a
# corner of a #CC3300 page) and waits until Kro's bridge gets an answer from it. Its process is $PROGRAM_PID.
start_program() {
    case $PROGRAM in
        gimp)
            write_picture "$WORK/blue.png" 500 360
            gimp --no-splash --no-data --no-fonts "$WORK/blue.png" >"$WORK/gimp.log" 2>&1 &
            PROGRAM_PID=$!
            ;;
        inkscape)
            cat >"$WORK/doc.svg" <<'SVG'
<svg xmlns="http://www.w3.org/2000/svg" width="400" height="300" viewBox="0 0 400 300">
  <rect id="backdrop" x="0" y="0" width="400" height="300" style="fill:#cc3300"/>
  <rect id="square" x="0" y="0" width="30" height="30" style="fill:#336699;stroke:#112233;stroke-width:2"/>
</svg>
SVG
            inkscape "$WORK/doc.svg" >"$WORK/inkscape.log" 2>&1 &
            PROGRAM_PID=$!
            ;;
        krita)
            "$KRO" krita-plugin install >/dev/null || fail "the plug-in did not install"
            # Enabled as Krita's Python Plugin Manager stores it.
            printf '[python]\nenable_kro_bridge=true\n' >"$XDG_CONFIG_HOME/kritarc"
            write_picture "$WORK/blue.png" 800 600
            krita --nosplash "$WORK/blue.png" >"$WORK/krita.log" 2>&1 &
            PROGRAM_PID=$!
            ;;
    esac
    PIDS+=($PROGRAM_PID)
    case $PROGRAM in
        # GIMP runs its first command some seconds after it is on the bus: until then every get times out.
        gimp) retry_for 150 kro get --primary --app org.gimp.GIMP || fail "GIMP never answered: $LAST" ;;
        inkscape)
            retry_for 90 inkscape_action select-by-id "[<'square'>]" || fail "Inkscape's actions never answered: $LAST"
            retry_for 30 kro get --primary --app org.inkscape.Inkscape || fail "Inkscape never answered: $LAST"
            ;;
        krita)
            # Krita builds its resource database on a first start, minutes on a loaded machine; the plug-in
            # listens once Krita's window is up.
            for _ in $(seq 400); do
                [[ -S $KRITA_SOCKET ]] && break
                kill -0 $PROGRAM_PID 2>/dev/null || fail "Krita exited: $(tail -3 "$WORK/krita.log")"
                sleep 1
            done
            retry_for 60 kro get --primary --app org.kde.krita || fail "the plug-in never answered: $LAST"
            ;;
    esac
}

# Over the middle of the program's window (found by WM_CLASS, brought to the front), opens the picker, switches it
# to "Send to software" through its mode menu (held Ctrl) and clicks once; the picker stays open.
click_in_plugin_mode_over() {
    local window
    window=$(program_window "$1")
    [[ -n $window ]] || fail "no window of $1"
    xdotool windowactivate --sync "$window" 2>/dev/null || true
    sleep 0.5
    eval "$(xdotool getwindowgeometry --shell "$window")"
    xdotool mousemove $((X + WIDTH / 2)) $((Y + HEIGHT / 2))
    xdotool key ctrl+alt+p
    sleep 1.5
    xdotool keydown ctrl
    sleep 0.5
    xdotool keyup ctrl
    sleep 0.8
    # Pick Color, Multiple Colors, Send to software.
    xdotool key Down Down Down Return
    sleep 1.0
    xdotool click 1
}
