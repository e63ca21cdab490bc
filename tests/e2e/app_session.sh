#!/usr/bin/env bash
# app_session.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR
#
# One program's life on a machine that has never seen it: the first run (Welcome,
# the installed copy and shortcuts, one main status dialog), starts while it runs
# (during its splash, later, with the dialog hidden: each hands over and ends with
# 0), the desktop around it (Tab, the tray menu, a restarted taskbar), a session
# from connect to disconnect with its record, a kill during a session and its
# recovery at the next start, and Exit while on-line. Leaves a screenshot of the
# dialog on-line in ARTIFACT_DIR/main-dialog-online.png.
# shellcheck disable=SC2016,SC2034  # conditions for eval are single-quoted on purpose
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=app_lib.sh
source "$here/app_lib.sh"
APP_OWN_DISPLAY=1   # for the screenshot: see app_setup
app_setup session "$@"
D=$APP_MAIN_DIALOG

second_start() {  # runs Orvalen.exe once more; its exit code
  local rc=0
  ( cd "$APP_SETUP_DIR" && orv_wine_run -t 25 "$APP_PREFIX" ./Orvalen.exe ) >>"$APP_HOME/second.out" 2>&1 </dev/null || rc=$?
  echo "$rc"
}

# ---- The first run, and a second start during its splash.
check "no configuration before the first start" "$(ls "$APP_CONFIG" 2>/dev/null)" ""
app_start
# Started at once, the two processes reach the one-instance mutex within a few
# ms of each other (Wine starts them one after the other): wait for the splash.
need "the first start shows its splash" drv wait-window --class "#32770" --title "" --timeout-ms 30000
second_start >"$APP_HOME/early.rc" &
early=$!
need "the Welcome dialog appears on the first run" drv wait-window --title "Welcome to Orvalen" --timeout-ms 30000
check "Welcome is modal and first: nothing written yet" "$(ls "$APP_CONFIG" "$APP_INSTALL" 2>/dev/null)" ""
app_through_welcome
wait "$early"
# The dialog's first tick fills in the clock: by then a second dialog would be up too.
see "the main status dialog shows the time" text --title "$D" --id "$IDC_MAIN_TIME" --contains ":"
check "no connection yet: Configure enabled, no session caption, the initial status text" \
  "$(app_field_of enabled "$D" "$IDC_MAIN_CONFIGURE")|$(drv text --title "$D" --ids "$IDC_MAIN_FIRST_CAPTION,$IDC_MAIN_ACCOUNT_STATUS")" \
  "1||$(printf '\t\t   Status: \n\n        No  Active  Dial-Up  Connections...')"
windows=$(drv windows)
check "the early start ended with 0; one process, one visible main status dialog, the main window hidden, no Welcome" \
  "$(cat "$APP_HOME/early.rc") $(app_wine_pid Orvalen.exe | wc -l) $(grep -F "title=\"$D\"" <<<"$windows" | grep -o 'visible=[01]') $(grep -o 'visible=[01] class="Orvalen" title="[^"]*"' <<<"$windows") $(grep -c Welcome <<<"$windows")" \
  '0 1 visible=1 visible=0 class="Orvalen" title="Orvalen" 0'
for file in Orvalen.exe ReadMe.txt OrvalenManual.doc Alarm.wav; do
  check_true "installed: $file, same as on the set-up medium" cmp -s "$APP_SETUP_DIR/$file" "$APP_INSTALL/$file"
