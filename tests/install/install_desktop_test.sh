#!/usr/bin/env bash
# The installed Kro as the desktop reaches it: with the prefix on XDG_DATA_DIRS, xdg-open hands a kro:// link
# and a palette file to the running agent through the desktop entry (its Exec, `kro open %U`, is the second
# kro that hands its arguments over and exits), and both land in the saved library.
# usage: install_desktop_test.sh BUILD_DIR
BUILD=${1:?usage: $0 BUILD_DIR}
source "$(dirname "$0")/../e2e/lib.sh" "(installed below)"

PREFIX=$WORK/prefix
cmake --install "$BUILD" --prefix "$PREFIX" >/dev/null
export XDG_DATA_DIRS=$PREFIX/share:/usr/share PATH=$PREFIX/bin:$PATH
KRO=$PREFIX/bin/kro
# xdg-open's plain desktop path: no desktop environment to hand the link to.
unset XDG_CURRENT_DESKTOP DESKTOP_SESSION KDE_FULL_SESSION GNOME_DESKTOP_SESSION_ID BROWSER

start_agent
# Started from the menu, the entry runs `kro open` with no argument: with an agent running, it only exits.
timeout 20 kro open || fail "kro open with no argument, as the menu starts it"
xdg-open 'kro://color/hex/FF0080/Hot%20Pink' || fail "xdg-open of a kro:// link"
wait_for_library 'any(c["hex"] == "FF0080" and c["name"] == "Hot Pink" for c in user["history"]["colors"])' \
    || fail "the linked colour is not in the saved history"

printf 'GIMP Palette\nName: Sunset\n255 128 0 Orange\n128 0 255 Violet\n' >"$WORK/sunset.gpl"
xdg-open "$WORK/sunset.gpl" || fail "xdg-open of a GIMP palette"
wait_for_library '[c["hex"] for p in user["palettes"] if p["name"] == "Sunset" for c in p["colors"]] == ["FF8000", "8000FF"]' \
    || fail "the opened palette is not in the saved library"

# A link that does nothing says why in the log, once.
xdg-open 'kro://color/hex/FF0080/Nul%00Name' || fail "xdg-open of a refused link"
for _ in $(seq 50); do agent_log | grep -q 'URL command ignored' && break; sleep 0.1; done
[[ $(agent_log | grep -c 'URL command ignored, a component holds control characters') == 1 ]] \
    || fail "the refused link was not logged once: $(agent_log | grep 'URL command' || true)"

stop_agent
echo "install desktop test passed"
