#!/usr/bin/env bash
# `kro pick` on a real X server, at every scale a desktop may set: the loupe's window lies on the pointer's
# device pixel with 800 interface pixels a side, the printed colour is the exact pixel under the pointer, a
# solid root colour is picked as it is, Escape gives exit 1 and no output, --count picks several, and with
# no display and no agent the command says why. The tray's messages stay whole at the screen's edge.
KRO_E2E_SCREEN=2560x800x24
source "$(dirname "$0")/lib.sh"

out=$(env -u DISPLAY -u WAYLAND_DISPLAY "$KRO" pick 2>"$WORK/err") && fail "kro pick without a display succeeded"
[[ -z $out && $(cat "$WORK/err") == *"neither WAYLAND_DISPLAY nor DISPLAY is set"* ]] || fail "without a display: '$out' / '$(cat "$WORK/err")'"

# Two monitors side by side, 1280 by 800 each: A at 96 dots an inch, B at 191 (half the millimetres), which Qt
# draws at twice the scale when it follows the physical resolution.
xrandr --setmonitor A 1280/340x800/210+0+0 screen >/dev/null
xrandr --setmonitor B 1280/170x800/105+1280+0 none >/dev/null
xsetroot -solid '#336699'

# On each monitor a window whose left half is red and right half green: the boundary pixels are the test.
python3 - >"$WORK/colors.log" 2>&1 <<'PY' &
import tkinter
root = tkinter.Tk()
root.withdraw()
for title, x in (("kro-e2e-a", 100), ("kro-e2e-b", 1500)):
    window = tkinter.Toplevel(root)
    window.title(title)
    window.geometry(f"300x200+{x}+150")
    canvas = tkinter.Canvas(window, width=300, height=200, highlightthickness=0, borderwidth=0)
    canvas.place(x=0, y=0)
    canvas.create_rectangle(0, 0, 150, 200, fill="#FF0000", width=0)
    canvas.create_rectangle(150, 0, 300, 200, fill="#00C000", width=0)
root.mainloop()
PY
PIDS+=($!)
for _ in $(seq 100); do xdotool search --name kro-e2e-b >/dev/null 2>&1 && break; sleep 0.1; done
xdotool search --name kro-e2e-b >/dev/null 2>&1 || fail "the colour windows did not appear"

loupe_id() { xdotool search --name "Kro Loupe" 2>/dev/null | head -1; }

# Waits until the loupe shows its lens (while it waits for its first frame its shape is one pixel) and
# prints its frame as "X Y WIDTH HEIGHT".
wait_for_loupe() {
    local id info
    for _ in $(seq 200); do
        id=$(loupe_id)
        if [[ -n $id ]] && info=$(xwininfo -id "$id" -shape 2>/dev/null) && grep -q IsViewable <<<"$info" &&
            ! grep -q "extents:  1x1+" <<<"$info"; then
            awk '/Absolute upper-left X/ {x = $NF} /Absolute upper-left Y/ {y = $NF}
                 /^  Width:/ {w = $NF} /^  Height:/ {h = $NF} END {print x, y, w, h}' <<<"$info"
            return 0
        fi
        sleep 0.1
    done
    return 1
}

# The show nudges the pointer one pixel down, and the window is centred on the pointer's pixel.
expect_loupe_at() {
    local x=$1 y=$2 scale=$3 frame
    frame=$(wait_for_loupe) || fail "the loupe did not show at ($x, $y)"
    local half=$((400 * scale))
    local expected="$((x - half)) $((y + 1 - half)) $((2 * half)) $((2 * half))"
    # The window follows the nudge a moment after it first shows: its frame settles within two seconds.
    for _ in $(seq 20); do
        [[ $frame == "$expected" ]] && return 0
        sleep 0.1
        frame=$(wait_for_loupe) || fail "the loupe went away at ($x, $y)"
    done
    fail "the loupe at ($x, $y), scale $scale, has the frame $frame"
}

