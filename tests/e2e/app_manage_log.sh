#!/usr/bin/env bash
# app_manage_log.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR LOG_MAKER_EXE
#
# The Manage Log dialog, opened from View Log on a prepared log: the usage summary
# of a double-clicked connection, Delete Entry and Clear Entire Log with their
# confirmations answered No and Yes (no file touched, or the log saved: which
# records and accounts change is logview_test's matter), and what View Log shows
# when Manage Log ends.
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=app_lib.sh
source "$here/app_lib.sh"
APP_RUN_LIMIT=400   # a loaded machine makes the many checks slow
app_setup manage-log "$@"

V=$APP_VIEW_LOG
M="Manage Log File"
year=$(date +%Y)
month=$(date +%-m)
months=(ALL JAN FEB MAR APR MAY JUN JUL AUG SEP OCT NOV DEC)

app_describe record "Home ISP" "$year" "$month" 3 10:00:00 3600
app_describe record "home isp" "$year" "$month" 4 11:00:00 1800
app_describe record "Home ISP" "$year" "$month" 5 12:00:00 5400
app_describe record "Work" "$year" "$month" 6 13:00:00 900
app_describe account "Home ISP" 1 20
app_describe account "home isp" 3
app_describe account "Work" 2 10 5 0.1 0
app_make_files
app_start_prepared
app_open_view_log >/dev/null || app_abort "View Log opens from the tray menu"

status_of() { app_u8 "$APP_LOG" "$(app_record_offset "$1")"; }
statuses() { echo "$(status_of 0) $(status_of 1) $(status_of 2) $(status_of 3)"; }
names() { drv list --title "$M" --id "$IDC_MANAGE_LIST"; }
index_of() { drv list --title "$1" --id "$2" | grep -nxF -- "$3" | head -n 1 | cut -d: -f1 | awk '{print $1 - 1}'; }
enabled() { drv state --title "$1" --id "$2" | cut -d' ' -f1; }
summary() { drv text --title "$M" --id "$IDC_MANAGE_SUMMARY"; }
# The summary once it shows WORD (or whatever it shows after 30 s).
summary_with() { drv wait-text --title "$M" --id "$IDC_MANAGE_SUMMARY" --contains "$1" --timeout-ms 30000 >/dev/null; summary; }
double_click() {  # NAME
  local i
  i=$(index_of "$M" 601 "$1")
  [[ -n $i ]] || app_abort "\"$1\" is listed in Manage Log"
  drv double-click-list --title "$M" --id "$IDC_MANAGE_LIST" --index "$i" >/dev/null
}
open_manage() {
  drv click --title "$V" --id "$IDC_VIEWLOG_MANAGE" >/dev/null
  drv wait-window --title "$M" >/dev/null || app_abort "Manage Log opens from View Log"
}

# --- The list and the summaries.
open_manage
check "the names, each letter case once" "$(names | sort | tr '\n' '|')" "Home ISP|Work|home isp|"
check "Delete Entry and the summary start disabled" "$(app_field_of enabled "$M" 123,1510,114)" "0 0 1"
double_click "Home ISP"
check "pre-paid card: total of every letter case, and what is left" \
  "$(summary_with Card)" \
  $'Pre-paid Internet Card\nTotal Time : 3.00 Hrs.\nRemaining : 17.00 Hrs.'
check "a double-click enables Delete Entry and the summary" "$(app_field_of enabled "$M" 123,1510)" "1 1"
double_click "Work"
check "limited access summary" "$(summary_with Limited)" \
  $'Limited Access\nThis Month: 0.25 Hrs\nLogged Total :0.25 Hrs'
double_click "home isp"
check "unlimited access summary" "$(summary_with Unlimited)" "Unlimited Access"

# --- Delete Entry: No changes nothing; Yes deletes the exact name only.
double_click "Home ISP"
summary_with Card >/dev/null
before=$(md5sum "$APP_LOG" "$APP_CONFIG")
drv click --title "$M" --id "$IDC_MANAGE_DELETE" >/dev/null
box=$(drv answer-box --title "Delete Connectiom" --button no) || app_abort "Delete Entry asks first"
check "Delete Entry: the question" "$box" "Are You Sure You Want To Delete This Entry?"
check "No: still three names" "$(names | wc -l)" 3
check "No: no file touched" "$(md5sum "$APP_LOG" "$APP_CONFIG")" "$before"
drv click --title "$M" --id "$IDC_MANAGE_DELETE" >/dev/null
drv answer-box --title "Delete Connectiom" --button yes >/dev/null || app_abort "Delete Entry asks again"
home_deleted() { [[ $(status_of 0) == 3 ]]; }
check_true "Yes: the log is saved" app_wait_until 10 home_deleted
check "Yes: the name leaves the list" "$(names | sort | tr '\n' '|')" "Work|home isp|"
check "Yes: Delete Entry disabled again" "$(enabled "$M" 123)" enabled=0
check "Yes: the summary emptied" "$(summary)" ""

