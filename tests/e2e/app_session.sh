#!/usr/bin/env bash
# app_session.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR
#
# One dial-up session from connect to disconnect: the main status dialog while
# on-line and after, the session marker on disk, the record in the log and the
# previous-session summary. Leaves a screenshot of the dialog on-line in
# ARTIFACT_DIR/main-dialog-online.png.
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=app_lib.sh
source "$here/app_lib.sh"
APP_OWN_DISPLAY=1   # for the screenshot: see app_screenshot
app_setup session "$@"

app_first_run_through_welcome
D=$APP_MAIN_DIALOG

shown_seconds() {  # the elapsed time the dialog shows, in seconds
  local text h m s
  text=$(drv text --title "$D" --id "$IDC_MAIN_SECOND_VALUE")
  [[ $text =~ ^([0-9]+)\ Hr\ :\ ([0-9]+)\ Min\ :\ ([0-9]+)\ sec$ ]] || { echo -1; return; }
  h=${BASH_REMATCH[1]} m=${BASH_REMATCH[2]} s=${BASH_REMATCH[3]}
  echo $(( h * 3600 + m * 60 + s ))
}
shown_at_least() { (( $(shown_seconds) >= $1 )); }

t0=$(app_now)
day0="$(date +%w) $(date +%-m) $(date +%-d) $(date +%Y)"
dial connect "Home ISP"
app_wait_online "Home ISP" || app_abort "the dialog shows the session of Home ISP"
t1=$(app_now)
first_shown=$(shown_seconds)
check "on-line: the elapsed time is shown" "$(( first_shown >= 0 ))" 1
check "on-line: connection caption" "$(drv text --title "$D" --id "$IDC_MAIN_CONNECTION_CAPTION")" "Active Connection :"
check "on-line: connection name" "$(drv text --title "$D" --id "$IDC_MAIN_CONNECTION_NAME")" "Home ISP"
check "on-line: second caption" "$(drv text --title "$D" --id "$IDC_MAIN_SECOND_CAPTION")" "Your've Been Logged on for:"
check "on-line: Configure disabled" "$(drv state --title "$D" --id "$IDC_MAIN_CONFIGURE" | cut -d' ' -f1)" "enabled=0"
check_true "on-line: the session marker 218 is on disk" \
  app_wait_until 5 app_u8_is "$APP_CONFIG" 134 218

shot=$APP_ARTIFACTS/main-dialog-online.png
if app_screenshot "$shot"; then
  echo "      screenshot: $shot"
else
  echo "note: no screenshot: $(cat "$APP_HOME/import.err")"
fi

# Stay on-line until the dialog has counted on for 2 s more, and 4 s at least.
target=$(( first_shown + 2 > 4 ? first_shown + 2 : 4 ))
check_true "on-line: the elapsed time counts on to $target s" app_wait_until 10 shown_at_least "$target"

t2=$(app_now)
dial disconnect
drv wait-text --title "$D" --id "$IDC_MAIN_FIRST_CAPTION" --equals "Your Last Logon was at :" >/dev/null \
  || app_abort "after the disconnection the dialog shows the last session"
t3=$(app_now)
day3="$(date +%w) $(date +%-m) $(date +%-d) $(date +%Y)"
check_true "the account notice for Home ISP comes and is declined" app_decline_account_notice "Home ISP"

check "off-line: connection caption" "$(drv text --title "$D" --id "$IDC_MAIN_CONNECTION_CAPTION")" "Last Connection :"
check "off-line: connection name kept" "$(drv text --title "$D" --id "$IDC_MAIN_CONNECTION_NAME")" "Home ISP"
check "off-line: second caption" "$(drv text --title "$D" --id "$IDC_MAIN_SECOND_CAPTION")" "Your Last Logon Took Up :"
check "off-line: Configure enabled again" \
  "$(drv wait-state --title "$D" --id "$IDC_MAIN_CONFIGURE" --enabled 1 | cut -d' ' -f1)" "enabled=1"

# The log, once the session is recorded.
check_true "off-line: the session marker 219 is on disk" \
  app_wait_until 5 app_u8_is "$APP_CONFIG" 134 219
r=$(app_record_offset 0)
check "log: record 0 in use" "$(app_u32 "$APP_LOG" "$r")" 1
check "log: record 0 name" "$(app_cstr "$APP_LOG" $(( r + 87 )) 105)" "Home ISP"
duration=$(app_i32 "$APP_LOG" $(( r + 48 )))
waited=$(app_elapsed "$t1" "$t2")
longest=$(( $(app_elapsed_ms "$t0" "$t3") / 1000 + 1 ))
echo "      (duration $duration s; on-line in the dialog for $waited s, at most $longest s in all)"
check "log: duration at least the time seen on-line, less 1" "$(( duration >= waited - 1 ))" 1
check "log: duration at least what the dialog counted ($target s)" "$(( duration >= target ))" 1
check "log: duration at most the whole connection, plus 1" "$(( duration <= longest ))" 1
record_date=$(od -A n -t u4 -j $(( r + 4 )) -N 16 "$APP_LOG" | tr -s " \n" " " | sed "s/^ //; s/ $//")
check "log: the date is today's" "$( [[ $record_date == "$day3" || $record_date == "$day0" ]] && echo today || echo "$record_date" )" today
logon=$(app_seconds_of_day "$APP_LOG" $(( r + 20 )))
logoff=$(app_seconds_of_day "$APP_LOG" $(( r + 32 )))
span=$(( (logoff - logon + 86400) % 86400 ))
echo "      (log-on $(app_hms "$APP_LOG" $(( r + 20 ))), log-off $(app_hms "$APP_LOG" $(( r + 32 ))))"
# Durations count whole seconds of the tick counter, times come from the
# clock: the two may differ by one.
check "log: log-off minus log-on is the duration, within 1 s" "$(( span >= duration - 1 && span <= duration + 1 ))" 1
start_sod=$(( 10#$(date -d "@${t0%%.*}" +%H) * 3600 + 10#$(date -d "@${t0%%.*}" +%M) * 60 + 10#$(date -d "@${t0%%.*}" +%S) ))
lag=$(( (logon - start_sod + 86400) % 86400 ))
(( lag > 43200 )) && lag=$(( lag - 86400 ))
check "log: logged on when the connection came up" \
  "$(( lag >= -1 && lag <= $(app_elapsed "$t0" "$t1") + 1 ))" 1

# The dialog's summary of the previous session kept in the configuration,
# refilled at its next tick (its bytes are session_test's matter).
list_has() { [[ "$(drv list-count --title "$D" --id "$IDC_MAIN_PREVIOUS_SESSION")" == "$1" ]]; }
check_true "previous-session list filled (6 lines)" app_wait_until 5 list_has 6
mapfile -t lines < <(drv list --title "$D" --id "$IDC_MAIN_PREVIOUS_SESSION")
check "list line 2" "${lines[1]:-}" " Connection  :                   Home ISP"
check "list line 5: the recorded duration" "${lines[4]:-}" \
  " Duration :                        $(( duration / 3600 )) Hr: $(( duration % 3600 / 60 )) Min: $(( duration % 60 )) Sec"
check "list line 6: no account, empty" "${lines[5]-missing}" ""
check "last duration shown" "$(drv text --title "$D" --id "$IDC_MAIN_SECOND_VALUE")" \
  "$(( duration / 3600 )) Hr : $(( duration % 3600 / 60 )) Min : $(( duration % 60 )) sec"

app_finish
