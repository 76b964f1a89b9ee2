# A headless Wayland session for the end-to-end tests, started from Debian's packages and stopped by process id:
# Sway on its headless backend with XWayland, a private session bus with the desktop portal (its wlroots backend
# for screenshots, which needs PipeWire, and its GTK backend for access dialogs), a native Wayland window and an
# X11 one of known colours. Source it with the path of the colour client; it exits 77 (skipped) when the session
# cannot start here, and cleans up after itself on exit.
set -uo pipefail

COLOUR_CLIENT=${1:?usage: source session.sh COLOUR_CLIENT}
WAYLAND_TESTS=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

skip() {
    echo "skipped: $*"
    exit 77
}
fail() {
    echo "FAIL: $*" >&2
    exit 1
}

# Debian's own Python (with Tk), not whichever a developer's PATH puts first: some start in seconds.
PYTHON=/usr/bin/python3
for tool in sway swaymsg Xwayland xhost grim pipewire dbus-daemon setpriv "$PYTHON"; do
    command -v "$tool" >/dev/null || skip "$tool is not installed (scripts/setup-deps installs it)"
done
for portal in xdg-desktop-portal xdg-desktop-portal-wlr xdg-desktop-portal-gtk; do
    [[ -x /usr/libexec/$portal ]] || skip "$portal is not installed (scripts/setup-deps installs it)"
done

