#!/usr/bin/env bash
# app_account_notice.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR
#
# The first session of a new connection ends with the notice and the account
# dialog for it: the account set there is saved at once and shown by the main
# status dialog in the next session, which asks nothing more. The same account
# changed on the Accounts page of the settings sheet; a second new connection
# whose dialog is cancelled gets the "not properly set up" box and stays named
# but unconfigured.
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=app_lib.sh
source "$here/app_lib.sh"
app_setup account-notice "$@"

app_first_run_through_welcome
D=$APP_MAIN_DIALOG
S="Configure Orvalen"
A="Orvalen....Configure Account Details For --Home ISP"
PSM_SETCURSEL=WM_USER+101

f32() { od -A n -t f4 -j "$2" -N 4 "$1" 2>/dev/null | tr -d ' \n'; }
# Account entry k: configured, name, kind, hours, charge, excess, VAT.
entry() {  # K
  local at=$(( 136 + 120 * $1 ))
  echo "$(app_u32 "$APP_CONFIG" "$at") $(app_cstr "$APP_CONFIG" $(( at + 4 )) 32)" \
       "$(app_u32 "$APP_CONFIG" $(( at + 36 ))) $(app_u32 "$APP_CONFIG" $(( at + 40 )))" \
       "$(f32 "$APP_CONFIG" $(( at + 44 ))) $(f32 "$APP_CONFIG" $(( at + 48 ))) $(f32 "$APP_CONFIG" $(( at + 52 )))"
}
entry_is() { [[ "$(entry "$1")" == "$2" ]]; }
session() {  # NAME: connect, see it on-line, disconnect
  dial connect "$1"
  app_wait_online "$1" || app_abort "the dialog shows the session of $1"
}
offline() {
  dial disconnect
  drv wait-text --title "$D" --id "$IDC_MAIN_FIRST_CAPTION" --equals "Your Last Logon was at :" >/dev/null \
    || app_abort "after the disconnection the dialog shows the last session"
}
# The account-status box while on-line (the seconds logged so far are few).
status_is_limited() {
  [[ "$(drv text --title "$D" --id "$IDC_MAIN_ACCOUNT_STATUS")" =~ ^$'\n'"Type of Account: Limited Access account"$'\n'" Time Consumed this month : 0.0"[0-9]" Hr."$ ]]
}
status_is_unlimited() { [[ "$(drv text --title "$D" --id "$IDC_MAIN_ACCOUNT_STATUS")" == $'\nType of Account: Unlimited Access account\n ' ]]; }
# The previous-session list's account line, refilled at the dialog's next tick.
account_line_starts() { [[ "$(drv list --title "$D" --id "$IDC_MAIN_PREVIOUS_SESSION" | sed -n 6p)" == "$1"* ]]; }

# ---- The first session of Home ISP: the notice, then IDD_ACCOUNTS for it.
session "Home ISP"
offline
check "notice: its text" "$(drv box-text --title "Orvalen Notification..." --timeout-ms 15000)" \
  "$(printf '%s\n%s' "Orvalen detected a connection   (- Home ISP -) that hasn't been configured for its database." \
       "Best to configure this connection now")"
drv answer-box --title "Orvalen Notification..." --button ok >/dev/null || app_abort "the notice has an OK button"
drv wait-window --title "$A" >/dev/null || app_abort "the account dialog opens for Home ISP"
check "dialog: Limited Access checked" "$(app_field_of checked "$A" 904,905,906)" "0 1 0"
check "dialog: list disabled, kinds enabled, card hours disabled, limited figures and help enabled" \
  "$(app_field_of enabled "$A" 601,904,905,906,114,217,203,119,204,117,1422)" "0 1 1 1 0 0 1 1 1 1 1"
check "dialog: OK and Cancel shown, Apply hidden" "$(app_field_of visible "$A" 1,2,902)" "1 1 0"
check "dialog: the figures are empty" \
  "$(drv texts --title "$A" --ids 203,119,204,117,114)" "||||"
check "log: the entry has no account yet" "$(entry 0)" "0  0 0 0 0 0"
drv set-text --title "$A" --id "$IDC_ACCOUNTS_BASIC_HOURS" --text 10 >/dev/null
drv set-text --title "$A" --id "$IDC_ACCOUNTS_MONTHLY_CHARGE" --text 12.50 >/dev/null
drv set-text --title "$A" --id "$IDC_ACCOUNTS_EXCESS_PER_MINUTE" --text 100.75 >/dev/null
drv set-text --title "$A" --id "$IDC_ACCOUNTS_VAT" --text abc >/dev/null
drv click --title "$A" --id "$IDC_ACCOUNTS_OK" >/dev/null
drv wait-gone --title "$A" >/dev/null || app_abort "OK closes the account dialog"
check_true "OK saves: limited access, 10 h, 12.50, 100.75 read as 100, VAT not a number as 0" \
  app_wait_until 5 entry_is 0 "1 Home ISP 2 10 12.5 100 0"
check "OK: no \"not properly set up\" box" "$(drv windows | grep -cF 'title="Orvalen Notification"')" 0
check "OK: no second entry" "$(app_cstr "$APP_CONFIG" $(( 136 + 120 + 4 )) 32)" ""

# ---- The next session shows the account and asks nothing.
session "Home ISP"
check_true "on-line: the account-status text shows the limited-access account" app_wait_until 5 status_is_limited
offline
check_true "off-line: the previous session's account line is the limited one" \
  app_wait_until 5 account_line_starts "Limited: 0.0"
