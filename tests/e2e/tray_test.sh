#!/usr/bin/env bash
# The tray on a real desktop session: with no tray host the agent tells the person once, through a real
# notification server on a private session bus, how to reach it, and docks its icon when a host appears;
# the clipboard text outlives the agent where a clipboard manager runs; after a restart the icon shows the
# last colour of the history.
E2E_TRAY=later
source "$(dirname "$0")/lib.sh"

# A private session bus that starts nothing on demand: the notification server is the one started here.
cat >"$WORK/bus.conf" <<EOF
<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir=$WORK</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
EOF
dbus-daemon --config-file="$WORK/bus.conf" --fork --print-address=3 --print-pid=4 3>"$WORK/bus.address" 4>"$WORK/bus.pid" ||
    fail "the session bus did not start"
PIDS+=($(cat "$WORK/bus.pid"))
export DBUS_SESSION_BUS_ADDRESS=$(head -1 "$WORK/bus.address")

dbus-monitor "interface='org.freedesktop.Notifications',member='Notify'" >"$WORK/notifications.log" 2>&1 &
PIDS+=($!)
dunst >"$WORK/dunst.log" 2>&1 &
PIDS+=($!)
# A clipboard manager that takes the clipboard over from a program that quits.
xfce4-clipman >"$WORK/clipman.log" 2>&1 &
PIDS+=($!)
for _ in $(seq 100); do
    dbus-send --session --print-reply --dest=org.freedesktop.DBus / org.freedesktop.DBus.NameHasOwner \
        string:org.freedesktop.Notifications 2>/dev/null | grep -q 'boolean true' && break
    sleep 0.1
done

notifications() { grep -c 'member=Notify' "$WORK/notifications.log" || true; }
clipboard() { python3 -c 'import tkinter; r = tkinter.Tk(); r.withdraw(); print(r.clipboard_get())' 2>/dev/null || true; }

# The agent's icon, once a tray host has taken it in: its window's parent is no longer the root.
docked_icon() {
    local window tree
    for window in $(xdotool search --classname '^kro$' 2>/dev/null); do
        tree=$(xwininfo -id "$window" -tree 2>/dev/null) || continue
        [[ $(awk '/Root window id:/ {print $4}' <<<"$tree") != $(awk '/Parent window id:/ {print $4}' <<<"$tree") ]] &&
            echo "$window" && return 0
    done
    return 1
}

pick() {
    xdotool mousemove "$1" "$2"
    "$KRO" pick >"$WORK/pick.out" 2>"$WORK/pick.err" &
    local pick=$!
    local id
    for _ in $(seq 200); do
        id=$(xdotool search --name "Kro Loupe" 2>/dev/null | head -1)
        [[ -n $id ]] && xwininfo -id "$id" -shape 2>/dev/null | grep -q IsViewable &&
            ! xwininfo -id "$id" -shape | grep -q "extents:  1x1+" && break
        sleep 0.1
    done
    xdotool click 1
    wait "$pick" || fail "kro pick at ($1, $2) failed: $(cat "$WORK/pick.err")"
    cat "$WORK/pick.out"
}

xsetroot -solid '#336699'
start_agent
for _ in $(seq 100); do (($(notifications) > 0)) && break; sleep 0.1; done
(($(notifications) == 1)) || fail "$(notifications) notifications without a tray"
grep -q 'string "Kro is running without a tray icon"' "$WORK/notifications.log" || fail "the notification's title"
grep -q 'Ctrl+Alt+P.*kro open kro://picker' "$WORK/notifications.log" || fail "the notification does not say how to reach Kro"

[[ $(pick 1000 600) == "#336699" ]] || fail "the pick without a tray printed '$(cat "$WORK/pick.out")'"
[[ $(clipboard) == "#336699" ]] || fail "the clipboard after the pick: '$(clipboard)'"

start_tray_host
for _ in $(seq 100); do docked_icon >/dev/null && break; sleep 0.1; done
docked_icon >/dev/null || fail "the icon did not dock when the tray host appeared"
sleep 1
(($(notifications) == 1)) || fail "the person was told $(notifications) times"

stop_agent
[[ $(clipboard) == "#336699" ]] || fail "the clipboard after quitting: '$(clipboard)'"

# After a restart the icon's swatch is the history's last colour: the loupe reads it at the icon's middle.
start_agent
for _ in $(seq 100); do docked_icon >/dev/null && break; sleep 0.1; done
icon=$(docked_icon) || fail "the icon did not dock after the restart"
read -r ix iy iw ih <<<"$(xwininfo -id "$icon" | awk '/Absolute upper-left X/ {x = $NF} /Absolute upper-left Y/ {y = $NF}
    /^  Width:/ {w = $NF} /^  Height:/ {h = $NF} END {print x, y, w, h}')"
# The show nudges the pointer one pixel down: start one above the middle.
[[ $(pick $((ix + iw / 2)) $((iy + ih / 2 - 1))) == "#336699" ]] || fail "the icon's middle is '$(cat "$WORK/pick.out")' after the restart"
stop_agent

echo "tray test passed"
