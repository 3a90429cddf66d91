#!/usr/bin/env bash
# Runs raidcfg out-of-band against every published DMTF Redfish mockup beside the repository,
# each served by raidcfg-bmc --mockup, and checks what it shows and which requests it sends.
#   scripts/interop.sh [BUILD_DIR]    default build/; the programs are in BUILD_DIR/bin
#   RAIDCFG_MOCKUPS=DIR               take the mockups from DIR instead
#   RAIDCFG_INTEROP_KEEP=1            keep the runs' outputs and request logs, and say where
# Prints one line per check and a summary; the exit status is 1 when a check failed.
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
if [ -n "${RAIDCFG_MOCKUPS:-}" ]; then
    mockups=$RAIDCFG_MOCKUPS
    shown_mockups=$RAIDCFG_MOCKUPS
else
    mockups="$here/../../shared/redfish-mockups"
    shown_mockups=../shared/redfish-mockups
fi
if ! [ -d "$mockups" ]; then
    echo "interop: $shown_mockups not found; skipped"
    exit 0
fi
mockups=$(cd "$mockups" && pwd)

cd "$here/.."
build=${1:-build}
bin=$(cd "$build/bin" 2>/dev/null && pwd) || {
    echo "interop: $build/bin not found; build raidcfg and raidcfg-bmc first" >&2
    exit 2
}
for program in raidcfg raidcfg-bmc; do
    if ! [ -x "$bin/$program" ]; then
        echo "interop: $build/bin/$program not found; build it first" >&2
        exit 2
    fi
done
checker="$here/interop_check.py"

# A raidcfg that hangs is stopped; the checker then finds no result line.
limit=()
if command -v timeout >/dev/null 2>&1; then
    limit=(timeout --preserve-status -s KILL 30)
fi

scratch=$(mktemp -d)
emulator_pid=
stop_emulator() {
    if [ -n "$emulator_pid" ]; then
        kill -TERM "$emulator_pid" 2>/dev/null || true
        wait "$emulator_pid" 2>/dev/null || true
        emulator_pid=
    fi
}
cleanup() {
    stop_emulator
    if [ -n "${RAIDCFG_INTEROP_KEEP:-}" ]; then
        echo "interop: the runs are kept in $scratch"
    else
        rm -rf "$scratch"
    fi
}
trap cleanup EXIT
trap 'exit 130' INT TERM

# start_emulator MOCKUP_DIR GROUP_DIR: a fresh emulator for one group of runs; sets port and log.
start_emulator() {
    local dir=$1 group=$2 i
    mkdir -p "$group"
    log="$group/requests.log"
    : >"$log"
    "$bin/raidcfg-bmc" --mockup "$dir" --port-file "$group/port" --log-requests "$log" \
        </dev/null >/dev/null 2>"$group/emulator.err" &
    emulator_pid=$!
    for ((i = 0; i < 500; i++)); do
        [ -s "$group/port" ] && break
        kill -0 "$emulator_pid" 2>/dev/null || break
        sleep 0.01
    done
    if ! [ -s "$group/port" ]; then
        stop_emulator
        return 1
    fi
    port=$(<"$group/port")
}

# run_raidcfg RUN_DIR ARGS...: one raidcfg run against the emulator, with its exit status, its
# output and the emulator's log lines of that run alone kept in RUN_DIR.
run_raidcfg() {
    local run=$1 before rc=0
    shift
    mkdir -p "$run/out"
    before=$(wc -l <"$log")
    "${limit[@]}" "$bin/raidcfg" "$@" --bmc "interop:interop@127.0.0.1:$port" --http \
        --timeout 10 --output "$run/out" </dev/null >"$run/stdout" 2>"$run/stderr" || rc=$?
    echo "$rc" >"$run/rc"
    tail -n +"$((before + 1))" "$log" >"$run/requests.log"
}

passed=0
failed=0
skipped=0
report() {
    local line
    while IFS= read -r line; do
        [ -n "$line" ] || continue
        echo "$line"
        case $line in
            *": FAILED: "*) failed=$((failed + 1)) ;;
            *": skipped: "*) skipped=$((skipped + 1)) ;;
            *) passed=$((passed + 1)) ;;
        esac
    done <<<"$1"
}

started=$(date +%s%N)
found=0
for dir in "$mockups"/*/; do
    dir=${dir%/}
    name=$(basename "$dir")
    [ -f "$dir/index.json" ] || [ -f "$dir/redfish/v1/index.json" ] || continue
    found=$((found + 1))
    work="$scratch/$name"
    mkdir -p "$work"

    # Reads: show and save on one emulator.
    group="$work/reads"
    if start_emulator "$dir" "$group"; then
        run_raidcfg "$group/show" show
        run_raidcfg "$group/save" save --file "$group/save/out/saved.ini"
        stop_emulator
    fi
    report "$(python3 "$checker" verify "$dir" show "$group")"

    # Writes: each on a fresh emulator, so that none sees another's changes.
    if ! python3 "$checker" plan "$dir" >"$work/plan" 2>"$work/plan.err"; then
        report "$(cat "$work/plan.err")"
        continue
    fi
    step=0
    while IFS=$'\t' read -r check prep args; do
        step=$((step + 1))
        group="$work/write$step"
        if start_emulator "$dir" "$group"; then
            if [ "$prep" != - ]; then
                read -ra words <<<"$prep"
                run_raidcfg "$group/prep" "${words[@]}"
            fi
            read -ra words <<<"$args"
            run_raidcfg "$group/run" "${words[@]}"
            run_raidcfg "$group/after" show
            stop_emulator
        fi
        report "$(python3 "$checker" verify "$dir" "$check" "$group")"
    done <"$work/plan"
done
elapsed=$((($(date +%s%N) - started) / 1000000))

if [ "$found" -eq 0 ]; then
    echo "interop: no mockup in $shown_mockups"
    exit 1
fi
printf 'interop: %d mockups, %d checks: %d ok, %d failed, %d skipped (%d.%03d s)\n' \
    "$found" $((passed + failed)) "$passed" "$failed" "$skipped" \
    $((elapsed / 1000)) $((elapsed % 1000))
[ "$failed" -eq 0 ]
