#!/usr/bin/env bash
# How long one colour takes to reach a design program and to come back: the median wall time of 20
# `kro send` and 20 `kro get` against the real program through the agent, beside 20 requests the agent
# refuses at once (what the command and the agent cost without any program). Same set-up as the bridges'
# end-to-end tests. Use a release build:
#   bash bench/bridge_timing.sh build-rel/kro gimp|inkscape|krita
source "$(dirname "$0")/../tests/bridges-e2e/lib.sh" "$1" "${2:?which program: gimp, inkscape or krita}"

case $PROGRAM in
    gimp) APP=org.gimp.GIMP ;;
    inkscape) APP=org.inkscape.Inkscape ;;
    krita) APP=org.kde.krita ;;
esac
start_program

# The median of 20 runs of a command, in milliseconds; every run must end as `expected` (0 or 1) says.
median_ms() {
    local expected=$1
    shift
    local times=()
    for i in $(seq 20); do
        local begin=$(date +%s%N)
        local status=0
        "$@" >/dev/null 2>&1 || status=$?
        local end=$(date +%s%N)
        ((status == expected)) || fail "run $i of '$*' ended with $status"
        times+=($(((end - begin) / 1000000)))
    done
    printf '%s\n' "${times[@]}" | sort -n | sed -n 10,11p | awk '{ sum += $1 } END { printf "%d", sum / 2 }'
}

colors=(FF0080 00C0FF)
printf '%-10s %8s %8s %8s %8s %10s\n' program "set 1st" "get 1st" "set 2nd" "get 2nd" "refused"
printf '%-10s %6s ms %6s ms %6s ms %6s ms %8s ms\n' "$PROGRAM" \
    "$(median_ms 0 kro send --primary "${colors[0]}" --app $APP)" "$(median_ms 0 kro get --primary --app $APP)" \
    "$(median_ms 0 kro send --secondary "${colors[1]}" --app $APP)" "$(median_ms 0 kro get --secondary --app $APP)" \
    "$(median_ms 1 kro get --primary --app NoSuchProgram)"
stop_agent