WORK=$(mktemp -d /tmp/kro-wayland-XXXXXX)
chmod 755 "$WORK"
PIDS=()
cleanup() {
    local status=$?
    # Last started, first stopped; whatever ignores SIGTERM for two seconds is killed.
    for ((i = ${#PIDS[@]} - 1; i >= 0; i--)); do kill "${PIDS[i]}" 2>/dev/null || true; done
    for pid in "${PIDS[@]}"; do
        for _ in $(seq 20); do kill -0 "$pid" 2>/dev/null || break; sleep 0.1; done
        kill -KILL "$pid" 2>/dev/null || true
    done
    wait 2>/dev/null || true
    if ((status != 0 && status != 77)); then
        for log in "$WORK"/*.log; do
            echo "--- $(basename "$log") ---"
            tail -40 "$log"
        done
    fi
    rm -rf "$WORK"
    exit "$status"
}
trap cleanup EXIT

# Sway refuses to run as root: a root test runs it as an unprivileged user, and lets itself into XWayland.
as_session_user=()
session_user=$(id -un)
if (($(id -u) == 0)); then
    id nobody >/dev/null 2>&1 || skip "there is no unprivileged user (nobody) to run Sway as"
    session_user=nobody
    as_session_user=(setpriv --reuid=nobody --regid="$(id -g nobody)" --clear-groups)
fi
SWAY_HOME=$WORK/sway
mkdir -m 700 "$SWAY_HOME" "$SWAY_HOME/run"
cat >"$SWAY_HOME/config" <<'EOF'
output HEADLESS-1 resolution 1280x800 position 0,0
xwayland enable
default_border none
focus_follows_mouse no
EOF
chown -R "$session_user" "$SWAY_HOME"
env -i PATH=/usr/bin:/bin HOME="$SWAY_HOME" XDG_RUNTIME_DIR="$SWAY_HOME/run" WLR_BACKENDS=headless \
    WLR_LIBINPUT_NO_DEVICES=1 WLR_RENDERER=pixman "${as_session_user[@]}" sway -c "$SWAY_HOME/config" >"$WORK/sway.log" 2>&1 &
PIDS+=($!)
for _ in $(seq 100); do
    [[ -S $SWAY_HOME/run/wayland-1 ]] && compgen -G "$SWAY_HOME/run/sway-ipc.*" >/dev/null && break
    kill -0 "${PIDS[0]}" 2>/dev/null || skip "Sway did not start here: $(tail -3 "$WORK/sway.log")"
    sleep 0.1
done
[[ -S $SWAY_HOME/run/wayland-1 ]] || skip "Sway did not open its Wayland socket within 10 s"
export WAYLAND_DISPLAY=$SWAY_HOME/run/wayland-1
SWAYSOCK=$(compgen -G "$SWAY_HOME/run/sway-ipc.*")
export SWAYSOCK
unset DISPLAY

# Everything else runs as this user, in folders of its own.
export XDG_RUNTIME_DIR=$WORK/run XDG_DATA_HOME=$WORK/data XDG_CONFIG_HOME=$WORK/config XDG_CACHE_HOME=$WORK/cache
export HOME=$WORK/home XDG_CURRENT_DESKTOP=sway:gnome NO_AT_BRIDGE=1 GTK_A11Y=none KRO_LOG=1
mkdir -p "$XDG_DATA_HOME" "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME" "$HOME"
mkdir -m 700 "$XDG_RUNTIME_DIR"
# The welcome window, due at a first start, and the colour dock would cover the test's windows: the one has
# been seen, the other is hidden.
mkdir -p "$XDG_CONFIG_HOME/kroapp.Kro"
echo "{\"UserDefaults.Kro.Onboarding.Needs.Display\": false, \"UserDefaults.Kro.DockVisible\": \"$(printf false | base64)\"}" \
    >"$XDG_CONFIG_HOME/kroapp.Kro/defaults.json"

# The native window, which also gives the headless seat its pointer.
"$COLOUR_CLIENT" kro-native FF0000 00C000 0000FF 808080 >"$WORK/native.log" 2>&1 &
PIDS+=($!)

# XWayland starts with the first X client; Sway tells its display to the commands it runs.
cat >"$SWAY_HOME/xwayland.sh" <<EOF
echo "\$DISPLAY" >"$SWAY_HOME/run/display.tmp" && mv "$SWAY_HOME/run/display.tmp" "$SWAY_HOME/run/display"
xhost +si:localuser:$(id -un) >/dev/null 2>&1
echo done >"$SWAY_HOME/run/xhost"
EOF
swaymsg exec "sh $SWAY_HOME/xwayland.sh" >/dev/null
for _ in $(seq 100); do [[ -f $SWAY_HOME/run/xhost ]] && break; sleep 0.1; done
[[ -f $SWAY_HOME/run/display ]] || skip "Sway's XWayland did not start"
X11_DISPLAY=$(cat "$SWAY_HOME/run/display")
DISPLAY=$X11_DISPLAY "$PYTHON" - >"$WORK/x11-window.log" 2>&1 <<'PY' &
import tkinter
root = tkinter.Tk()
root.title("kro-x11")
canvas = tkinter.Canvas(root, width=600, height=400, highlightthickness=0, borderwidth=0)
canvas.pack(fill="both", expand=True)
def paint(event=None):
    canvas.delete("all")
    w, h = canvas.winfo_width(), canvas.winfo_height()
    for x, y, colour in ((0, 0, "#FFFF00"), (w // 2, 0, "#00FFFF"), (0, h // 2, "#FF00FF"), (w // 2, h // 2, "#102030")):
        canvas.create_rectangle(x, y, x + w // 2 + 1, y + h // 2 + 1, fill=colour, width=0)
canvas.bind("<Configure>", paint)
root.mainloop()
PY
PIDS+=($!)

# A session bus that starts nothing by itself: the portals are started here, and stopped by their ids.
cat >"$WORK/bus.conf" <<EOF
<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=$WORK/bus</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
EOF
dbus-daemon --config-file="$WORK/bus.conf" --nofork --nopidfile >"$WORK/bus.log" 2>&1 &
PIDS+=($!)
export DBUS_SESSION_BUS_ADDRESS=unix:path=$WORK/bus
for _ in $(seq 50); do [[ -S $WORK/bus ]] && break; sleep 0.1; done
[[ -S $WORK/bus ]] || skip "the private session bus did not start"
pipewire >"$WORK/pipewire.log" 2>&1 &
PIDS+=($!)
sleep 0.3
/usr/libexec/xdg-desktop-portal-wlr >"$WORK/portal-wlr.log" 2>&1 &
PIDS+=($!)
/usr/libexec/xdg-desktop-portal-gtk >"$WORK/portal-gtk.log" 2>&1 &
PIDS+=($!)
/usr/libexec/xdg-desktop-portal >"$WORK/portal.log" 2>&1 &
PORTAL_PID=$!
PIDS+=($PORTAL_PID)

portal_screenshot_version() {
    dbus-send --session --print-reply=literal --dest=org.freedesktop.portal.Desktop /org/freedesktop/portal/desktop \
        org.freedesktop.DBus.Properties.Get string:org.freedesktop.portal.Screenshot string:version 2>/dev/null |
        awk '{print $NF}'
}
for _ in $(seq 100); do [[ -n $(portal_screenshot_version) ]] && break; sleep 0.1; done
[[ -n $(portal_screenshot_version) ]] || skip "the desktop portal offers no Screenshot here: $(tail -3 "$WORK/portal.log")"

# Where each window lies (Sway tiles them side by side): "x y width height" of the window with that title.
window_rect() {
    swaymsg -t get_tree | "$PYTHON" -c '
import json, sys
def walk(node):
    if node.get("name") == sys.argv[1]:
        r = node["rect"]
        print(r["x"], r["y"], r["width"], r["height"])
        sys.exit(0)
    for child in node.get("nodes", []) + node.get("floating_nodes", []):
        walk(child)
walk(json.load(sys.stdin))
sys.exit(1)' "$1"
}
# A cheaper look, for loops: is a window of this application id in the tree? (grep reads the whole tree: with
# -q it would stop at the match, and swaymsg, cut off mid-write, would fail the pipeline.)
window_shown() { swaymsg -t get_tree | grep "\"app_id\": *\"$1\"" >/dev/null; }
for _ in $(seq 100); do window_shown kro-native && window_rect kro-x11 >/dev/null && break; sleep 0.1; done
window_shown kro-native || fail "the native window did not appear: $(cat "$WORK/native.log")"
window_rect kro-x11 >/dev/null || fail "the X11 window did not appear: $(cat "$WORK/x11-window.log")"

# The screen as the compositor shows it, the truth of every pick: six hex digits for each "x,y" given.
screen_pixels() {
    grim -t ppm "$WORK/screen.ppm" || fail "grim could not take the screen"
    "$PYTHON" "$WAYLAND_TESTS/ppm_pixels.py" "$WORK/screen.ppm" "$@"
}

pointer_to() { swaymsg seat - cursor set "$1" "$2" >/dev/null; }
click() {
    swaymsg seat - cursor press button1 >/dev/null
    swaymsg seat - cursor release button1 >/dev/null
}
