# Sourced by the benchmark scripts that draw on a virtual display (Xvfb).

# free_display WHO FIRST LAST: sets `display` to the first free ":N" in FIRST..LAST, or exits.
free_display() {
    local who=$1 n
    display=""
    for n in $(seq "$2" "$3"); do
        if [[ ! -e "/tmp/.X$n-lock" && ! -e "/tmp/.X11-unix/X$n" ]]; then display=":$n"; return; fi
    done
    echo "$who: no free X display in :$2..:$3" >&2
    exit 1
}

# start_xvfb WHO LOG SIZE...: starts Xvfb on `display` with one screen per WxH SIZE, sets
# `xvfb_pid` (the caller's cleanup stops it) and waits until it answers, or exits.
start_xvfb() {
    local who=$1 log=$2 screen=0 size
    shift 2
    local screens=()
    for size in "$@"; do
        screens+=(-screen "$screen" "${size}x24")
        screen=$((screen + 1))
    done
    Xvfb "$display" "${screens[@]}" -nolisten tcp >"$log" 2>&1 &
    xvfb_pid=$!
    for _ in $(seq 50); do xdpyinfo -display "$display" >/dev/null 2>&1 && break; sleep 0.1; done
    xdpyinfo -display "$display" >/dev/null 2>&1 || { echo "$who: Xvfb did not start" >&2; exit 1; }
}

# xvfb_session WHO FIRST LAST SIZE...: a free display in FIRST..LAST, a scratch folder in
# `work`, Xvfb started there (log in $work/xvfb.log), and a trap that stops it and removes
# the folder when the script exits.
xvfb_session() {
    local who=$1 first=$2 last=$3
    shift 3
    free_display "$who" "$first" "$last"
    work=$(mktemp -d "${TMPDIR:-/tmp}/sorvane-$who.XXXXXX")
    xvfb_pid=""
    trap xvfb_session_end EXIT
    start_xvfb "$who" "$work/xvfb.log" "$@"
}

xvfb_session_end() {
    if [[ -n "$xvfb_pid" ]]; then
        kill "$xvfb_pid" 2>/dev/null || true
        wait "$xvfb_pid" 2>/dev/null || true
    fi
    rm -rf "$work"
}
