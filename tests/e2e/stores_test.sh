#!/usr/bin/env bash
# Nothing is lost, with the real binary on real files: two imports at once both land, a killed import leaves a
# whole library holding every colour confirmed before, a damaged store is put aside, a full or read-only disk
# fails the command, and an agent that does not answer keeps the command from writing.
source "$(dirname "$0")/lib.sh"

V5=$XDG_DATA_HOME/kroapp.Kro/v5
IN=$WORK/in
mkdir -p "$IN"

# A GIMP palette of one colour, named after its hex; prints its path.
palette() {
    local hex=$1
    printf 'GIMP Palette\nName: P%s\n#\n%d %d %d\tc%s\n' "$hex" $((16#${hex:0:2})) $((16#${hex:2:2})) \
        $((16#${hex:4:2})) "$hex" >"$IN/$hex.gpl"
    echo "$IN/$hex.gpl"
}

# True when user.json parses and its palettes hold every hex given.
library_holds() {
    python3 - "$USER_JSON" "$@" <<'PY'
import json, sys
try:
    user = json.load(open(sys.argv[1]))
except FileNotFoundError:
    user = {"palettes": []}
hexes = {c["hex"] for p in user["palettes"] for c in p["colors"]}
missing = [h for h in sys.argv[2:] if h not in hexes]
if missing:
    print("missing:", *missing, file=sys.stderr)
sys.exit(1 if missing else 0)
PY
}

temporaries() { find "$V5" -maxdepth 1 -name '.*.??????' | wc -l; }

echo "--- two imports at once, with no agent, both land"
for round in $(seq 4); do
    first=$(printf '%02X0000' "$round")
    second=$(printf '0000%02X' "$round")
    "$KRO" import "$(palette "$first")" >"$WORK/first.out" 2>&1 &
    pid=$!
    sleep "0.$((RANDOM % 3))"
    "$KRO" import "$(palette "$second")" >"$WORK/second.out" 2>&1 || fail "round $round: $(cat "$WORK/second.out")"
    wait "$pid" || fail "round $round: $(cat "$WORK/first.out")"
    grep -qx "Imported 1 palette" "$WORK/first.out" || fail "round $round: $(cat "$WORK/first.out")"
    library_holds "$first" "$second" || fail "round $round: an import was overwritten by the other"
done

echo "--- imports killed at random moments never leave a torn library or lose a confirmed colour"
start=$(date +%s%N)
"$KRO" import "$(palette 0A0A0A)" >/dev/null || fail "a plain import failed"
took_ms=$((($(date +%s%N) - start) / 1000000))
confirmed=(0A0A0A)
killed=0
for i in $(seq 24); do
    hex=$(printf '%02X%02XAA' "$i" $((RANDOM % 256)))
    "$KRO" import "$(palette "$hex")" >/dev/null 2>&1 &
    pid=$!
    # Anywhere from the start to a little past the usual end of a run.
    sleep "$(awk -v ms=$((RANDOM % (took_ms * 12 / 10 + 1))) 'BEGIN { printf "%.3f", ms / 1000 }')"
    kill -KILL "$pid" 2>/dev/null || true
    if wait "$pid" 2>/dev/null; then confirmed+=("$hex"); else killed=$((killed + 1)); fi
    library_holds "${confirmed[@]}" || fail "after run $i the library lost a confirmed colour or does not parse"
done
echo "killed $killed of 24 runs, ${#confirmed[@]} colours confirmed"
"$KRO" import "$(palette 0B0B0B)" >/dev/null || fail "an import after the killed ones failed"
[[ $(temporaries) == 0 ]] || fail "killed writers' temporary files were left: $(ls -A "$V5")"

echo "--- a damaged store is put aside at the first change, and the command says so"
cp "$USER_JSON" "$WORK/good.json"
head -c 100 "$WORK/good.json" >"$USER_JSON"
"$KRO" import "$(palette 0C0C0C)" >"$WORK/out" 2>"$WORK/err" || fail "import over a damaged library: $(cat "$WORK/err")"
grep -qx "Imported 1 palette" "$WORK/out" || fail "no success line: $(cat "$WORK/out")"
grep -q "^kro: $USER_JSON could not be read (.*); it is kept as user.json.damaged-[0-9]\{8\}T[0-9]\{6\}Z" "$WORK/err" ||
    fail "the damaged library was not reported: $(cat "$WORK/err")"
cmp -s <(head -c 100 "$WORK/good.json") "$V5"/user.json.damaged-* || fail "the damaged library was not kept whole"
library_holds 0C0C0C || fail "the new library lacks the import"

"$KRO" snapshot create >/dev/null || fail "snapshot create"
echo '{"snapshots": [' >"$V5/snapshots.json"
"$KRO" snapshot list >"$WORK/out" 2>&1 && fail "a damaged snapshot list read as a list: $(cat "$WORK/out")"
grep -q "snapshots.json could not be read (" "$WORK/out" || fail "the damaged list was not reported: $(cat "$WORK/out")"
"$KRO" snapshot create >"$WORK/out" 2>"$WORK/err" || fail "snapshot create over a damaged file: $(cat "$WORK/err")"
grep -q "snapshots.json could not be read" "$WORK/err" || fail "the damaged snapshots were not reported"
grep -qx '{"snapshots": \[' "$V5"/snapshots.json.damaged-* || fail "the damaged snapshots were not kept"

echo "--- a full disk and a read-only one fail the command, naming the file, and keep the old file"
if unshare -m true 2>/dev/null; then
    as_mount_owner=(unshare -m)
elif unshare -rm true 2>/dev/null; then
    as_mount_owner=(unshare -rm)
else
    as_mount_owner=()
    echo "SKIP: this machine allows no private mount (unshare -m), so the full-disk case is not run"
fi
if ((${#as_mount_owner[@]})); then
    FULL=$WORK/full
    mkdir -p "$FULL"
    env -u KRO_LOG "${as_mount_owner[@]}" bash -s "$KRO" "$FULL" "$(palette 0D0D0D)" "$(palette 0E0E0E)" >"$WORK/disk.log" 2>&1 <<'SH' ||
set -u
KRO=$1 FULL=$2 small=$3 second=$4
cd "$(dirname "$FULL")"
mount -t tmpfs -o size=64k tmpfs "$FULL" || { echo "SKIP: tmpfs cannot be mounted"; exit 0; }
export XDG_DATA_HOME=$FULL
library=$FULL/kroapp.Kro/v5/user.json
"$KRO" import "$small" >/dev/null || { echo "FAIL: the first import into the small disk failed"; exit 1; }
before=$(sha1sum "$library")
head -c 200000 /dev/zero >"$FULL/filler" 2>/dev/null
"$KRO" import "$second" >out 2>err && { echo "FAIL: an import into a full disk succeeded"; exit 1; }
[[ ! -s out ]] || { echo "FAIL: success printed for a full disk: $(cat out)"; exit 1; }
grep -qx "kro: cannot save $library: No space left on device" err || { echo "FAIL: $(cat err)"; exit 1; }
[[ $(sha1sum "$library") == "$before" ]] || { echo "FAIL: the library changed on a full disk"; exit 1; }
rm "$FULL/filler"
mount -o remount,ro "$FULL" || { echo "FAIL: cannot remount read-only"; exit 1; }
"$KRO" import "$second" >out 2>err && { echo "FAIL: an import into a read-only disk succeeded"; exit 1; }
[[ ! -s out ]] || { echo "FAIL: success printed for a read-only disk"; exit 1; }
grep -qx "kro: cannot save $library: Read-only file system" err || { echo "FAIL: $(cat err)"; exit 1; }
echo "disk cases passed"
SH
        fail "$(cat "$WORK/disk.log")"
    cat "$WORK/disk.log"
fi

echo "--- with the agent: the same answers, undo, a store left alone at start, and a stopped agent"
"$KRO" import "$IN/missing.gpl" >/dev/null 2>"$WORK/alone.err" && fail "a missing file imported"
start_agent
"$KRO" import "$IN/missing.gpl" >/dev/null 2>"$WORK/agent.err" && fail "a missing file imported through the agent"
cmp -s "$WORK/alone.err" "$WORK/agent.err" || fail "another message through the agent: $(cat "$WORK/agent.err")"
"$KRO" import "$(palette 0F0F0F)" >"$WORK/out" || fail "import through the agent"
grep -qx "Imported 1 palette" "$WORK/out" || fail "the agent's success line: $(cat "$WORK/out")"
library_holds 0F0F0F || fail "the agent did not save the import"
"$KRO" undo >"$WORK/out" || fail "undo through the agent"
grep -q "^Undone: " "$WORK/out" || fail "undo said: $(cat "$WORK/out")"
library_holds 0F0F0F && fail "undo did not take the import back"
"$KRO" redo >/dev/null || fail "redo through the agent"
library_holds 0F0F0F || fail "redo did not bring the import back"

# A second start rewrites no store that did not change.
stop_agent
sums=$(cd "$V5" && sha1sum ./*.json && stat -c '%n %Y.%y' ./*.json)
sleep 1.1
start_agent
[[ $(cd "$V5" && sha1sum ./*.json && stat -c '%n %Y.%y' ./*.json) == "$sums" ]] || fail "the agent rewrote a store at start"

# Stopped, the agent cannot answer: the command fails within its time and writes nothing, then or later.
kill -STOP "$AGENT_PID"
before=$(sha1sum "$V5/snapshots.json")
"$KRO" snapshot create >"$WORK/out" 2>"$WORK/err" && fail "snapshot create succeeded against a stopped agent"
grep -q "did not answer within 10 seconds" "$WORK/err" || fail "$(cat "$WORK/err")"
[[ ! -s $WORK/out ]] || fail "success printed against a stopped agent"
start=$(date +%s%N)
"$KRO" open 'kro://color/hex/123456/Late' 2>"$WORK/err" && fail "kro open succeeded against a stopped agent"
waited_ms=$((($(date +%s%N) - start) / 1000000))
# Ten seconds, and what a sanitizer build takes to start and end on a busy machine.
((waited_ms < 10000 + 2 * took_ms + 1000)) || fail "kro open gave up only after $waited_ms ms"
grep -q "did not answer within 10 seconds" "$WORK/err" || fail "$(cat "$WORK/err")"
kill -CONT "$AGENT_PID"
sleep 1
[[ $(sha1sum "$V5/snapshots.json") == "$before" ]] || fail "the resumed agent carried out a request given up on"
wait_for_library 'not any(c["hex"] == "123456" for c in user["history"]["colors"])' ||
    fail "the resumed agent carried out a URL command given up on"
stop_agent
echo "stores test passed"
