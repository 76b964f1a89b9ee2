#!/usr/bin/env bash
# The tray on a wlroots desktop: waybar, with only its tray module, is the StatusNotifierItem host of a headless
# Sway session. The agent's item must be registered with the bar's watcher; activating it, as the bar does on a
# click, must open and then close the menu window; its context menu must offer the agent's actions, and its
# "Pick Color" must open the picker; after the pick the bar's icon shows the picked colour, and the message
# saying so is not a window of its own.
# With KRO_E2E_SHOTS set to a folder, the bar is saved there as wayland-tray-bar.png.
# Usage: tray_test.sh KRO COLOUR_CLIENT
KRO=${1:?usage: $0 KRO COLOUR_CLIENT}
source "$(dirname "$0")/session.sh" "${2:?usage: $0 KRO COLOUR_CLIENT}"
source "$(dirname "$0")/agent.sh"
command -v waybar >/dev/null || skip "waybar is not installed (scripts/setup-deps installs it)"
command -v gdbus >/dev/null || skip "gdbus is not installed (scripts/setup-deps installs it)"

BAR_HEIGHT=30
mkdir -p "$WORK/waybar"
cat >"$WORK/waybar/config" <<EOF2
{"layer": "top", "position": "top", "height": $BAR_HEIGHT, "modules-right": ["tray"], "tray": {"icon-size": 22}}
EOF2
cat >"$WORK/waybar/style.css" <<'EOF2'
* { font-family: sans-serif; font-size: 12px; min-height: 0; }
window#waybar { background: #202020; }
EOF2
GDK_BACKEND=wayland waybar -c "$WORK/waybar/config" -s "$WORK/waybar/style.css" >"$WORK/waybar.log" 2>&1 &
PIDS+=($!)
watcher() {
    gdbus call --session --dest org.kde.StatusNotifierWatcher --object-path /StatusNotifierWatcher \
        --method org.freedesktop.DBus.Properties.Get org.kde.StatusNotifierWatcher "$1" 2>/dev/null
}
for _ in $(seq 100); do [[ $(watcher IsStatusNotifierHostRegistered) == *true* ]] && break; sleep 0.1; done
[[ $(watcher IsStatusNotifierHostRegistered) == *true* ]] || fail "waybar's tray did not register a host: $(tail -3 "$WORK/waybar.log")"

start_agent screen-copy
agent_logged "tray: available" || fail "the agent found no tray beside waybar: $(agent_log | grep tray)"

# The agent's item, "BUS-NAME/PATH" as the watcher lists it, and the process behind that bus name.
for _ in $(seq 50); do [[ $(watcher RegisteredStatusNotifierItems) == *"'"* ]] && break; sleep 0.1; done
items=$(watcher RegisteredStatusNotifierItems)
item=$(grep -o "'[^']*'" <<<"$items" | head -1 | tr -d "'")
[[ -n $item ]] || fail "no item is registered with the watcher: $items"
service=${item%%/*} path=/${item#*/}
[[ $path == / ]] && path=/StatusNotifierItem
owner=$(gdbus call --session --dest org.freedesktop.DBus --object-path / \
    --method org.freedesktop.DBus.GetConnectionUnixProcessID "$service" | sed -E 's/.*uint32 ([0-9]+).*/\1/')
[[ $owner == "$AGENT_PID" ]] || fail "the registered item $item belongs to process $owner, not the agent ($AGENT_PID)"
echo "registered: $item"

item_call() { gdbus call --session --dest "$service" --object-path "$@"; }
menu_window_shown() { window_rect Kro >/dev/null; }

# A click on the icon: the menu window opens; a second one closes it.
item_call "$path" --method org.kde.StatusNotifierItem.Activate 0 0 >/dev/null || fail "Activate failed"
for _ in $(seq 100); do menu_window_shown && break; sleep 0.1; done
menu_window_shown || fail "activating the item did not open the menu window: $(agent_log | tail -3)"
item_call "$path" --method org.kde.StatusNotifierItem.Activate 0 0 >/dev/null || fail "the second Activate failed"
for _ in $(seq 100); do menu_window_shown || break; sleep 0.1; done
menu_window_shown && fail "activating the item again did not close the menu window"
echo "activate: opens and closes the menu window"

# The context menu, as the bar reads it through dbusmenu.
menu_path=$(item_call "$path" --method org.freedesktop.DBus.Properties.Get org.kde.StatusNotifierItem Menu |
    grep -o "'/[^']*'" | tr -d "'")
[[ -n $menu_path ]] || fail "the item names no menu"
layout=$(item_call "$menu_path" --method com.canonical.dbusmenu.GetLayout -- 0 -1 "[]")
for label in "Pick Color" "Show Menu Window" "Open Library" "Preferences" "Quit Kro"; do
    [[ $layout == *"'label': <'$label'>"* ]] || fail "the tray menu lacks \"$label\": $layout"
done
pick_id=$(grep -o "<([0-9]*, {'enabled': <true>, 'label': <'Pick Color'>" <<<"$layout" | grep -o '[0-9]\+' | head -1)
[[ -n $pick_id ]] || fail "the tray menu's Pick Color is not enabled: $layout"
echo "menu: offers Pick Color and the windows"

# The bar as the person sees it: how many of its pixels have the colour RRGGBB.
bar_pixels_of() {
    grim -g "0,0 1280x$BAR_HEIGHT" -t ppm "$WORK/bar.ppm" || fail "grim could not take the bar"
    "$PYTHON" "$WAYLAND_TESTS/ppm_pixels.py" "$WORK/bar.ppm" --count "$1"
}
(($(bar_pixels_of FF0000) == 0)) || fail "the bar shows red before anything was picked"

# The menu's Pick Color, clicked as the bar does: the picker opens, and a pick on the native window's red
# lands in the history and in the bar's icon.
read -r nx ny _ _ < <(window_rect kro-native)
x=$((nx + 50)) y=$((ny + 50))
[[ $(screen_pixels "$x,$y") == FF0000 ]] || fail "the native window is not red at ($x, $y)"
pointer_away_from "$x" "$y"
item_call "$menu_path" --method com.canonical.dbusmenu.Event -- "$pick_id" clicked "<0>" 0 >/dev/null ||
    fail "the menu's click did not reach the agent"
click_pick "$x" "$y" FF0000
for _ in $(seq 50); do (($(bar_pixels_of FF0000) >= 20)) && break; sleep 0.1; done
red=$(bar_pixels_of FF0000)
((red >= 20)) || fail "the bar's icon does not show the picked red ($red red pixels)"
echo "menu's Pick Color: picked FF0000, the icon shows it ($red pixels)"
# The message after a pick is a brief notification here: a message window would be tiled among the windows.
agent_logged "tooltip: #FF0000" || fail "no message was given after the pick"
window_rect "Kro Message" >/dev/null && fail "the message after the pick came as a window among the person's"
if [[ -n ${KRO_E2E_SHOTS:-} ]]; then
    mkdir -p "$KRO_E2E_SHOTS"
    grim -g "0,0 1280x$BAR_HEIGHT" "$KRO_E2E_SHOTS/wayland-tray-bar.png"
fi

stop_agent
echo "wayland tray test passed"
