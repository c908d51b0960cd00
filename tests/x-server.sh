# Sourced by scripts that need an X server of their own.
# start_x_server COMMAND [ARGUMENT...]: starts it on a free display, sets DISPLAY and `server`, its process, and
# waits until it answers; what it prints is in the file xserver.log of the home. The number is drawn by chance
# from above those that compositors and other servers take when they look for the lowest free one. It does not
# start anew when its last client leaves, which refuses the one that comes at that moment.
start_x_server() {
    local number
    for number in $(shuf -i 200-999 -n 20); do
        : >"$HOME/display"
        "$1" ":$number" -displayfd 7 -noreset "${@:2}" 7>"$HOME/display" >"$HOME/xserver.log" 2>&1 &
        server=$!
        export DISPLAY=:$number
        while kill -0 $server 2>/dev/null; do
            [ ! -s "$HOME/display" ] || return 0
            sleep 0.02
        done
    done
    cat "$HOME/xserver.log" >&2
    return 1
}
