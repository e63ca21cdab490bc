#!/usr/bin/env bash
# app_settings.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR
#
# The settings sheet opened with Configure from the main status dialog: the
# General, Log and Alarm pages as they open on a first run, their changes stored
# by OK (configuration bytes, the clock's form, the autostart value gone), Cancel
# changing nothing while the file is still written, and autostart back on.
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=app_lib.sh
source "$here/app_lib.sh"
app_setup settings "$@"

app_first_run_through_welcome
D=$APP_MAIN_DIALOG
S="Configure Orvalen"
PSM_SETCURSEL=WM_USER+101
run_key='HKLM\Software\Microsoft\Windows\CurrentVersion\Run'

autostart_value() {
  orv_wine_run -t 60 "$APP_PREFIX" reg.exe query "$run_key" /v Orvalen 2>/dev/null \
    | tr -d '\r' | sed -n 's/^ *Orvalen *\(REG_[A-Z_]*\) *\(.*\)$/\1 \2/p'
}
autostart_absent() { ! orv_wine_run -t 60 "$APP_PREFIX" reg.exe query "$run_key" /v Orvalen >/dev/null 2>&1; }
clock_is_12_hour() { [[ "$(drv text --title "$D" --id "$IDC_MAIN_TIME")" =~ ^(1[0-2]|[1-9])\ :\ [0-5][0-9]\ :\ [0-5][0-9]\ \ (AM|PM)$ ]]; }
# The 24-hour form shows the hour as it is (13 in the afternoon, 0 after midnight).
clock_is_24_hour() {
  local before after text
  before=$(( 10#$(date +%H) ))
  text=$(drv text --title "$D" --id "$IDC_MAIN_TIME")
  after=$(( 10#$(date +%H) ))
  [[ $text =~ ^([0-9]{1,2})\ :\ [0-5][0-9]\ :\ [0-5][0-9]\ \ \ $ ]] || return 1
  (( BASH_REMATCH[1] == before || BASH_REMATCH[1] == after ))
}
checked() { app_field_of checked "$S" "$1"; }   # IDS: "1 0 ..."
enabled() { app_field_of enabled "$S" "$1"; }
edit_texts() { drv texts --title "$S" --ids "$1" --separator " "; }   # IDS: "1 0 ..."
open_sheet() {
  drv click --title "$D" --id "$IDC_MAIN_CONFIGURE" >/dev/null || app_abort "Configure can be clicked"
  drv wait-window --title "$S" >/dev/null || app_abort "Configure opens the sheet \"$S\""
}
show_page() {  # INDEX A-CONTROL-OF-THAT-PAGE
  drv post --title "$S" --msg "$PSM_SETCURSEL" --wparam "$1" >/dev/null
  drv wait-state --title "$S" --id "$2" --visible 1 >/dev/null || app_abort "page $1 of the sheet shows"
}

check "first run: the autostart value is there" "$(autostart_value)" 'REG_SZ C:\Program Files\Orvalen\Orvalen.exe'
check_true "first run: the clock is in the 12-hour form" app_wait_until 5 clock_is_12_hour

# ---- OK stores every page that was opened.
open_sheet
check "sheet: no Apply button" "$(app_field_of visible "$S" 0x3021)" 0
mapfile -t currencies < <(drv list --title "$S" --id "$IDC_GENERAL_CURRENCY")
check "General: 15 currencies" "${#currencies[@]}" 15
check "General: sorted, Dollars first" "${currencies[0]:-} ${currencies[14]:-}" "Dollars Yen"
check "General: an empty currency shows Dollars" "$(drv text --title "$S" --id "$IDC_GENERAL_CURRENCY")" "Dollars"
check "General: run at start-up checked, show main window and 24-hour clock not" "$(checked 210,219,217)" "1 0 0"
drv set-text --title "$S" --id "$IDC_GENERAL_CURRENCY" --text "Zimbabwe dollars" >/dev/null
drv check --title "$S" --id "$IDC_GENERAL_24_HOUR_CLOCK" --value 1 >/dev/null
drv check --title "$S" --id "$IDC_GENERAL_RUN_AT_STARTUP" --value 0 >/dev/null
drv check --title "$S" --id "$IDC_GENERAL_SHOW_MAIN_WINDOW" --value 1 >/dev/null

show_page 2 "$IDC_LOGPAGE_SHOW_ALL"
check "Log: show all connections checked, system colours not" "$(checked 1702,1703,1701)" "1 0 0"
drv check --title "$S" --id "$IDC_LOGPAGE_FILTER_PREVIOUS" --value 1 >/dev/null
drv check --title "$S" --id "$IDC_LOGPAGE_SYSTEM_COLOURS" --value 1 >/dev/null

show_page 3 "$IDC_ALARM_OFF"
check "Alarm: off; repeating mode; box and sound" "$(checked 1401,1402,1407,1408,1404,1405,1422)" "1 0 1 0 0 1 0"
check "Alarm: times as stored" "$(edit_texts 1403,1412,1415,1418)" "1 0 2 30"
check "Alarm: off disables the details" "$(enabled 1407,1408,1403,1409,1404,1421,1402)" "0 0 0 0 0 0 1"
check "Alarm: four up-down controls" \
  "$(drv children --title "$S" | grep -ci 'msctls_updown32')" 4
drv click --title "$S" --id "$IDC_ALARM_ON" >/dev/null
drv wait-state --title "$S" --id "$IDC_ALARM_PREVIEW_SOUND" --enabled 1 >/dev/null || app_abort "Alarm: on enables Preview Sound"
check "Alarm: on enables both modes' boxes and the actions" "$(enabled 1407,1403,1409,1415,1419,1404)" "1 1 1 1 1 1"
drv set-text --title "$S" --id "$IDC_ALARM_REPEAT_HOURS" --text 0 >/dev/null
drv set-text --title "$S" --id "$IDC_ALARM_REPEAT_MINUTES" --text 0 >/dev/null
drv click --title "$S" --id "$IDC_ALARM_ONCE" >/dev/null
drv wait-state --title "$S" --id "$IDC_ALARM_REPEAT_HOURS" --enabled 0 >/dev/null || app_abort "Alarm: one-shot disables the repeat boxes"
check "Alarm: one-shot: its boxes on, the repeat ones off" "$(enabled 1415,1418,1417,1419,1412,1409,1413)" "1 1 1 1 0 0 0"
drv set-text --title "$S" --id "$IDC_ALARM_ONCE_HOURS" --text 300 >/dev/null
drv set-text --title "$S" --id "$IDC_ALARM_ONCE_MINUTES" --text 99 >/dev/null
drv click --title "$S" --id "$IDC_ALARM_BOX_ONLY" >/dev/null
drv click --title "$S" --id "$IDC_ALARM_PREVIEW_SOUND" >/dev/null   # Preview Sound: plays and returns at once
check "Alarm: message box only, and the page answers after Preview Sound" \
  "$(drv wait-state --title "$S" --id "$IDC_ALARM_BOX_ONLY" --checked 1)" "enabled=1 visible=1 checked=1"

drv click --title "$S" --id "$IDOK" >/dev/null
drv wait-gone --title "$S" >/dev/null || app_abort "OK closes the sheet"
currency_is() { [[ "$(app_cstr "$APP_CONFIG" 28 15)" == "$1" ]]; }
check_true "OK: the currency is saved, cut to 14 characters" app_wait_until 5 currency_is "Zimbabwe dolla"
check "OK: the file keeps its size" "$(app_size "$APP_CONFIG")" 6352
check "OK: the currency's terminator" "$(app_u8 "$APP_CONFIG" 42)" 0
check "OK: 24-hour clock (46), show main window (56), run at start-up (60)" \
  "$(app_u8 "$APP_CONFIG" 46) $(app_u32 "$APP_CONFIG" 56) $(app_u32 "$APP_CONFIG" 60)" "1 1 0"
check "OK: log filter (133), system colours (48)" "$(app_u8 "$APP_CONFIG" 133) $(app_u32 "$APP_CONFIG" 48)" "2 1"
check "OK: alarm on, box only, one-shot (52..54)" "$(app_bytes "$APP_CONFIG" 52 3)" "1 15 35"
check "OK: 0 h 0 min repeat becomes 0 h 5 min (43, 44)" "$(app_bytes "$APP_CONFIG" 43 2)" "0 5"
check "OK: 300 h 99 min becomes 24 h 59 min (45, 55)" "$(app_u8 "$APP_CONFIG" 45) $(app_u8 "$APP_CONFIG" 55)" "24 59"
check "OK: still no session open" "$(app_u8 "$APP_CONFIG" 134)" 219
check_true "OK: the autostart value is gone" autostart_absent
check_true "OK: the clock turns to the 24-hour form" app_wait_until 5 clock_is_24_hour

# ---- Cancel changes nothing, but the file is written all the same.
before=$(md5sum <"$APP_CONFIG")
touch -d "2001-01-01 00:00:00" "$APP_CONFIG"
open_sheet
check "reopened: the typed currency is shown" "$(drv text --title "$S" --id "$IDC_GENERAL_CURRENCY")" "Zimbabwe dolla"
check "reopened: 24-hour, show main window, run at start-up" "$(checked 217,219,210)" "1 1 0"
drv set-text --title "$S" --id "$IDC_GENERAL_CURRENCY" --text "Yen" >/dev/null
drv check --title "$S" --id "$IDC_GENERAL_24_HOUR_CLOCK" --value 0 >/dev/null
show_page 2 "$IDC_LOGPAGE_SHOW_ALL"
check "reopened Log: previous connection, system colours" "$(checked 1702,1703,1701)" "0 1 1"
drv check --title "$S" --id "$IDC_LOGPAGE_SHOW_ALL" --value 1 >/dev/null
show_page 3 "$IDC_ALARM_OFF"
check "reopened Alarm: on, one-shot, box only" "$(checked 1401,1402,1407,1408,1404,1405,1422)" "0 1 0 1 0 0 1"
check "reopened Alarm: the clamped times" "$(edit_texts 1403,1412,1415,1418)" "0 5 24 59"
check "reopened Alarm: the repeat boxes disabled" "$(enabled 1403,1409,1415,1417)" "0 0 1 1"
drv click --title "$S" --id "$IDC_ALARM_OFF" >/dev/null
drv click --title "$S" --id "$IDCANCEL" >/dev/null
drv wait-gone --title "$S" >/dev/null || app_abort "Cancel closes the sheet"
rewritten() { (( $(stat -c %Y "$APP_CONFIG") > 978307200 )); }
check_true "Cancel: the configuration file is written" app_wait_until 5 rewritten
check "Cancel: not a byte changes" "$(md5sum <"$APP_CONFIG")" "$before"
check_true "Cancel: the clock keeps the 24-hour form" clock_is_24_hour
check_true "Cancel: the autostart value stays away" autostart_absent

# ---- Autostart back on.
open_sheet
drv check --title "$S" --id "$IDC_GENERAL_RUN_AT_STARTUP" --value 1 >/dev/null
drv click --title "$S" --id "$IDOK" >/dev/null
drv wait-gone --title "$S" >/dev/null || app_abort "OK closes the sheet"
run_flag_is() { [[ "$(app_u32 "$APP_CONFIG" 60)" == "$1" ]]; }
check_true "autostart on: run at start-up saved" app_wait_until 5 run_flag_is 1
check "autostart on: the value is back" "$(autostart_value)" 'REG_SZ C:\Program Files\Orvalen\Orvalen.exe'
check "autostart on: nothing else changed" "$(app_cstr "$APP_CONFIG" 28 15) $(app_u8 "$APP_CONFIG" 46)" "Zimbabwe dolla 1"
check_true "the program runs" app_running

app_finish
