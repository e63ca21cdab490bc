#!/usr/bin/env bash
# app_startup_notice.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR LOG_MAKER_EXE
#
# A start whose log names a connection without an account: the notice about it
# waits unanswered all along, and still the sessions are timed and recorded. The
# alarm, set to every minute, reminds within 70 s; a connection that vanishes from
# the list ends its session and enables Configure; shutting Windows down while
# on-line records the session at that moment and ends the program.
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=app_lib.sh
source "$here/app_lib.sh"
app_setup startup-notice "$@"

D=$APP_MAIN_DIALOG
N="Orvalen Notification..."
app_describe record "Home ISP" 2003 5 7 08:00:00 120
app_describe setting alarmOn 1
app_describe setting alarmRepeatMinutes 1
app_make_files
app_start_prepared
drv wait-window --title "$N" --timeout-ms 15000 >/dev/null || app_abort "the start-up notice about Home ISP opens"
drv post --class Orvalen --msg WM_APP+1 --lparam WM_LBUTTONDBLCLK >/dev/null
drv wait-window --title "$D" >/dev/null || app_abort "a double click on the tray icon opens the main status dialog"

# Offsets of the records in use made today, in slot order.
today_records() {
  local count i r
  count=$(( ($(app_size "$APP_LOG") - 8) / 192 ))
  for (( i = 0; i < count; i++ )); do
    r=$(app_record_offset "$i")
    [[ "$(app_u32 "$APP_LOG" "$r") $(app_u32 "$APP_LOG" $(( r + 12 ))) $(app_u32 "$APP_LOG" $(( r + 16 )))" \
        == "1 $(date +%-d) $(date +%Y)" ]] && echo "$r"
  done
}
recorded_today() { [[ "$(today_records | wc -l)" == "$1" ]]; }

dial connect "Home ISP"
connected_at=$SECONDS
check_true "notice unanswered: the session opens (marker 218)" app_wait_until 10 app_u8_is "$APP_CONFIG" 134 218
alarm_within() { drv wait-window --title "Orvalen Notification Alarm" --timeout-ms "$1" >/dev/null; }
# Two looks: one driver call may run 60 s at most.
alarm_within 40000 || alarm_within 35000 \
  || app_abort "an alarm every 0 h 1 min reminds within 75 s of the connection"
echo "      (the alarm came $(( SECONDS - connected_at )) s after the connection)"
check "alarm: the reminder's period" "$(drv text --title "Orvalen Notification Alarm" --id "$IDC_NOTICE_MESSAGE" | tr -d '\r' | sed -n 2p)" \
  "This Reminder Comes Every 0 Hr and  1 Min.  From the"
drv click --title "Orvalen Notification Alarm" --id "$IDC_NOTICE_CLOSE" >/dev/null

dial vanish
check_true "notice unanswered: the vanished session is recorded (marker 219)" \
  app_wait_until 10 app_u8_is "$APP_CONFIG" 134 219
check_true "notice unanswered: the session is in the log" app_wait_until 5 recorded_today 1
check "after a vanish: Configure enabled" \
  "$(drv wait-state --title "$D" --id "$IDC_MAIN_CONFIGURE" --enabled 1 | cut -d' ' -f1)" "enabled=1"

# Shutdown while on-line: the session is recorded as it stands, with no box.
dial connect "Home ISP"
app_wait_until 10 app_u8_is "$APP_CONFIG" 134 218 || app_abort "a second session opens"
sleep 2
before=$(( 10#$(date +%H) * 3600 + 10#$(date +%M) * 60 + 10#$(date +%S) ))
drv post --class Orvalen --msg WM_QUERYENDSESSION >/dev/null
drv post --class Orvalen --msg WM_ENDSESSION --wparam 1 >/dev/null
rc=$(app_wait_exit 15) || rc="still running"
after=$(( 10#$(date +%H) * 3600 + 10#$(date +%M) * 60 + 10#$(date +%S) ))
check "shutdown: the program ends with 0" "$rc" 0
check "shutdown: no session open (marker 219)" "$(app_u8 "$APP_CONFIG" 134)" 219
check_true "shutdown: the session is in the log" recorded_today 2
r=$(today_records | tail -n 1)
logoff=$(app_seconds_of_day "$APP_LOG" $(( r + 32 )))
echo "      (log-off $(app_hms "$APP_LOG" $(( r + 32 ))), shutdown between $before and $after s of the day)"
check "shutdown: the log-off time is the moment of the shutdown" \
  "$(( logoff >= before - 1 && logoff <= after + 1 ))" 1
check "shutdown: the duration counts to that moment" "$(( $(app_i32 "$APP_LOG" $(( r + 48 ))) >= 2 ))" 1

app_finish
