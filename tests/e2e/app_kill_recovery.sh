#!/usr/bin/env bash
# app_kill_recovery.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR
#
# The program is killed during a session, within its first three minutes: the
# next start, off-line, records that session from its first checkpoint, and the
# main status dialog shows it. (The record's fields from the checkpoint are the
# unit tests' matter: session_test.)
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=app_lib.sh
source "$here/app_lib.sh"
app_setup kill-recovery "$@"

app_first_run_through_welcome
D=$APP_MAIN_DIALOG

dial connect "Home ISP"
app_wait_online "Home ISP" || app_abort "the dialog shows the session of Home ISP"
app_wait_until 5 app_u8_is "$APP_CONFIG" 134 218 || app_abort "the session marker 218 is on disk"
check "log: nothing recorded while on-line" "$(app_u32 "$APP_LOG" "$(app_record_offset 0)")" 0

pid=$(app_unix_pid) || app_abort "the Wine process of Orvalen.exe is found"
kill -9 "$pid"
check "the killed program ended" "$(app_wait_exit 10)" 137
check "the session marker is left at 218" "$(app_u8 "$APP_CONFIG" 134)" 218
# The shell keeps the dead program's windows only until the server notices.
drv wait-gone --class Orvalen --any-visibility >/dev/null || app_abort "the killed program's windows are gone"

dial disconnect
app_start
r=$(app_record_offset 0)
record_in_use() { [[ "$(app_u32 "$APP_LOG" "$r")" == 1 ]]; }
check_true "restart: the interrupted session is recorded" app_wait_until 20 record_in_use
check_true "restart: the session marker returns to 219" app_wait_until 5 app_u8_is "$APP_CONFIG" 134 219
check "restart: no Welcome on a later start" \
  "$(drv windows | grep -cF 'title="Welcome to Orvalen"')" 0
check_true "the account notice for Home ISP comes and is declined" app_decline_account_notice "Home ISP"

check "log: record 0 name" "$(app_cstr "$APP_LOG" $(( r + 87 )) 105)" "Home ISP"

# A later start shows no dialog by itself; the tray's double click does.
drv post --class Orvalen --msg WM_APP+1 --lparam WM_LBUTTONDBLCLK >/dev/null
drv wait-window --title "$D" >/dev/null || app_abort "a double click on the tray icon shows the dialog"
list_has() { [[ "$(drv list-count --title "$D" --id "$IDC_MAIN_PREVIOUS_SESSION")" == "$1" ]]; }
check_true "the previous-session list is filled (6 lines)" app_wait_until 5 list_has 6
mapfile -t lines < <(drv list --title "$D" --id "$IDC_MAIN_PREVIOUS_SESSION")
check "list line 2" "${lines[1]:-}" " Connection  :                   Home ISP"
check "list line 5" "${lines[4]:-}" " Duration :                        0 Hr: 0 Min: 0 Sec"
check "off-line since the start: no session caption" "$(drv text --title "$D" --id "$IDC_MAIN_FIRST_CAPTION")" ""
check "off-line since the start: Configure enabled" "$(drv state --title "$D" --id "$IDC_MAIN_CONFIGURE" | cut -d' ' -f1)" "enabled=1"
check "off-line: no new session opened" "$(app_u8 "$APP_CONFIG" 134)" 219
check_true "the restarted program runs" app_running

app_finish
