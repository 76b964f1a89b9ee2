#!/usr/bin/env bash
# Screenshots of the library window and the menu window with the real agent, for a person to look at:
# the grid with a colour in the inspector, the list, a search, a locked palette with its notice, and the
# menu window under the tray icon. Not a CTest test; run it by hand once per look, for instance
#   KRO_E2E_THEME=dark QT_SCALE_FACTOR=2 bash tests/e2e/windows_shots.sh build-test/kro /tmp/shots
# It writes NAME-THEME-xSCALE.png into the folder, and fails when a window does not show.
source "$(dirname "$0")/lib.sh"
SHOTS=${2:?usage: $0 PATH_TO_KRO FOLDER}
source "$(dirname "$0")/windows.sh"
mkdir -p "$SHOTS"
THEME=${KRO_E2E_THEME:-light}

shot() {
    sleep "${3:-0.8}"
    python3 "$(dirname "$0")/screenshot.py" "$SHOTS/$1-$THEME-x${QT_SCALE_FACTOR:-1}.png" "$(visible "$2")"
}
library_keys() {
    xdotool windowfocus "$(visible "^Kro Library$")" 2>/dev/null || true
    xdotool key --delay 120 "$@"
    sleep 0.4
}

# The theme chosen, the welcome window seen and the dock hidden (each value its JSON text, base64-encoded).
python3 - "$XDG_CONFIG_HOME/kroapp.Kro/defaults.json" "$THEME" <<'PY'
import base64, json, sys
encode = lambda value: base64.b64encode(json.dumps(value).encode()).decode()
json.dump({"UserDefaults.Kro.Onboarding.Needs.Display": False, "UserDefaults.Kro.DockVisible": encode(False),
           "UserDefaults.Kro.AppTheme": encode(sys.argv[2])}, open(sys.argv[1], "w"))
PY

start_agent
"$KRO" open 'kro://palette/hex/FF5E3A,FAC850,281E5A,2E8B57,1E90FF,F5F5F5,101010,8A2BE2,FF69B4/Sunset%20and%20a%20rather%20long%20palette%20name' \
    'kro://palette/hex/0B3D91,FC3D21,FFFFFF/Agency' 'kro://color/hex/00C000/Leaf%20Green'
wait_for_library 'len(user["palettes"]) >= 3' || fail "the palettes were not made"

xdotool key ctrl+alt+shift+l
wait_visible '^Kro Library$' || fail "the library window did not open"
# The sidebar has the focus: down to the long-named palette, then a colour chosen in the grid.
library_keys Home Down Down Tab Tab Tab Tab Right
shot library-grid '^Kro Library$'
library_keys ctrl+2
shot library-list '^Kro Library$'
library_keys ctrl+1 ctrl+f
xdotool type --delay 40 "ff"
sleep 0.3
shot library-search '^Kro Library$'
library_keys ctrl+a BackSpace
# Locked, a colour chosen, and a rename refused: the padlock and the notice with its reason.
library_keys ctrl+l Tab Tab Tab Right
xdotool key F2
# The notice stands for a few seconds: taken at once.
shot library-locked '^Kro Library$' 0.3
agent_log | grep -q "notice: .* is locked" || fail "a rename in a locked palette showed no reason"
library_keys ctrl+l

# The menu window, by a click on the tray icon.
for window in $(xdotool search --pid "$AGENT_PID" 2>/dev/null); do
    eval "$(xdotool getwindowgeometry --shell "$window")"
    if ((WIDTH <= 96 && HEIGHT <= 96 && Y < 60)); then tray_icon=$window; fi
done
eval "$(xdotool getwindowgeometry --shell "$tray_icon")"
xdotool mousemove $((X + WIDTH / 2)) $((Y + HEIGHT / 2)) click 1
wait_visible '^Kro$' || fail "the menu window did not show"
shot menu '^Kro$'
stop_agent
echo "screenshots in $SHOTS"
