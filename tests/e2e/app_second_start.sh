#!/usr/bin/env bash
# app_second_start.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR
#
# Starting the program while it runs: the new process hands over to the running
# one and ends at once with 0, with no splash, no window and no file touched.
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=app_lib.sh
source "$here/app_lib.sh"
app_setup second-start "$@"

app_first_run_through_welcome
first_pid=$(app_window_pid "$APP_MAIN_DIALOG")
shell_pid=$(drv windows | grep -F 'class="Shell_TrayWnd"' | head -n 1 | sed -n 's/.* pid=\([0-9]*\) .*/\1/p')
[[ -n $first_pid ]] || app_abort "the first instance's process is known"

# Our own windows, not the shell's (its tooltips may come and go).
own_windows() { drv windows | grep -v " pid=${shell_pid:-none} "; }
before=$(own_windows)
files_before=$(md5sum "$APP_CONFIG" "$APP_LOG")

# A splash of a second instance would be a caption-less dialog: watch for one
# from before the second start until well after it would have closed (a
# splash stays 2.4 s, longer than this watcher needs to get going).
watch_out=$APP_HOME/splash-watch.out
(
  drv wait-window --class "#32770" --title "" --timeout-ms 5000 >"$watch_out" 2>/dev/null
  echo "watch=$?" >>"$watch_out"
) &
watcher=$!

start=$(app_now)
second_rc=0
( cd "$APP_SETUP_DIR" && orv_wine_run -t 25 "$APP_PREFIX" ./Orvalen.exe ) >"$APP_HOME/second.out" 2>&1 </dev/null || second_rc=$?
took_ms=$(app_elapsed_ms "$start" "$(app_now)")
check "the second start exits with 0" "$second_rc" 0
# A full start is held by its splash alone for 2.4 s.
check "the second start ends promptly (under 2.4 s)" "$(( took_ms < 2400 ))" 1
echo "      (the second process took $took_ms ms)"

wait "$watcher"
check "no splash or other caption-less dialog appeared" "$(tail -n 1 "$watch_out")" "watch=1"
after=$(own_windows)
check "no new top-level window" "$after" "$before"
check "still one main status dialog" "$(grep -cF "title=\"$APP_MAIN_DIALOG\"" <<<"$after")" 1
check "still one main window" "$(grep -cF 'class="Orvalen"' <<<"$after")" 1
check "the windows belong to the first instance" \
  "$(grep -F -e 'class="Orvalen"' -e "title=\"$APP_MAIN_DIALOG\"" <<<"$after" | grep -c " pid=$first_pid ")" 2
check "no file touched" "$(md5sum "$APP_CONFIG" "$APP_LOG")" "$files_before"
check_true "the first instance still runs" app_running
check "the first instance still answers" \
  "$(drv wait-text --title "$APP_MAIN_DIALOG" --id 110 --contains ":" >/dev/null && echo yes)" yes

app_finish
