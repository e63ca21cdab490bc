#!/usr/bin/env bash
# app_settings.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR
#
# The settings sheet opened with Configure: the General, Log and Alarm pages as a
# first run leaves them, their changes stored by OK (configuration bytes, the
# clock's form, the autostart value), Cancel changing nothing while the file is
# still written, autostart back on. Then the accounts: the first session of a new
# connection ends with the notice and the account dialog, whose account is saved
# at once and shown by the main status dialog; the same account
# changed on the sheet's Accounts page; a second new connection whose dialog is
# cancelled gets the "not properly set up" box and stays named but unconfigured.
# shellcheck disable=SC2016,SC2034  # conditions for eval are single-quoted on purpose
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=app_lib.sh
source "$here/app_lib.sh"
app_setup settings "$@"
app_start
app_through_welcome
D=$APP_MAIN_DIALOG
S="Configure Orvalen"

autostart_value() {
  orv_wine_run -t 60 "$APP_PREFIX" reg.exe query 'HKLM\Software\Microsoft\Windows\CurrentVersion\Run' /v Orvalen 2>/dev/null \
    | tr -d '\r' | sed -n 's/^ *Orvalen *\(REG_[A-Z_]*\) *\(.*\)$/\1 \2/p'
}
# The 24-hour form shows the hour as it is (13 in the afternoon, 0 after midnight).
clock_form() {
  local hour=$(( 10#$(date +%H) )) text
  text=$(drv text --title "$D" --id "$IDC_MAIN_TIME")
  if [[ $text =~ ^(1[0-2]|[1-9])\ :\ [0-5][0-9]\ :\ [0-5][0-9]\ \ (AM|PM)$ ]]; then echo 12
  elif [[ $text =~ ^([0-9]{1,2})\ :\ [0-5][0-9]\ :\ [0-5][0-9]\ \ \ $ ]] && (( 10#${BASH_REMATCH[1]} == hour || 10#${BASH_REMATCH[1]} == 10#$(date +%H) )); then echo 24
  else echo "$text"; fi
}
clock_is() { [[ "$(clock_form)" == "$1" ]]; }
checked() { app_field_of checked "$S" "$1"; }   # IDS: "1 0 ..."
enabled() { app_field_of enabled "$S" "$1"; }
open_sheet() {
  need "Configure can be clicked" drv click --title "$D" --id "$IDC_MAIN_CONFIGURE"
  need "Configure opens the sheet" drv wait-window --title "$S"
}
show_page() {  # INDEX A-CONTROL-OF-THAT-PAGE
  drv post --title "$S" --msg "$PSM_SETCURSEL" --wparam "$1" >/dev/null
  need "page $1 of the sheet shows" drv state --title "$S" --id "$2" --visible 1
}
close_sheet() {  # BUTTON-ID
  drv click --title "$S" --id "$1" >/dev/null
  need "the sheet closes" drv wait-window --gone --title "$S"
}

log_page="$IDC_LOGPAGE_SHOW_ALL,$IDC_LOGPAGE_FILTER_PREVIOUS,$IDC_LOGPAGE_SYSTEM_COLOURS"
alarm_choices="$IDC_ALARM_OFF,$IDC_ALARM_ON,$IDC_ALARM_REPEAT,$IDC_ALARM_ONCE,$IDC_ALARM_SOUND_ONLY,$IDC_ALARM_BOX_AND_SOUND,$IDC_ALARM_BOX_ONLY"
alarm_times="$IDC_ALARM_REPEAT_HOURS,$IDC_ALARM_REPEAT_MINUTES,$IDC_ALARM_ONCE_HOURS,$IDC_ALARM_ONCE_MINUTES"
check "first run: the autostart value" "$(autostart_value)" 'REG_SZ C:\Program Files\Orvalen\Orvalen.exe'
check_true "first run: the clock in the 12-hour form" app_wait_until 5 clock_is 12

# ---- OK stores every page that was opened.
open_sheet
check "General: no Apply button; 15 currencies, Dollars first, Yen last" \
  "$(app_field_of visible "$S" "$ID_APPLY_NOW") $(drv list --title "$S" --id "$IDC_GENERAL_CURRENCY" | sed -n '1p;$p;$=' | tr '\n' ' ')" "0 Dollars Yen 15 "
check "General: Dollars shown; run at start-up checked, show main window and 24-hour clock not" \
  "$(drv text --title "$S" --id "$IDC_GENERAL_CURRENCY") $(checked "$IDC_GENERAL_RUN_AT_STARTUP,$IDC_GENERAL_SHOW_MAIN_WINDOW,$IDC_GENERAL_24_HOUR_CLOCK")" "Dollars 1 0 0"
drv set-text --title "$S" --id "$IDC_GENERAL_CURRENCY" --text "Zimbabwe dollars" >/dev/null
drv check --title "$S" --id "$IDC_GENERAL_24_HOUR_CLOCK" --value 1 >/dev/null
drv check --title "$S" --id "$IDC_GENERAL_RUN_AT_STARTUP" --value 0 >/dev/null
drv check --title "$S" --id "$IDC_GENERAL_SHOW_MAIN_WINDOW" --value 1 >/dev/null
show_page 2 "$IDC_LOGPAGE_SHOW_ALL"
check "Log: show all connections checked, system colours not" "$(checked "$log_page")" "1 0 0"
drv check --title "$S" --id "$IDC_LOGPAGE_FILTER_PREVIOUS" --value 1 >/dev/null
drv check --title "$S" --id "$IDC_LOGPAGE_SYSTEM_COLOURS" --value 1 >/dev/null
show_page 3 "$IDC_ALARM_OFF"
check "Alarm: off; repeating mode; box and sound; times as stored" \
  "$(checked "$alarm_choices") $(drv text --title "$S" --ids "$alarm_times")" "1 0 1 0 0 1 0 1|0|2|30"
check "Alarm: off disables the details, an up-down control among them" "$(enabled \
  "$IDC_ALARM_REPEAT,$IDC_ALARM_ONCE,$IDC_ALARM_REPEAT_HOURS,$IDC_ALARM_REPEAT_HOURS_SPIN,$IDC_ALARM_SOUND_ONLY,$IDC_ALARM_PREVIEW_SOUND,$IDC_ALARM_ON")" "0 0 0 0 0 0 1"
drv click --title "$S" --id "$IDC_ALARM_ON" >/dev/null
need "Alarm: on enables Preview Sound" drv state --title "$S" --id "$IDC_ALARM_PREVIEW_SOUND" --enabled 1
check "Alarm: on enables both modes' boxes and the actions" "$(enabled \
  "$IDC_ALARM_REPEAT,$IDC_ALARM_REPEAT_HOURS,$IDC_ALARM_REPEAT_HOURS_SPIN,$IDC_ALARM_ONCE_HOURS,$IDC_ALARM_ONCE_MINUTES_SPIN,$IDC_ALARM_SOUND_ONLY")" "1 1 1 1 1 1"
drv set-text --title "$S" --id "$IDC_ALARM_REPEAT_HOURS" --text 0 >/dev/null
drv set-text --title "$S" --id "$IDC_ALARM_REPEAT_MINUTES" --text 0 >/dev/null
drv click --title "$S" --id "$IDC_ALARM_ONCE" >/dev/null
need "Alarm: one-shot disables the repeat boxes" drv state --title "$S" --id "$IDC_ALARM_REPEAT_HOURS" --enabled 0
check "Alarm: one-shot: its boxes on, the repeat ones off" "$(enabled \
  "$IDC_ALARM_ONCE_HOURS,$IDC_ALARM_ONCE_MINUTES,$IDC_ALARM_ONCE_HOURS_SPIN,$IDC_ALARM_ONCE_MINUTES_SPIN,$IDC_ALARM_REPEAT_MINUTES,$IDC_ALARM_REPEAT_HOURS_SPIN,$IDC_ALARM_REPEAT_MINUTES_SPIN")" "1 1 1 1 0 0 0"
drv set-text --title "$S" --id "$IDC_ALARM_ONCE_HOURS" --text 300 >/dev/null
drv set-text --title "$S" --id "$IDC_ALARM_ONCE_MINUTES" --text 7 >/dev/null
drv click --title "$S" --id "$IDC_ALARM_BOX_ONLY" >/dev/null
drv click --title "$S" --id "$IDC_ALARM_PREVIEW_SOUND" >/dev/null   # plays and returns at once
see "Alarm: message box only, and the page answers after Preview Sound" state --title "$S" --id "$IDC_ALARM_BOX_ONLY" --checked 1
close_sheet "$IDOK"
# Currency (28, cut to 14 characters), 24-hour clock (46), show main window (56),
# run at start-up (60), log filter (133), system colours (48), alarm on, box only,
# one-shot (52..54), 0 h 0 min repeat made 0 h 5 min (43, 44), 300 h 7 min made
# 24 h 7 min (45, 55), no session open (134).
stored() {
  echo "$(app_size "$APP_CONFIG") $(app_cstr "$APP_CONFIG" 28 15) $(app_u8 "$APP_CONFIG" 46) $(app_u32 "$APP_CONFIG" 56)" \
       "$(app_u32 "$APP_CONFIG" 60) $(app_u8 "$APP_CONFIG" 133) $(app_u32 "$APP_CONFIG" 48)" \
       "$(od -A n -t u1 -j 52 -N 3 "$APP_CONFIG" | xargs) $(od -A n -t u1 -j 43 -N 3 "$APP_CONFIG" | xargs) $(app_u8 "$APP_CONFIG" 55) $(app_u8 "$APP_CONFIG" 134)"
}
want="6352 Zimbabwe dolla 1 1 0 2 1 1 15 35 0 5 24 7 219"
check_true "OK: every page's choices stored" app_wait_until 5 eval '[[ "$(stored)" == "$want" ]]'
check "OK: all of them" "$(stored)" "$want"
check "OK: the autostart value is gone" "$(autostart_value)" ""
check_true "OK: the clock turns to the 24-hour form" app_wait_until 5 clock_is 24

# ---- Cancel changes nothing, but the file is written all the same.
before=$(md5sum <"$APP_CONFIG")
touch -d "2001-01-01 00:00:00" "$APP_CONFIG"
open_sheet
check "reopened: the typed currency; 24-hour, show main window, run at start-up" \
  "$(drv text --title "$S" --id "$IDC_GENERAL_CURRENCY") $(checked "$IDC_GENERAL_24_HOUR_CLOCK,$IDC_GENERAL_SHOW_MAIN_WINDOW,$IDC_GENERAL_RUN_AT_STARTUP")" "Zimbabwe dolla 1 1 0"
drv set-text --title "$S" --id "$IDC_GENERAL_CURRENCY" --text "Yen" >/dev/null
drv check --title "$S" --id "$IDC_GENERAL_24_HOUR_CLOCK" --value 0 >/dev/null
show_page 2 "$IDC_LOGPAGE_SHOW_ALL"
check "reopened Log: previous connection, system colours" "$(checked "$log_page")" "0 1 1"
drv check --title "$S" --id "$IDC_LOGPAGE_SHOW_ALL" --value 1 >/dev/null
show_page 3 "$IDC_ALARM_OFF"
check "reopened Alarm: on, one-shot, box only; the clamped times; the repeat boxes disabled" \
  "$(checked "$alarm_choices") $(drv text --title "$S" --ids "$alarm_times") $(enabled "$IDC_ALARM_REPEAT_HOURS,$IDC_ALARM_REPEAT_HOURS_SPIN,$IDC_ALARM_ONCE_HOURS,$IDC_ALARM_ONCE_HOURS_SPIN")" \
  "0 1 0 1 0 0 1 0|5|24|7 0 0 1 1"
drv click --title "$S" --id "$IDC_ALARM_OFF" >/dev/null
close_sheet "$IDCANCEL"
check_true "Cancel: the configuration file is written" app_wait_until 5 eval '(( $(stat -c %Y "$APP_CONFIG") > 978307200 ))'
check "Cancel: not a byte changes, the clock keeps its form, no autostart value" \
  "$(md5sum <"$APP_CONFIG") $(clock_form) $(autostart_value)" "$before 24 "

# ---- Autostart back on.
open_sheet
drv check --title "$S" --id "$IDC_GENERAL_RUN_AT_STARTUP" --value 1 >/dev/null
close_sheet "$IDOK"
check_true "autostart on: saved" app_wait_until 5 eval '[[ "$(app_u32 "$APP_CONFIG" 60)" == 1 ]]'
check "autostart on: the value is back, nothing else changed" \
  "$(autostart_value) $(app_cstr "$APP_CONFIG" 28 15) $(app_u8 "$APP_CONFIG" 46)" 'REG_SZ C:\Program Files\Orvalen\Orvalen.exe Zimbabwe dolla 1'

# ---- Accounts. Entry k of the configuration: configured, name, kind, hours, charge, excess, VAT.
entry() {  # K
  local at=$(( 136 + 120 * $1 ))
  echo "$(app_u32 "$APP_CONFIG" "$at") $(app_cstr "$APP_CONFIG" $(( at + 4 )) 32) $(app_u32 "$APP_CONFIG" $(( at + 36 )))" \
       "$(app_u32 "$APP_CONFIG" $(( at + 40 ))) $(od -A n -t f4 -j $(( at + 44 )) -N 12 "$APP_CONFIG" | xargs)"
}
entry_is() { [[ "$(entry "$1")" == "$2" ]]; }
session() {  # NAME [ON-LINE-CHECK...]: connect, see it on-line (and the check), disconnect
  local name=$1
  shift
  dial connect "$name"
  need "the dialog shows the session of $name" app_wait_online "$name"
  (( $# == 0 )) || check_true "$name on-line: $*" app_wait_until 5 "$@"
  dial disconnect
  need "after the disconnection the dialog shows the last session" drv text --title "$D" --id "$IDC_MAIN_FIRST_CAPTION" --equals "Your Last Logon was at :"
}
status_is() { [[ "$(drv text --title "$D" --id "$IDC_MAIN_ACCOUNT_STATUS")" =~ ^$'\n'"Type of Account: $1" ]]; }
account_line_starts() { [[ "$(drv list --title "$D" --id "$IDC_MAIN_PREVIOUS_SESSION" | sed -n 6p)" == "$1"* ]]; }

A="Orvalen....Configure Account Details For --Home ISP"
kinds="$IDC_ACCOUNTS_CARD,$IDC_ACCOUNTS_LIMITED,$IDC_ACCOUNTS_UNLIMITED"
figures="$IDC_ACCOUNTS_BASIC_HOURS,$IDC_ACCOUNTS_MONTHLY_CHARGE,$IDC_ACCOUNTS_EXCESS_PER_MINUTE,$IDC_ACCOUNTS_VAT"
session "Home ISP"
check "notice: its text" "$(drv answer-box --title "Orvalen Notification..." --button ok --timeout-ms 15000)" \
  "$(printf '%s\n%s' "Orvalen detected a connection   (- Home ISP -) that hasn't been configured for its database." "Best to configure this connection now")"
need "the account dialog opens for Home ISP" drv wait-window --title "$A"
usable="$IDC_ACCOUNTS_CONNECTION,$kinds,$IDC_ACCOUNTS_CARD_HOURS,$IDC_ACCOUNTS_CARD_HOURS_LABEL,$figures,$IDC_ACCOUNTS_HELP"
check "dialog: limited access checked; what is enabled and shown; the figures empty; no entry yet" \
  "$(app_field_of checked "$A" "$kinds") $(app_field_of enabled "$A" "$usable") $(app_field_of visible "$A" \
    "$IDC_ACCOUNTS_OK,$IDC_ACCOUNTS_CANCEL,$IDC_ACCOUNTS_APPLY") $(drv text --title "$A" --ids "$figures,$IDC_ACCOUNTS_CARD_HOURS") $(entry 0)" \
  "0 1 0 0 1 1 1 0 0 1 1 1 1 1 1 1 0 |||| 0  0 0 0 0 0"
drv set-text --title "$A" --id "$IDC_ACCOUNTS_BASIC_HOURS" --text 10 >/dev/null
drv set-text --title "$A" --id "$IDC_ACCOUNTS_MONTHLY_CHARGE" --text 12.50 >/dev/null
drv set-text --title "$A" --id "$IDC_ACCOUNTS_EXCESS_PER_MINUTE" --text 100.75 >/dev/null
drv set-text --title "$A" --id "$IDC_ACCOUNTS_VAT" --text abc >/dev/null
drv click --title "$A" --id "$IDC_ACCOUNTS_OK" >/dev/null
need "OK closes the account dialog" drv wait-window --gone --title "$A"
check_true "OK saves: limited access, 10 h, 12.50, 100.75 read as 100, VAT not a number as 0" app_wait_until 5 entry_is 0 "1 Home ISP 2 10 12.5 100 0"
check "OK: no \"not properly set up\" box, no second entry" "$(drv windows | grep -cF 'title="Orvalen Notification"') $(entry 1)" "0 0  0 0 0 0 0"

# The next session shows the account and asks nothing.
session "Home ISP" status_is "Limited Access account"$'\n'" Time Consumed this month : 0.0"
check_true "off-line: the previous session's account line is the limited one" app_wait_until 5 account_line_starts "Limited: 0.0"
check "a configured connection: no notice" "$(drv windows | grep -cF 'title="Orvalen Notification..."')" 0

# ---- The Accounts page of the sheet: choose Home ISP, make it unlimited.
open_sheet
show_page 1 "$IDC_ACCOUNTS_CONNECTION"
check "page: the connections, sorted; only the list usable; its own Apply and the help hidden" \
  "$(drv list --title "$S" --id "$IDC_ACCOUNTS_CONNECTION" | tr '\n' '|') $(enabled \
    "$IDC_ACCOUNTS_CONNECTION,$IDC_ACCOUNTS_CHOOSE_LABEL,$kinds,$IDC_ACCOUNTS_CARD_HOURS,$IDC_ACCOUNTS_BASIC_HOURS,$IDC_ACCOUNTS_MONTHLY_CHARGE") $(app_field_of visible "$S" "$IDC_ACCOUNTS_APPLY,$IDC_ACCOUNTS_HELP")" \
  "Connection|Home ISP| 1 1 0 0 0 0 0 0 0 0"
drv select --title "$S" --id "$IDC_ACCOUNTS_CONNECTION" --index 0 >/dev/null   # "Connection": no entry, nothing changes
check "page: \"Connection\" shows nothing" "$(enabled "$IDC_ACCOUNTS_CARD,$IDC_ACCOUNTS_BASIC_HOURS")" "0 0"
drv select --title "$S" --id "$IDC_ACCOUNTS_CONNECTION" --index 1 >/dev/null
need "choosing Home ISP enables the kinds" drv state --title "$S" --id "$IDC_ACCOUNTS_UNLIMITED" --enabled 1
check "page: Home ISP's figures; limited access checked and its figures enabled, card off" \
  "$(drv text --title "$S" --ids "$figures") $(checked "$kinds") $(enabled "$IDC_ACCOUNTS_BASIC_HOURS,$IDC_ACCOUNTS_MONTHLY_CHARGE,$IDC_ACCOUNTS_CARD_HOURS")" "10|12.50|100.00|0.0 0 1 0 1 1 0"
drv click --title "$S" --id "$IDC_ACCOUNTS_UNLIMITED" >/dev/null
need "Unlimited disables the limited figures" drv state --title "$S" --id "$IDC_ACCOUNTS_BASIC_HOURS" --enabled 0
check "page: unlimited leaves the figures shown" "$(drv text --title "$S" --id "$IDC_ACCOUNTS_MONTHLY_CHARGE")" "12.50"
close_sheet "$IDOK"
check_true "sheet OK: only the kind changes" app_wait_until 5 entry_is 0 "1 Home ISP 3 10 12.5 100 0"
session "Home ISP" status_is "Unlimited Access account"
check_true "off-line: the previous session's account line is the unlimited one" \
  app_wait_until 5 account_line_starts "Account Type : Unlimited Access Account"

# ---- A second new connection, its dialog cancelled.
session "Work ISP"
need "the notice names Work ISP" drv answer-box --title "Orvalen Notification..." --contains "(- Work ISP -)" --button ok
drv click --title "Orvalen....Configure Account Details For --Work ISP" --id "$IDC_ACCOUNTS_CANCEL" >/dev/null
check "Cancel: the box that says so" "$(drv answer-box --title "Orvalen Notification" --contains "not properly" --button ok)" \
  "$(printf '%s\n%s' "This connection was not properly set up for Orvalen's database. " "You will be asked to do this at a later time")"
check_true "Cancel: Work ISP is named but not set up" app_wait_until 5 entry_is 1 "0 Work ISP 0 0 0 0 0"
check "Cancel: Home ISP keeps its account; the program runs" "$(entry 0) $(app_running && echo runs)" "1 Home ISP 3 10 12.5 100 0 runs"

app_finish