# Picks at a point with `kro pick` and checks the loupe's frame and the printed colour.
pick_at() {
    local x=$1 y=$2 scale=$3 expected=$4
    xdotool mousemove "$x" "$y"
    "$KRO" pick >"$WORK/pick.out" 2>"$WORK/pick.err" &
    local pick=$!
    expect_loupe_at "$x" "$y" "$scale"
    [[ -n $AGENT_PID ]] || AGENT_PID=$(xdotool getwindowpid "$(loupe_id)")
    xdotool click 1
    wait "$pick" || fail "kro pick at ($x, $y) failed: $(cat "$WORK/pick.err")"
    [[ $(cat "$WORK/pick.out") == "$expected" ]] || fail "kro pick at ($x, $y) printed '$(cat "$WORK/pick.out")', not $expected"
}

picks_logged() { grep -c "replace with" "$1" || true; }

# Waits until the agent's log holds `count` clipboard writes (two a pick).
wait_for_picks() {
    for _ in $(seq 100); do (($(picks_logged "$1") >= $2)) && return 0; sleep 0.1; done
    fail "the agent logged $(picks_logged "$1") clipboard writes, not $2"
}

# Monitors of their own scale. The first pick starts the agent, as kro open does.
export QT_USE_PHYSICAL_DPI=1
pick_at 249 200 1 "#FF0000"
AGENT_LOG=$XDG_CACHE_HOME/kroapp.Kro.log
pick_at 250 200 1 "#00C000"
pick_at 1649 250 2 "#FF0000"
pick_at 1650 250 2 "#00C000"
pick_at 1000 600 1 "#336699"
pick_at 2000 600 2 "#336699"

# Escape: exit 1, nothing printed, and the clipboard keeps the last pick.
xdotool mousemove 1700 600
"$KRO" pick >"$WORK/pick.out" 2>"$WORK/pick.err" &
pick=$!
wait_for_loupe >/dev/null || fail "the loupe did not show for Escape"
xdotool key Escape
wait "$pick" && fail "kro pick closed by Escape exited 0"
[[ ! -s $WORK/pick.out && $(cat "$WORK/pick.err") == "kro: no color was picked" ]] ||
    fail "after Escape: '$(cat "$WORK/pick.out")' / '$(cat "$WORK/pick.err")'"

# Three colours, one session each, in a template: each session opens where the pointer now is.
before=$(picks_logged "$AGENT_LOG")
xdotool mousemove 249 300
"$KRO" pick --count 3 --template 'hex[red]hex[green]hex[blue]' >"$WORK/pick.out" 2>"$WORK/pick.err" &
pick=$!
for point in "250 300" "1000 300" ""; do
    wait_for_loupe >/dev/null || fail "the loupe did not show for the next of three"
    xdotool click 1
    before=$((before + 2))
    [[ -z $point ]] && break
    wait_for_picks "$AGENT_LOG" "$before"
    xdotool mousemove $point
    sleep 0.3
done
wait "$pick" || fail "kro pick --count 3 failed: $(cat "$WORK/pick.err")"
[[ $(cat "$WORK/pick.out") == $'ff0000\n00c000\n336699' ]] || fail "kro pick --count 3 printed '$(cat "$WORK/pick.out")'"

# The tray sits at the right end of the wide screen: the import message moves left to stay whole.
printf 'GIMP Palette\nName: Edge\n#\n255 0 128 Hot\n' >"$WORK/edge.gpl"
"$KRO" open "$WORK/edge.gpl" || fail "kro open of a palette failed"
for _ in $(seq 50); do
    message=$(xdotool search --onlyvisible --name "Kro Message" 2>/dev/null | head -1)
    [[ -n $message ]] && grep -q "Imported 1 palette" "$AGENT_LOG" && break
    sleep 0.1
done
[[ -n $message ]] || fail "no message window showed the import"
read -r mx mw <<<"$(xwininfo -id "$message" | awk '/Absolute upper-left X/ {x = $NF} /^  Width:/ {w = $NF} END {print x, w}')"
((mx >= 1280 && mx + mw <= 2560)) || fail "the message lies at x $mx, $mw wide, off its screen"
stop_agent

# One scale for every screen, from Qt's own setting and from the X resources.
unset QT_USE_PHYSICAL_DPI
for setting in "QT_SCALE_FACTOR=2" "Xft.dpi: 192"; do
    if [[ $setting == QT_* ]]; then
        export QT_SCALE_FACTOR=2
    else
        unset QT_SCALE_FACTOR
        echo "$setting" | xrdb -nocpp -merge
    fi
    start_agent
    pick_at 250 200 2 "#00C000"
    pick_at 1000 600 2 "#336699"
    stop_agent
done

echo "pick command test passed"
