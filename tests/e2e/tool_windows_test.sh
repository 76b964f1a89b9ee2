#!/usr/bin/env bash
# The contrast checker, the preferences and the colour dock with the real agent: "contrast" and "settings"
# URL commands open their windows at the pair and the pane asked for; the dock shows a palette made from the
# command line and a click on its swatch fills the clipboard, its corners are square without a compositing
# manager and round under one; the colour panel's "use" fills the clipboard. With KRO_E2E_SHOTS set to a
# folder, each window is also saved there as a PNG (KRO_E2E_THEME picks light or dark, QT_SCALE_FACTOR the
# scale; a screen of 2560x1600 through KRO_E2E_SCREEN gives the windows room at scale 2).
source "$(dirname "$0")/lib.sh"

visible() { xdotool search --onlyvisible --name "$1" 2>/dev/null | head -1; }
wait_visible() {
    for _ in $(seq 150); do [[ -n $(visible "$1") ]] && return 0; sleep 0.1; done
    return 1
}
clipboard() {
    python3 -c 'import tkinter; r = tkinter.Tk(); r.withdraw(); print(r.clipboard_get())' 2>/dev/null
}
shot() {
    [[ -n ${KRO_E2E_SHOTS:-} ]] || return 0
    sleep 0.8
    python3 "$(dirname "$0")/screenshot.py" "$KRO_E2E_SHOTS/$1-${KRO_E2E_THEME:-light}-x${QT_SCALE_FACTOR:-1}.png" "$(visible "$2")"
}

# The dock shown, the theme chosen, as a person's earlier session left them (each value is its JSON text,
# base64-encoded, as the agent stores it).
mkdir -p "$XDG_CONFIG_HOME/kroapp.Kro"
python3 - "$XDG_CONFIG_HOME/kroapp.Kro/defaults.json" "${KRO_E2E_THEME:-light}" <<'PY'
import base64, json, sys
encode = lambda value: base64.b64encode(json.dumps(value).encode()).decode()
json.dump({"UserDefaults.Kro.DockVisible": encode(True), "UserDefaults.Kro.AppTheme": encode(sys.argv[2])},
          open(sys.argv[1], "w"))
PY

start_agent

# The first start shows the welcome window once.
wait_visible '^Welcome to Kro$' || fail "the welcome window did not open on the first start"
shot onboarding '^Welcome to Kro$'

# A palette made from the command line shows in the dock; its swatch copies the colour.
"$KRO" open 'kro://palette/hex/C02040,20C040/Dock%20Test'
wait_for_library '[p["name"] for p in user["palettes"]][-1] == "Dock Test"' || fail "the palette was not made"
wait_visible '^Kro Color Dock$' || fail "the dock is not shown"
sleep 1
dock=$(visible '^Kro Color Dock$')
shot dock '^Kro Color Dock$'
eval "$(xdotool getwindowgeometry --shell "$dock")"
# The dock stands at the left edge; palettes are columns, the newest last, its first swatch at the top.
scale=${QT_SCALE_FACTOR:-1}
xdotool mousemove $((X + WIDTH - 17 * scale)) $((Y + 33 * scale)) click 1
for _ in $(seq 30); do [[ $(clipboard) == *C02040* ]] && break; sleep 0.2; done
[[ $(clipboard) == *C02040* ]] || fail "a click on the dock's swatch did not copy it: '$(clipboard)'"

# Without a compositing manager the dock is opaque and square: the pixel by its corner is its edge, like the
# middle of its left side. Shown again under one, it is translucent and the desktop shows at its corners.
pixel() {
    python3 - "$1" "$2" <<'PY'
import ctypes, sys
x11 = ctypes.CDLL("libX11.so.6")
x11.XOpenDisplay.restype = x11.XGetImage.restype = ctypes.c_void_p
x11.XDefaultRootWindow.restype = x11.XGetPixel.restype = ctypes.c_ulong
x11.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
x11.XGetImage.argtypes = [ctypes.c_void_p, ctypes.c_ulong] + [ctypes.c_int] * 2 + [ctypes.c_uint] * 2 + [ctypes.c_ulong, ctypes.c_int]
x11.XGetPixel.argtypes = [ctypes.c_void_p, ctypes.c_int, ctypes.c_int]
display = x11.XOpenDisplay(None)
image = x11.XGetImage(display, x11.XDefaultRootWindow(display), int(sys.argv[1]), int(sys.argv[2]), 1, 1, 0xFFFFFFFF, 2)
print("%06X" % (x11.XGetPixel(image, 0, 0) & 0xFFFFFF))
PY
}
toggle_dock() { xdotool key ctrl+alt+shift+d; sleep 0.5; xdotool key ctrl+alt+shift+d; }
toggle_dock
wait_visible '^Kro Color Dock$' || fail "the dock did not come back"
sleep 1
eval "$(xdotool getwindowgeometry --shell "$(visible '^Kro Color Dock$')")"
[[ $(pixel "$X" $((Y + 1))) == "$(pixel "$X" $((Y + HEIGHT / 2)))" ]] ||
    fail "without a compositor the dock's corner is $(pixel "$X" $((Y + 1))), its edge $(pixel "$X" $((Y + HEIGHT / 2)))"