# --- Closing after a deletion refreshes View Log on everything of this year.
drv click --title "$M" --id "$IDC_MANAGE_CLOSE" >/dev/null
check "Close ends Manage Log" "$(drv wait-gone --title "$M")" gone
drv wait-text --title "$V" --id "$IDC_VIEWLOG_MONTH" --equals ALL --timeout-ms 30000 >/dev/null
check "View Log refreshed: the boxes" "$(drv children --title "$V" | grep -E ' id=(124|109|611) ' | sed 's/.* text=//' | sort | tr '\n' '|')" \
  "$(printf '"%s"\n' "All Connections" ALL "$year" | sort | tr '\n' '|')"
check "View Log refreshed: two sessions left" "$(drv text --title "$V" --id "$IDC_VIEWLOG_COUNT")" 2
check "View Log refreshed: the connection names" "$(drv list --title "$V" --id "$IDC_VIEWLOG_CONNECTION" | sort | tr '\n' '|')" \
  "All Connections|Work|home isp|"
check "View Log: the filters stay usable" "$(app_field_of enabled "$V" 124,109,611,2,1000)" "1 1 1 1 1"

# --- Clear Entire Log answered No: nothing changes, and View Log does not refresh.
i=$(index_of "$V" 109 "${months[$month]}")
drv select --title "$V" --id "$IDC_VIEWLOG_MONTH" --index "$i" >/dev/null
drv wait-text --title "$V" --id "$IDC_VIEWLOG_MONTH" --equals "${months[$month]}" --timeout-ms 30000 >/dev/null
open_manage
before=$(md5sum "$APP_LOG" "$APP_CONFIG")
drv click --title "$M" --id "$IDC_MANAGE_CLEAR" >/dev/null
box=$(drv answer-box --title "ALERT !!" --button no) || app_abort "Clear Entire Log asks first"
check "Clear Entire Log: the question" "$box" "This will delete the entire log from your disk. Do you want to continue?"
check "No: the names stay" "$(names | wc -l)" 2
check "No: no file touched" "$(md5sum "$APP_LOG" "$APP_CONFIG")" "$before"
drv click --title "$M" --id "$IDC_MANAGE_CLOSE" >/dev/null
drv wait-gone --title "$M" >/dev/null
check "No, then Close: View Log keeps its filter" "$(drv text --title "$V" --id "$IDC_VIEWLOG_MONTH")" "${months[$month]}"

# --- Clear Entire Log answered Yes: every record Deleted, View Log disabled at once.
open_manage
drv click --title "$M" --id "$IDC_MANAGE_CLEAR" >/dev/null
drv answer-box --title "ALERT !!" --button yes >/dev/null || app_abort "Clear Entire Log asks again"
all_deleted() { [[ $(statuses) == "3 3 3 3" ]]; }
check_true "Yes: the log is saved" app_wait_until 10 all_deleted
check "Yes: the list is empty" "$(drv list-count --title "$M" --id "$IDC_MANAGE_LIST")" 0
check "Yes: both actions disabled" "$(app_field_of enabled "$M" 114,123)" "0 0"
drv click --title "$M" --id "$IDC_MANAGE_CLOSE" >/dev/null
drv wait-gone --title "$M" >/dev/null
check "View Log: everything but Close disabled" \
  "$(app_field_of enabled "$V" 2,124,109,611,202,1000,1)" "0 0 0 0 0 0 1"
check "View Log: nothing listed" "$(drv list-count --title "$V" --id "$IDC_VIEWLOG_LIST")" 0
check "View Log: count and total" "$(drv text --title "$V" --id "$IDC_VIEWLOG_COUNT")|$(drv text --title "$V" --id "$IDC_VIEWLOG_TOTAL")" "0|0.00 Hr."

# --- Opened again on the empty log.
drv click --title "$V" --id "$IDC_VIEWLOG_CLOSE" >/dev/null
drv wait-gone --title "$V" >/dev/null
app_open_view_log >/dev/null || app_abort "View Log opens on the empty log"
check "empty log: four empty lines, then the notice" "$(drv list --title "$V" --id "$IDC_VIEWLOG_LIST" | tr '\n' '|')" \
  "||||                      The   Log   Is  Currently   Empty|"
check "empty log: everything but Close disabled" \
  "$(app_field_of enabled "$V" 2,124,109,611,202,1000,1)" "0 0 0 0 0 0 1"
check "empty log: no count, no total" "$(drv text --title "$V" --id "$IDC_VIEWLOG_COUNT")|$(drv text --title "$V" --id "$IDC_VIEWLOG_TOTAL")" "|"
check_true "the program still runs" app_running

app_finish