done
# Wine keeps the Start Menu in the user's profile and links the Desktop to our scratch $HOME.
menu=$(echo "$APP_PREFIX"/drive_c/users/*/AppData/Roaming/Microsoft/Windows/"Start Menu"/Programs/Orvalen)
check "the Start Menu folder Orvalen holds the three shortcuts" "$(find "$menu" -mindepth 1 -printf '%f\n' 2>/dev/null | sort | tr '\n' ' ')" "Manual.lnk Orvalen.lnk ReadMe.lnk "
links() { LC_ALL=C grep -aqi "$2" "$1" 2>/dev/null; }  # LNK FILE-NAME: the link names its target
check_true "the shortcuts point at their files" eval 'links "$menu/ReadMe.lnk" "ReadMe\.txt" &&
  links "$menu/Manual.lnk" "OrvalenManual\.doc" && links "$menu/Orvalen.lnk" "Orvalen\.exe" && links "$APP_HOME/Desktop/Orvalen.lnk" "Orvalen\.exe"'

# ---- A second start while it runs: no splash (a caption-less dialog), no window, no file touched.
shell_pid=$(drv windows | grep -F 'class="Shell_TrayWnd"' | head -n 1 | sed -n 's/.* pid=\([0-9]*\) .*/\1/p')
own_windows() { drv windows | grep -v " pid=${shell_pid:-none} "; }  # not the shell's: its tooltips come and go
before=$(own_windows)
files_before=$(md5sum "$APP_CONFIG" "$APP_LOG")
( drv wait-window --class "#32770" --title "" --timeout-ms 5000 >/dev/null 2>&1; echo "watch=$?" >"$APP_HOME/splash-watch.out" ) &
watcher=$!
start=$(app_now)
rc=$(second_start)
took=$(( $(app_now) - start ))
echo "      (the second process took $took ms)"
check "the second start ends with 0 before a splash would have closed (2.4 s)" "$rc $(( took < 2400 ))" "0 1"
wait "$watcher"
check "no splash or other caption-less dialog appeared" "$(cat "$APP_HOME/splash-watch.out")" "watch=1"
check "no new top-level window" "$(own_windows)" "$before"
check "no file touched" "$(md5sum "$APP_CONFIG" "$APP_LOG")" "$files_before"

# ---- The desktop: Tab, the tray menu (the main window in the foreground, so that a
# click elsewhere closes it), and a restarted taskbar's "TaskbarCreated".
focus_id() { drv focus --title "$D" | sed -n 's/^focus=\([^ ]*\) .*/\1/p'; }
first_focus=$(focus_id)
drv post --title "$D" --id "$first_focus" --msg WM_KEYDOWN --wparam VK_TAB >/dev/null
check_true "Tab moves the focus on from control $first_focus" app_wait_until 5 eval '[[ "$(focus_id)" != "$first_focus" ]]'
main_window=$(drv wait-window --class Orvalen --any-visibility)
drv post --class Orvalen --msg "$TRAY_MESSAGE" --lparam WM_RBUTTONDOWN >/dev/null
need "a right click on the icon opens the tray menu" drv wait-window --class "#32768"
check "tray menu: the main window is in the foreground" "$(drv focus --class Orvalen | sed -n 's/.* foreground=//p')" "$main_window"
drv post --class Orvalen --msg WM_KEYDOWN --wparam VK_ESCAPE >/dev/null
see "tray menu: Esc closes it" wait-window --gone --class "#32768"
check "the tray icon is there, and gone with the taskbar" \
  "$(drv tray-icon --class Orvalen --icon "$TRAY_ICON_ID") $(drv tray-icon --class Orvalen --icon "$TRAY_ICON_ID" --delete)" "present absent"
drv post --class Orvalen --msg registered:TaskbarCreated >/dev/null
check_true "\"TaskbarCreated\" adds the icon again" app_wait_until 5 eval '[[ "$(drv tray-icon --class Orvalen --icon "$TRAY_ICON_ID")" == present ]]'
drv command --class Orvalen --id "$IDM_TRAY_HIDE" >/dev/null
need "Hide Orvalen hides the main status dialog" drv wait-window --gone --title "$D"
check "a start while the dialog is hidden ends with 0" "$(second_start)" 0
see "and shows the dialog" wait-window --title "$D"

# ---- A session: the dialog on-line and after, the record in the log.
shown_seconds() {  # the elapsed time the dialog shows, in seconds
  [[ $(drv text --title "$D" --id "$IDC_MAIN_SECOND_VALUE") =~ ^([0-9]+)\ Hr\ :\ ([0-9]+)\ Min\ :\ ([0-9]+)\ sec$ ]] || { echo -1; return; }
  echo $(( BASH_REMATCH[1] * 3600 + BASH_REMATCH[2] * 60 + BASH_REMATCH[3] ))
}
# The keyboard through a session: Configure has the focus when the session
# disables it, and Tab must still move the focus on, on-line and after.
tab_moves_focus() {  # LABEL
  local from
  from=$(focus_id)
  [[ -n $from && $from != none ]] || { echo "      $1: no control has the focus"; return 1; }
  drv post --title "$D" --id "$from" --msg WM_KEYDOWN --wparam VK_TAB >/dev/null
  app_wait_until 5 eval '[[ "$(focus_id)" != "$from" && "$(focus_id)" != none ]]'
}
for _ in 1 2 3 4 5 6 7 8 9 10 11 12; do
  from=$(focus_id)
  [[ $from == "$IDC_MAIN_CONFIGURE" ]] && break
  drv post --title "$D" --id "$from" --msg WM_KEYDOWN --wparam VK_TAB >/dev/null
  app_wait_until 2 eval '[[ "$(focus_id)" != "$from" ]]' || true
done
check "Tab reaches Configure" "$(focus_id)" "$IDC_MAIN_CONFIGURE"
t0=$(app_now)
dial connect "Home ISP"
need "the dialog shows the session of Home ISP" app_wait_online "Home ISP"
t1=$(app_now)
check_true "on-line, Configure disabled under the focus: Tab still moves it" tab_moves_focus on-line
check "on-line: the captions, Configure disabled" "$(drv text --title "$D" --ids "$IDC_MAIN_CONNECTION_CAPTION,$IDC_MAIN_SECOND_CAPTION") $(app_field_of enabled "$D" "$IDC_MAIN_CONFIGURE")" \
  "Active Connection :|Your've Been Logged on for: 0"
check_true "on-line: the session marker 218 is on disk" app_wait_until 5 app_u8_is "$APP_CONFIG" 134 218
app_screenshot "$APP_ARTIFACTS/main-dialog-online.png" || echo "note: no screenshot: $(cat "$APP_HOME/import.err")"
check_true "on-line: the elapsed time counts on to 4 s" app_wait_until 10 eval '(( $(shown_seconds) >= 4 ))'
t2=$(app_now)
dial disconnect
need "after the disconnection the dialog shows the last session" drv text --title "$D" --id "$IDC_MAIN_FIRST_CAPTION" --equals "Your Last Logon was at :"
t3=$(app_now)
check_true "the account notice for Home ISP comes and is declined" app_decline_account_notice "Home ISP"
see "off-line: the captions and the name" text --title "$D" --ids "$IDC_MAIN_CONNECTION_CAPTION,$IDC_MAIN_CONNECTION_NAME,$IDC_MAIN_SECOND_CAPTION" \
  --equals "Last Connection :|Home ISP|Your Last Logon Took Up :"
see "off-line: Configure enabled again" state --title "$D" --id "$IDC_MAIN_CONFIGURE" --enabled 1
check_true "off-line: Tab still moves the focus" tab_moves_focus off-line
check_true "off-line: the session marker 219 is on disk" app_wait_until 5 app_u8_is "$APP_CONFIG" 134 219
r=$(app_record_offset 0)
check "log: record 0 in use, for Home ISP" "$(app_u32 "$APP_LOG" "$r") $(app_cstr "$APP_LOG" $(( r + 87 )) 105)" "1 Home ISP"
# Durations count the tick counter, the log-on time comes from the clock.
duration=$(app_i32 "$APP_LOG" $(( r + 48 )))
logon_lag=$(( ($(app_seconds_of_day "$APP_LOG" $(( r + 20 ))) - (t0 / 1000 - $(date -d "$(date -d "@$(( t0 / 1000 ))" +%F)" +%s)) + 86400) % 86400 ))
echo "      (duration $duration s; on-line in the dialog for $(( (t2 - t1) / 1000 )) s, $(( (t3 - t0) / 1000 )) s in all)"
check "log: the duration is at least what the dialog counted, at most the whole connection" \
  "$(( duration >= 4 && duration >= (t2 - t1) / 1000 - 1 && duration <= (t3 - t0) / 1000 + 1 ))" 1
check "log: logged on when the connection came up" "$(( logon_lag >= 86399 || logon_lag <= (t1 - t0) / 1000 + 1 ))" 1
# The summary of the previous session, refilled at the dialog's next tick.
check_true "the previous-session list is filled" app_wait_until 5 eval '[[ "$(drv list --title "$D" --id "$IDC_MAIN_PREVIOUS_SESSION" --count)" == 6 ]]'
h=$(( duration / 3600 )) m=$(( duration % 3600 / 60 )) s=$(( duration % 60 ))
check "the list's name and duration lines, the last duration" \
  "$(drv list --title "$D" --id "$IDC_MAIN_PREVIOUS_SESSION" | sed -n '2p;5p' | tr '\n' '|')$(drv text --title "$D" --id "$IDC_MAIN_SECOND_VALUE")" \
  " Connection  :                   Home ISP| Duration :                        $h Hr: $m Min: $s Sec|$h Hr : $m Min : $s sec"

# ---- Killed during a session: the next start, off-line, records it from its checkpoint.
dial connect "Home ISP"
need "a second session opens (marker 218)" app_wait_until 10 app_u8_is "$APP_CONFIG" 134 218
kill -9 "$(app_wine_pid Orvalen.exe)"
check "killed: the program ends, the marker left at 218" "$(app_wait_exit 10) $(app_u8 "$APP_CONFIG" 134)" "137 218"
need "the killed program's windows are gone" drv wait-window --gone --class Orvalen --any-visibility
dial disconnect
app_start
r=$(app_record_offset 1)
check_true "restart: the interrupted session is recorded, the marker back at 219" \
  app_wait_until 20 eval '[[ "$(app_u32 "$APP_LOG" "$r") $(app_u8 "$APP_CONFIG" 134)" == "1 219" ]]'
check "restart: the session's name" "$(app_cstr "$APP_LOG" $(( r + 87 )) 105)" "Home ISP"
check_true "restart: the notice about Home ISP, declined" app_decline_account_notice "Home ISP"
check "restart: no Welcome" "$(drv windows | grep -c Welcome)" 0
# A later start shows no dialog by itself; the tray's double click does.
drv post --class Orvalen --msg "$TRAY_MESSAGE" --lparam WM_LBUTTONDBLCLK >/dev/null
need "a double click on the tray icon shows the dialog" drv wait-window --title "$D"
check_true "the previous session is the recovered one" \
  app_wait_until 5 eval '[[ "$(drv list --title "$D" --id "$IDC_MAIN_PREVIOUS_SESSION" | sed -n 5p)" == " Duration :                        0 Hr: 0 Min: 0 Sec" ]]'
check "off-line since the start: no session caption, Configure enabled" \
  "$(drv text --title "$D" --id "$IDC_MAIN_FIRST_CAPTION") $(app_field_of enabled "$D" "$IDC_MAIN_CONFIGURE")" " 1"

# ---- Exit from the tray menu while on-line: a warning that the session will not be
# recorded, then the question. No keeps everything; Yes ends with 0, records nothing
# and leaves the marker at 218 for the next start.
log_before=$(md5sum <"$APP_LOG")
dial connect "Home ISP"
need "the dialog shows the third session" app_wait_online "Home ISP"
need "the session marker 218 is on disk" app_wait_until 5 app_u8_is "$APP_CONFIG" 134 218
dialog=$(drv wait-window --title "$D")
main_window=$(drv wait-window --class Orvalen --any-visibility)
warning=$(printf 'You are still on-line\nOrvalen will not record session if you quit now.')
question="Are You Sure You Want To quit Orvalen ?"
exit_until_question() {  # LABEL
  need "$1: Exit can be posted" drv post --class Orvalen --msg WM_COMMAND --wparam "$IDM_TRAY_EXIT"
  need "$1: the on-line warning appears" drv wait-window --title "Orvalen Notification"
  check "$1: the warning, owned by the main status dialog" \
    "$(drv windows | grep -F 'title="Orvalen Notification"' | grep -o 'owner=0x[0-9a-f]*') $(drv answer-box --title "Orvalen Notification" --button ok)" "owner=$dialog $warning"
  need "$1: the question appears" drv wait-window --class "#32770" --title ""
  check "$1: the question, owned by the main window, with Yes and No" \
    "$(drv windows | grep -F 'class="#32770" title=""' | grep -o 'owner=0x[0-9a-f]*') $(drv state --class "#32770" --title "" --ids "$IDYES,$IDNO" | cut -d' ' -f1-2 | tr '\n' ' ')$(drv answer-box --title "")" \
    "owner=$main_window $IDYES enabled=1 $IDNO enabled=1 $question"
}
exit_until_question "Exit, No"
need "Exit, No: the question closes" drv answer-box --title "" --button no
elapsed_now=$(drv text --title "$D" --id "$IDC_MAIN_SECOND_VALUE")
check_true "Exit, No: the program runs on and the dialog ticks" \
  app_wait_until 5 eval 'app_running && [[ "$(drv text --title "$D" --id "$IDC_MAIN_SECOND_VALUE")" != "$elapsed_now" ]]'
exit_until_question "Exit, Yes"
need "Exit, Yes: the question can be answered" drv answer-box --title "" --button yes
check "Exit, Yes: ends with 0, the marker stays 218, the checkpoint names the session, the log unchanged" \
  "$(app_wait_exit 10) $(app_u8 "$APP_CONFIG" 134) $(app_cstr "$APP_CONFIG" 6292 60) $(md5sum <"$APP_LOG")" "0 218 Home ISP $log_before"
check "Exit, Yes: no window of the program left" "$(drv windows | grep -cF -e 'class="Orvalen"' -e "title=\"$D\"")" 0

app_finish