xcompmgr -n >"$WORK/xcompmgr.log" 2>&1 &
PIDS+=($!)
sleep 1
toggle_dock
wait_visible '^Kro Color Dock$' || fail "the dock did not come back under the compositor"
sleep 1
shot dock-composited '^Kro Color Dock$'
eval "$(xdotool getwindowgeometry --shell "$(visible '^Kro Color Dock$')")"
for _ in $(seq 30); do [[ $(pixel "$X" $((Y + 1))) == "$(pixel $((X - 3)) $((Y + 1)))" ]] && break; sleep 0.1; done
[[ $(pixel "$X" $((Y + 1))) == "$(pixel $((X - 3)) $((Y + 1)))" ]] ||
    fail "under a compositor the dock's corner is $(pixel "$X" $((Y + 1))), not the desktop's $(pixel $((X - 3)) $((Y + 1)))"
# Hidden now, so that it stands over none of the windows pictured next.
xdotool key ctrl+alt+shift+d
for _ in $(seq 30); do [[ -z $(visible '^Kro Color Dock$') ]] && break; sleep 0.1; done

"$KRO" open 'kro://contrast/hex/777777,FFFFFF'
wait_visible '^4\.48 AA Large — Kro Contrast Checker$' || fail "the checker does not show 4.48 AA Large: $(xdotool search --name 'Contrast' getwindowname 2>/dev/null)"
shot contrast 'Kro Contrast Checker$'
if [[ -n ${KRO_E2E_SHOTS:-} ]]; then
    # For the pictures: a pair that passes every level, one that fails them all, and a red and green pair
    # as a person with deuteranopia sees it (Alt+W goes to the vision menu); then normal vision again.
    "$KRO" open 'kro://contrast/hex/000000,FFFFFF'
    wait_visible '^21[.0]* AAA' || fail "black on white does not show 21 AAA"
    shot contrast-pass 'Kro Contrast Checker$'
    "$KRO" open 'kro://contrast/hex/AAAAAA,FFFFFF'
    wait_visible '^2\.32 ' || fail "#AAAAAA on white does not show 2.32"
    shot contrast-fail 'Kro Contrast Checker$'
    "$KRO" open 'kro://contrast/hex/C02040,20C040'
    wait_visible '^2\.46 ' || fail "red on green does not show 2.46"
    xdotool windowfocus --sync "$(visible 'Kro Contrast Checker$')"
    for key in alt+w Down; do xdotool key "$key"; sleep 0.2; done
    shot contrast-deuteranopia 'Kro Contrast Checker$'
    xdotool key Home
fi

"$KRO" open 'kro://settings/formats'
wait_visible '^Formats — Kro Preferences$' || fail "the settings command did not open the formats pane"
shot preferences-formats '— Kro Preferences$'
for pane in general appearance shortcuts dock snapshots about; do
    "$KRO" open "kro://settings/$pane"
    wait_visible "— Kro Preferences$" || fail "no preferences window for $pane"
    shot "preferences-$pane" '— Kro Preferences$'
done

# The colour panel opens ready for a hex value; "use" delivers the colour, to the clipboard when no
# application takes it.
"$KRO" open 'kro://colorpanel'
wait_visible '^Kro Color Panel$' || fail "kro://colorpanel did not open the colour panel"
panel=$(visible '^Kro Color Panel$')
xdotool windowfocus --sync "$panel"
sleep 0.3
for key in ctrl+a 3 a 7 b d 5 Return alt+u; do xdotool key "$key"; sleep 0.15; done
for _ in $(seq 30); do [[ $(clipboard) == "#3A7BD5" ]] && break; sleep 0.2; done
[[ $(clipboard) == "#3A7BD5" ]] || fail "the colour panel's use action put '$(clipboard)' on the clipboard"
shot colorpanel '^Kro Color Panel$'
xdotool key Escape

stop_agent
echo "tool windows test passed"
