#!/usr/bin/env bash
# app_startup_notice.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR LOG_MAKER_EXE
#
# A start whose log names a connection without an account: the notice about it
# waits unanswered all along, and still the sessions are timed and recorded. The
# alarm, set to every minute, reminds within 75 s; a connection that vanishes from
# the list ends its session and enables Configure; shutting Windows down while
# on-line records the session at that moment and ends the program.
# shellcheck disable=SC2016,SC2034  # conditions for eval are single-quoted on purpose
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=app_lib.sh
source "$here/app_lib.sh"
app_setup startup-notice "$@"

D=$APP_MAIN_DIALOG
app_describe record "Home ISP" 2003 5 7 08:00:00 120
app_describe setting alarmOn 1
app_describe setting alarmRepeatMinutes 1
app_make_files
app_start_prepared
need "the start-up notice about Home ISP opens" drv wait-window --title "Orvalen Notification..." --timeout-ms 15000
drv post --class Orvalen --msg "$TRAY_MESSAGE" --lparam WM_LBUTTONDBLCLK >/dev/null
need "a double click on the tray icon opens the main status dialog" drv wait-window --title "$D"
# Slots of the records in use made today, one a line.
today_records() { od -A n -v -t u4 -w192 -j 8 "$APP_LOG" | awk -v d="$(date +%-d)" -v y="$(date +%Y)" '$1 == 1 && $4 == d && $5 == y { print NR - 1 }'; }

dial connect "Home ISP"
connected_at=$SECONDS
check_true "notice unanswered: the session opens (marker 218)" app_wait_until 10 app_u8_is "$APP_CONFIG" 134 218
# Two looks: one driver call may run 60 s at most.
drv wait-window --title "Orvalen Notification Alarm" --timeout-ms 40000 >/dev/null ||
  need "an alarm every 0 h 1 min reminds within 75 s of the connection" drv wait-window --title "Orvalen Notification Alarm" --timeout-ms 35000
echo "      (the alarm came $(( SECONDS - connected_at )) s after the connection)"
check "alarm: the reminder's period" "$(drv text --title "Orvalen Notification Alarm" --id "$IDC_NOTICE_MESSAGE" | tr -d '\r' | sed -n 2p)" \
  "This Reminder Comes Every 0 Hr and  1 Min.  From the"
drv click --title "Orvalen Notification Alarm" --id "$IDC_NOTICE_CLOSE" >/dev/null

dial vanish
check_true "notice unanswered: the vanished session is recorded (marker 219), in the log" \
  app_wait_until 10 eval 'app_u8_is "$APP_CONFIG" 134 219 && [[ $(today_records | wc -l) == 1 ]]'
see "after a vanish: Configure enabled" state --title "$D" --id "$IDC_MAIN_CONFIGURE" --enabled 1

# Shutdown while on-line: the session is recorded as it stands, with no box.
dial connect "Home ISP"
need "a second session opens" app_wait_until 10 app_u8_is "$APP_CONFIG" 134 218
sleep 2
before=$(( $(date +%s) - $(date -d 00:00 +%s) ))
drv post --class Orvalen --msg WM_QUERYENDSESSION >/dev/null
drv post --class Orvalen --msg WM_ENDSESSION --wparam 1 >/dev/null
rc=$(app_wait_exit 15) || rc="still running"
after=$(( $(date +%s) - $(date -d 00:00 +%s) ))
r=$(app_record_offset "$(today_records | tail -n 1)")
logoff=$(app_seconds_of_day "$APP_LOG" $(( r + 32 )))
echo "      (log-off at $logoff s of the day, the shutdown between $before and $after)"
check "shutdown: ends with 0, no session open (marker 219), two sessions today" "$rc $(app_u8 "$APP_CONFIG" 134) $(today_records | wc -l)" "0 219 2"
check "shutdown: the log-off time is the moment of the shutdown, the duration counts to it" \
  "$(( logoff >= before - 1 && logoff <= after + 1 && $(app_i32 "$APP_LOG" $(( r + 48 ))) >= 2 ))" 1

app_finish
