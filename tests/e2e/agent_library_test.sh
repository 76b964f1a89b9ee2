#!/usr/bin/env bash
# The agent starts in a tray, takes a colour and a palette by URL command, saves them, and still has them
# after a restart.
source "$(dirname "$0")/lib.sh"

start_agent
agent_log | grep -q "tray: available" || fail "no tray icon (log: $(agent_log | tail -5))"

"$KRO" open 'kro://color/hex/FF0080/Hot%20Pink' || fail "kro open color"
wait_for_library 'any(c["hex"] == "FF0080" and c["name"] == "Hot Pink" for c in user["history"]["colors"])' \
    || fail "the colour is not in the saved history"
agent_log | grep -q 'tooltip: Color Created' || fail "no \"Color Created\" tooltip"

"$KRO" open 'kro://palette/hex/00FF00,0000FF/Brand%20Colors' 'kro://palette/rgba/255-128-0-0.5/_' || fail "kro open palette"
wait_for_library '[p["name"] for p in user["palettes"]][-2:] == ["Brand Colors", "Palette"]' || fail "palettes not saved"
wait_for_library '[c["hex"] for c in user["palettes"][-2]["colors"]] == ["00FF00", "0000FF"]' || fail "palette colours"
wait_for_library 'user["palettes"][-1]["colors"][0]["alpha"] == 0.5' || fail "rgba alpha"

# Malformed commands do nothing: a wrong count, an unknown command, a bad rgba.
before=$(sha1sum "$USER_JSON")
"$KRO" open 'kro://color/hex/FF0000' 'kro://nothing/here' 'kro://color/rgba/1-2-x-1/Bad' || fail "kro open malformed"
sleep 0.5
[[ $(sha1sum "$USER_JSON") == "$before" ]] || fail "a malformed command changed the library"

stop_agent
start_agent
wait_for_library 'user["history"]["colors"][0]["name"] == "Hot Pink"' || fail "history lost after restart"
"$KRO" open 'kro://color/rgba/0-0-255-1/Deep%20Blue' || fail "kro open after restart"
wait_for_library '[c["name"] for c in user["history"]["colors"]][:2] == ["Deep Blue", "Hot Pink"] and len(user["palettes"]) == 3' \
    || fail "the restarted agent did not keep the library"

# A second agent does not start beside the first.
"$KRO" >"$WORK/second.log" 2>&1 || true
grep -q "already running" "$WORK/second.log" || fail "a second agent started"
stop_agent
echo "agent library test passed"
