#!/usr/bin/env bash
# Uses the editor with the keyboard alone, as a whole program under a window manager and an X server
# of its own: editor_on_x11.sh <folder of the programs> <demo home>.
set -euo pipefail
bin=$1
demo=$2
if [ -z "${VELTO_X11:-}" ]; then
    VELTO_X11=1 exec xvfb-run -a -s '-screen 0 1024x768x24' "$0" "$@"
fi

work=$(mktemp -d)
trap 'jobs -p | xargs -r kill 2> /dev/null || true; rm -rf "$work"' EXIT
export VELTO_HOME=$work/home XDG_RUNTIME_DIR=$work/runtime XDG_CONFIG_HOME=$work/settings
unset WAYLAND_DISPLAY QT_QPA_PLATFORM VELTO_DRIVES VELTO_REGEDIT
# What the window library and the font system keep until the end isn't this program's.
export LSAN_OPTIONS=detect_leaks=0
mkdir -p "$VELTO_HOME/config" "$VELTO_HOME/drive_c/emu"
ln -s "$bin/demo-emulator" "$VELTO_HOME/drive_c/emu/ePSXe.EXE"
mkdir -m 700 "$XDG_RUNTIME_DIR" "$XDG_CONFIG_HOME"
cp "$demo/config/Demo Disc.dta" "$VELTO_HOME/config/"
"$bin/velto-regedit" /S "$demo/settings.reg"
openbox > /dev/null 2>&1 &

fail() {
    echo "$1" >&2
    exit 1
}
# Repeats a command until it succeeds.
eventually() {
    local attempt
    for attempt in {1..100}; do
        "$@" > /dev/null 2>&1 && return
        sleep 0.1
    done
    fail "never: $*"
}
# Waits for a window of this title to be in front, and to have the keyboard.
front() {
    eventually eval '[[ $(xdotool getactivewindow getwindowname) == '"'$1'"'* ]]'
    sleep 0.3
}
keys() { xdotool key --delay 40 "$@"; }
text() { xdotool type --delay 20 -- "$1"; }
file() { [ -f "$VELTO_HOME/config/$1.dta" ]; }
no_file() { ! file "$1"; }

cd /
printf '#!/bin/sh\nexec sleep 60\n' > "$work/hangs"
chmod +x "$work/hangs"
VELTO_REGEDIT=$work/hangs "$bin/velto" -direct 'Demo Disc' &
direct=$!
eventually xdotool search --onlyvisible --name '^Velto$' windowactivate --sync
front Velto
keys Escape
front 'Registry editor'
keys alt+y
wait "$direct" || fail "a direct run whose registry editor hangs ended with $?"

"$bin/velto" &
editor=$!
front 'Velto V1.67.160. Beta 4'

keys ctrl+n
front 'New Configuration'
text 'Typed Game'
keys Return
eventually file 'Typed Game'
front 'Velto V1'
keys F2
text 'Renamed Game'
keys Return
eventually file 'Renamed Game'
no_file 'Typed Game' || fail 'the old file is still there'

keys alt+c
text '-typed'
keys alt+a
eventually grep -q '^; commandLine = -typed' "$VELTO_HOME/config/Renamed Game.dta"

"$bin/velto" -direct 'Demo Disc' || fail 'the hand-over had no answer'
sleep 1
[ ! -e "$VELTO_HOME/config/main.bak" ] || eventually [ ! -e "$VELTO_HOME/config/main.bak" ]
keys alt+c ctrl+a
text '-stay 6000'
keys alt+a alt+l
eventually [ -e "$VELTO_HOME/config/plugins.bak" ]
keys alt+F4
front 'Exit Velto?'
keys Return
first=$editor
"$bin/velto" &
editor=$!
eventually eval '[ "$(xdotool getactivewindow getwindowpid)" = '"$editor"' ]'
front 'Velto V1'
kill -0 "$first" || fail 'the run was left to itself'
text 'Renamed'
keys alt+l
[ -e "$VELTO_HOME/config/main.bak" ] || fail 'a start took the backup of a run that lives'
wait "$first" || fail "the run's process ended with $?"
[ -z "$(ls "$VELTO_HOME/config/"*.bak 2> /dev/null)" ] || fail 'the run left its backups'

keys alt+c ctrl+a
text '-unsaved'
keys alt+F4
front 'Save and exit'
keys Escape
front 'Velto V1'
kill -0 "$editor" || fail 'No ended the program'
keys alt+r
sleep 0.5 # a button that a key presses shows it for a moment
keys alt+F4
front 'Exit Velto?'
keys Return
wait "$editor" || fail "the editor ended with $?"

Xvfb -displayfd 3 3> "$work/display" > /dev/null 2>&1 &
server=$!
eventually [ -s "$work/display" ]
(
    export DISPLAY=":$(cat "$work/display")"
    "$bin/velto" &
    editor=$!
    eventually xdotool search --onlyvisible --name '^Velto V1'
    kill "$server"
    ended=0
    wait "$editor" || ended=$?
    [ "$ended" -gt 0 ] && [ "$ended" -lt 128 ] || fail "without its display the editor ended with $ended"
)
if grep -q -e '-unsaved' "$VELTO_HOME/config/"*.dta; then fail 'saved unasked'; fi
