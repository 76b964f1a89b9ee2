#!/usr/bin/env bash
# Our own compositor connection for the screen copy, broken mid-session: the copy fails with its reason and
# the process goes on (screen_copy_probe.cpp says what each check holds).
# Usage: screen_copy_test.sh PROBE COLOUR_CLIENT
PROBE=${1:?usage: $0 PROBE COLOUR_CLIENT}
source "$(dirname "$0")/session.sh" "${2:?usage: $0 PROBE COLOUR_CLIENT}"

read -r nx ny _ _ < <(window_rect kro-native)
x=$((nx + 50)) y=$((ny + 50))
# The headless backend draws the cursor into copies: it stays away from the point.
pointer_to $((x + 300)) $((y + 200))
colour=$(screen_pixels "$x,$y")
"$PROBE" "$x" "$y" "$colour" || fail "the screen copy did not fail cleanly when its connection broke"
echo "wayland screen copy test passed"
