#!/usr/bin/env bash
# app_second_start.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR
#
# Starting the program while it runs: the new process hands over to the running
# one and ends at once with 0, with no splash, no window and no file touched,
# also when it comes 0.3 s after the first, during its splash. A start while the
# main status dialog is hidden shows it. Also the desktop around the running
# program: Tab in the main status dialog, the tray menu, a restarted taskbar.
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=app_lib.sh
source "$here/app_lib.sh"
app_setup second-start "$@"

second_start() {  # OUT-FILE: runs Orvalen.exe once more; its exit code
  local rc=0
  ( cd "$APP_SETUP_DIR" && orv_wine_run -t 25 "$APP_PREFIX" ./Orvalen.exe ) >"$1" 2>&1 </dev/null || rc=$?
  echo "$rc"
}
processes() {
  local dir count=0
  for dir in /proc/[0-9]*; do
    [[ "$(cat "$dir/comm" 2>/dev/null)" == Orvalen.exe ]] || continue
    tr '\0' '\n' <"$dir/environ" 2>/dev/null | grep -qxF "WINEPREFIX=$APP_PREFIX" && count=$(( count + 1 ))
  done
  echo "$count"
}

app_start
sleep 0.3
second_start "$APP_HOME/early.out" >"$APP_HOME/early.rc" &
early=$!
app_through_welcome
wait "$early"
check "a start 0.3 s after the first ends with 0" "$(cat "$APP_HOME/early.rc")" 0
check "one process of the program" "$(processes)" 1
check_true "the first start runs on" app_running
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
  "$(drv wait-text --title "$APP_MAIN_DIALOG" --id "$IDC_MAIN_TIME" --contains ":" >/dev/null && echo yes)" yes

# Tab moves the focus to the next control of the main status dialog.
D=$APP_MAIN_DIALOG
focus_id() { drv focus --title "$D" | sed -n 's/^focus=\([^ ]*\) .*/\1/p'; }
first_focus=$(focus_id)
drv post --title "$D" --id "$first_focus" --msg WM_KEYDOWN --wparam VK_TAB >/dev/null
focus_moved() { [[ "$(focus_id)" != "$first_focus" ]]; }
check_true "Tab moves the focus on from control $first_focus" app_wait_until 5 focus_moved

# The tray menu comes up with the main window in the foreground, so that a
# click elsewhere closes it.
main_window=$(drv wait-window --class Orvalen --any-visibility)
drv post --class Orvalen --msg WM_APP+1 --lparam WM_RBUTTONDOWN >/dev/null
drv wait-window --class "#32768" >/dev/null || app_abort "a right click on the icon opens the tray menu"
check "tray menu: the main window is in the foreground" \
  "$(drv focus --class Orvalen | sed -n 's/.* foreground=//p')" "$main_window"
drv post --class Orvalen --msg WM_KEYDOWN --wparam 0x1B >/dev/null
check "tray menu: Esc closes it" "$(drv wait-gone --class "#32768")" gone

# A restarted taskbar has lost the icon; its "TaskbarCreated" brings it back.
check "the tray icon is there" "$(drv tray-icon --class Orvalen --icon 22)" present
check "the tray icon is gone with the taskbar" "$(drv tray-icon --class Orvalen --icon 22 --delete)" absent
drv post --class Orvalen --msg registered:TaskbarCreated >/dev/null
icon_back() { [[ "$(drv tray-icon --class Orvalen --icon 22)" == present ]]; }
check_true "\"TaskbarCreated\" adds the icon again" app_wait_until 5 icon_back

# A start while the main status dialog is hidden shows it.
drv command --class Orvalen --id "$IDM_TRAY_HIDE" >/dev/null
drv wait-gone --title "$D" >/dev/null || app_abort "Hide Orvalen hides the main status dialog"
check "a start while the dialog is hidden ends with 0" "$(second_start "$APP_HOME/third.out")" 0
check "and shows the dialog" "$(drv wait-window --title "$D" >/dev/null && echo shown)" shown
check "still one process" "$(processes)" 1

app_finish
