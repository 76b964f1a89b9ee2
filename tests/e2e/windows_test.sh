#!/usr/bin/env bash
# The windows with the real agent: the library window opened from the tray menu and by its hot key, the
# menu window by a click on the tray icon; a palette made, a colour picked into it and renamed, the
# palette exported to .ase and .gpl through the export dialog, a GIMP palette dropped on the window from
# another program, and undo twice. The saved library and the exported files are read after each step.
# usage: windows_test.sh PATH_TO_KRO PATH_TO_DRAG_SOURCE
source "$(dirname "$0")/lib.sh"
DRAG_SOURCE=${2:?usage: $0 PATH_TO_KRO PATH_TO_DRAG_SOURCE}
source "$(dirname "$0")/windows.sh"

ANSWERS=$WORK/dialog-answers
export KRO_TEST_DIALOG_ANSWERS=$ANSWERS
OUT=$WORK/out
mkdir -p "$OUT"

library_keys() {
    xdotool windowfocus "$(visible "^Kro Library$")" 2>/dev/null || true
    xdotool key --delay 120 "$@"
    sleep 0.5
}

start_agent

# The tray icon is the agent's window inside the tray host.
tray_icon=""
for window in $(xdotool search --pid "$AGENT_PID" 2>/dev/null); do
    eval "$(xdotool getwindowgeometry --shell "$window")"
    if ((WIDTH <= 48 && HEIGHT <= 48 && Y < 30)); then tray_icon=$window; fi
done
[[ -n $tray_icon ]] || fail "no tray icon window"
eval "$(xdotool getwindowgeometry --shell "$tray_icon")"
icon_x=$((X + WIDTH / 2)) icon_y=$((Y + HEIGHT / 2))

# The tray menu's third entry opens the library.
xdotool mousemove $icon_x $icon_y click 3
sleep 1
xdotool key --delay 150 Down Down Down Return
wait_visible '^Kro Library$' || fail "the tray menu did not open the library window"
library_keys ctrl+w
wait_hidden '^Kro Library$' || fail "Ctrl+W did not close the library window"
# Its global shortcut opens it again.
xdotool key ctrl+alt+shift+l
wait_visible '^Kro Library$' || fail "the shortcut did not open the library window"

# A left click on the icon shows the menu window, a second one hides it.
xdotool mousemove $icon_x $icon_y click 1
wait_visible '^Kro$' || fail "a click on the tray icon did not show the menu window"
# Past the double-click time, so the second click is a click of its own.
sleep 0.8
xdotool mousemove $icon_x $icon_y click 1
wait_hidden '^Kro$' || fail "a second click did not hide the menu window"

# A new palette, named as it is made; it becomes the palette picks go to.
library_keys ctrl+n
xdotool type --delay 60 "E2E Palette"
library_keys Return
wait_for_library '[p["name"] for p in user["palettes"]][-1] == "E2E Palette" and user["paletteUUID"] == user["palettes"][-1]["uuid"]' \
    || fail "the new palette is not saved as the target"

# A pick lands in it: a window of a known colour, the picker's shortcut, a click.
python3 - >"$WORK/colors.log" 2>&1 <<'PY' &
import tkinter
root = tkinter.Tk()
root.title("kro-e2e-colors")
root.geometry("160x120+1100+660")
tkinter.Canvas(root, width=160, height=120, background="#00C000", highlightthickness=0).place(x=0, y=0)
root.mainloop()
PY
PIDS+=($!)
wait_visible kro-e2e-colors || fail "the colour window did not appear"
xdotool mousemove 1180 720
sleep 0.3
xdotool key ctrl+alt+p
sleep 1
xdotool mousemove 1182 722
sleep 0.5
xdotool click 1
wait_for_library 'len(user["palettes"][-1]["colors"]) == 1 and user["palettes"][-1]["colors"][0]["hex"] == user["history"]["colors"][0]["hex"]' \
    || fail "the pick did not reach the new palette"
picked_hex=$(python3 -c 'import json,sys; print(json.load(open(sys.argv[1]))["palettes"][-1]["colors"][0]["hex"])' "$USER_JSON")

# The colour is renamed in the grid: Find, then Tab to the grid, F2, the name, Return.
library_keys ctrl+f Tab Tab Tab F2
xdotool type --delay 60 "Leaf"
library_keys Return
wait_for_library 'user["palettes"][-1]["colors"][0]["name"] == "Leaf"' || fail "the rename is not saved"

# Exported through the dialog, whose answers the test gives: the format follows the extension.
for extension in ase gpl; do
    echo "$OUT/e2e.$extension" >"$ANSWERS"
    library_keys ctrl+e
    for _ in $(seq 50); do [[ -s $OUT/e2e.$extension ]] && break; sleep 0.1; done
    "$KRO" inspect "$OUT/e2e.$extension" >"$WORK/inspect-$extension.txt" || fail "kro cannot read the exported .$extension"
    grep -q "$picked_hex" "$WORK/inspect-$extension.txt" || fail "the exported .$extension lacks the colour: $(cat "$WORK/inspect-$extension.txt")"
done
grep -q "Leaf" "$WORK/inspect-gpl.txt" || fail "the .gpl export lost the colour's name"

# A GIMP palette dragged from another program becomes a palette of its own.
printf 'GIMP Palette\nName: Dropped\n#\n 12  34  56\tInk\n' >"$WORK/Dropped.gpl"
drag_to_library "$WORK/Dropped.gpl"
wait_for_library '[p["name"] for p in user["palettes"]][-1] == "Dropped" and user["palettes"][-1]["colors"][0]["hex"] == "0C2238"' \
    || fail "the dropped GIMP palette is not saved"

# Undo, twice: the drop is taken back and saved; the second undo saves the state it puts back, which by
# the undo history's own rule (a restored state is recorded at the present place) is that same state again.
library_keys ctrl+z
wait_for_library '"Dropped" not in [p["name"] for p in user["palettes"]] and user["palettes"][-1]["colors"][0]["name"] == "Leaf"' \
    || fail "undo did not take the drop back"
before=$(python3 -c 'import json,sys; print(json.load(open(sys.argv[1]))["updatedAt"])' "$USER_JSON")
library_keys ctrl+z
wait_for_library "user['updatedAt'] != '$before' and 'Dropped' not in [p['name'] for p in user['palettes']]" \
    || fail "the second undo did not save the library it put back"

stop_agent
echo "windows test passed"