check "a configured connection: no notice" "$(drv windows | grep -cF 'title="Orvalen Notification..."')" 0

# ---- View Log shows the account for Home ISP (its two short sessions this month).
V=$APP_VIEW_LOG
app_open_view_log >/dev/null || app_abort "the tray menu opens View Log"
home=$(drv list --title "$V" --id "$IDC_VIEWLOG_CONNECTION" | grep -nxF "Home ISP" | cut -d: -f1)
[[ -n $home ]] || app_abort "View Log's connection box lists Home ISP"
drv select --title "$V" --id "$IDC_VIEWLOG_CONNECTION" --index $(( home - 1 )) >/dev/null
view_log_account_is() {
  [[ "$(drv text --title "$V" --id "$IDC_VIEWLOG_ACCOUNT")" =~ ^"Limited Access Account"$'\n'"This Month   : "[0-9]+" Mins."$'\n'"Current Cost : 12.50 "$ ]]
}
check_true "View Log: the account box shows the limited account and its monthly charge" \
  app_wait_until 10 view_log_account_is
drv click --title "$V" --id "$IDC_VIEWLOG_CLOSE" >/dev/null
drv wait-gone --title "$V" >/dev/null || app_abort "View Log closes"

# ---- The Accounts page of the sheet: choose Home ISP, make it unlimited.
drv click --title "$D" --id "$IDC_MAIN_CONFIGURE" >/dev/null || app_abort "Configure can be clicked"
drv wait-window --title "$S" >/dev/null || app_abort "Configure opens the sheet"
drv post --title "$S" --msg "$PSM_SETCURSEL" --wparam 1 >/dev/null
drv wait-state --title "$S" --id "$IDC_ACCOUNTS_CONNECTION" --visible 1 >/dev/null || app_abort "the Accounts page shows"
check "page: the banner" "$(drv text --title "$S" --id "$IDC_ACCOUNTS_BANNER")" \
  "$(printf '%s\n%s' "Choose a Connection to enter account details." "Previous accounts can also be reconfigured here")"
mapfile -t names < <(drv list --title "$S" --id "$IDC_ACCOUNTS_CONNECTION")
check "page: the connections, sorted" "${names[*]}" "Connection Home ISP"
check "page: only the list is usable" "$(app_field_of enabled "$S" 601,123,904,905,906,114,203,119)" "1 1 0 0 0 0 0 0"
check "page: its own Apply and the help text hidden" "$(app_field_of visible "$S" 902,1422)" "0 0"
drv select --title "$S" --id "$IDC_ACCOUNTS_CONNECTION" --index 0 >/dev/null   # "Connection": no entry, nothing changes
check "page: \"Connection\" shows nothing" "$(app_field_of enabled "$S" 904,203)" "0 0"
drv select --title "$S" --id "$IDC_ACCOUNTS_CONNECTION" --index 1 >/dev/null
drv wait-state --title "$S" --id "$IDC_ACCOUNTS_UNLIMITED" --enabled 1 >/dev/null || app_abort "choosing Home ISP enables the kinds"
check "page: Home ISP's figures" \
  "$(drv texts --title "$S" --ids 203,119,204,117)" "10|12.50|100.00|0.0"
check "page: limited access checked and enabled, card off" \
  "$(app_field_of checked "$S" 904,905,906) $(app_field_of enabled "$S" 203,119,114)" "0 1 0 1 1 0"
drv click --title "$S" --id "$IDC_ACCOUNTS_UNLIMITED" >/dev/null
drv wait-state --title "$S" --id "$IDC_ACCOUNTS_BASIC_HOURS" --enabled 0 >/dev/null || app_abort "Unlimited disables the limited figures"
check "page: unlimited leaves the figures shown" "$(drv text --title "$S" --id "$IDC_ACCOUNTS_MONTHLY_CHARGE")" "12.50"
drv click --title "$S" --id "$IDOK" >/dev/null
drv wait-gone --title "$S" >/dev/null || app_abort "OK closes the sheet"
check_true "sheet OK: only the kind changes" app_wait_until 5 entry_is 0 "1 Home ISP 3 10 12.5 100 0"

session "Home ISP"
check_true "on-line: the account-status text shows the unlimited account" app_wait_until 5 status_is_unlimited
offline
check_true "off-line: the previous session's account line is the unlimited one" \
  app_wait_until 5 account_line_starts "Account Type : Unlimited Access Account"

# ---- A second new connection, its dialog cancelled.
session "Work ISP"
offline
drv answer-box --title "Orvalen Notification..." --contains "(- Work ISP -)" --button ok >/dev/null \
  || app_abort "the notice names Work ISP"
drv wait-window --title "Orvalen....Configure Account Details For --Work ISP" >/dev/null \
  || app_abort "the account dialog opens for Work ISP"
drv click --title "Orvalen....Configure Account Details For --Work ISP" --id "$IDC_ACCOUNTS_CANCEL" >/dev/null
check "Cancel: the box that says so" \
  "$(drv answer-box --title "Orvalen Notification" --contains "not properly" --button ok)" \
  "$(printf '%s\n%s' "This connection was not properly set up for Orvalen's database. " \
       "You will be asked to do this at a later time")"
check_true "Cancel: Work ISP is named but not set up" app_wait_until 5 entry_is 1 "0 Work ISP 0 0 0 0 0"
check "Cancel: Home ISP keeps its account" "$(entry 0)" "1 Home ISP 3 10 12.5 100 0"
check_true "the program runs" app_running

app_finish
