#!/usr/bin/env bash
# app_view_log.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR LOG_MAKER_EXE
#
# The View Log dialog on a prepared log that mixes letter cases, months and years:
# opened from the tray menu, its boxes filled, refiltered through them, an empty
# search and the restore of the previous view, the account box, the text report on
# disk and the editor it starts, a second opening while one is open. Then Manage Log
# from it: a usage summary, Delete Entry and Clear Entire Log with their questions
# answered No and Yes (no file touched, or the log saved: which records change is
# logview_test's matter), and View Log after each. (What each filter lists, the
# lines and totals are logview_test's matter too.)
# shellcheck disable=SC2016,SC2034  # conditions for eval are single-quoted on purpose
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=app_lib.sh
source "$here/app_lib.sh"
APP_RUN_LIMIT=400   # a loaded machine makes the many checks slow
app_setup view-log "$@"

V=$APP_VIEW_LOG
M="Manage Log File"
year=$(date +%Y)
month=$(date +%-m)
other=$(( month % 12 + 1 ))  # another month of the same year
months=(ALL JAN FEB MAR APR MAY JUN JUL AUG SEP OCT NOV DEC)
#              name        year   month    day time      seconds [status]
app_describe record "Home ISP" "$year" "$month" 3 10:00:00 3600
app_describe record "home isp" "$year" "$month" 4 23:59:30 1
app_describe record "Work" "$year" "$month" 5 09:05:07 1800
app_describe record "Home ISP" "$year" "$other" 2 20:00:00 600
app_describe record "HOME ISP" 2003 "$other" 7 08:00:00 120
app_describe record "Work" "$year" "$month" 6 12:00:00 999 3
app_describe account "Home ISP" 1 20
app_describe account "home isp" 3
app_describe account "Work" 2 10 5 0.1 0
app_describe account "HOME ISP" 3
app_describe setting currencyName EUR
app_make_files
app_start_prepared
need "View Log opens from the tray menu" app_open_view_log

lines() { drv list --title "$V" --id "$IDC_VIEWLOG_LIST"; }
filters="$IDC_VIEWLOG_CONNECTION,$IDC_VIEWLOG_MONTH,$IDC_VIEWLOG_YEAR"
boxes() { drv text --title "$V" --ids "$filters"; }
shown() { drv text --title "$V" --ids "$IDC_VIEWLOG_COUNT,$IDC_VIEWLOG_TOTAL"; }  # count|total
choose() {  # ID TEXT: select it as the user would
  local i
  i=$(drv list --title "$V" --id "$1" | grep -nxF -- "$2" | head -n 1 | cut -d: -f1)
  [[ -n $i ]] || app_abort "\"$2\" is an item of box $1"
  drv select --title "$V" --id "$1" --index $(( i - 1 )) >/dev/null
}
count_is() { need "$2" drv text --title "$V" --id "$IDC_VIEWLOG_COUNT" --equals "$1" --timeout-ms 30000; }

# --- Opening: all connections, the current month of the current year; the boxes' items.
check "open: the boxes" "$(boxes)" "All Connections|${months[$month]}|$year"
check "open: month items; the years from ALL and 1999 to this one" \
  "$(drv list --title "$V" --id "$IDC_VIEWLOG_MONTH" | tr '\n' ' ')$(drv list --title "$V" --id "$IDC_VIEWLOG_YEAR" | sed -n '1p;2p;$p' | tr '\n' '|')" \
  "${months[*]} ALL |1999|$year|"
check "open: connection items, each letter case once" "$(drv list --title "$V" --id "$IDC_VIEWLOG_CONNECTION" | sort | tr '\n' '|')" \
  "$(printf '%s\n' "All Connections" "Home ISP" "home isp" "HOME ISP" "Work" | sort | tr '\n' '|')"
check "open: three sessions of this month, six lines each, no account box" \
  "$(shown) $(lines | wc -l) $(drv text --title "$V" --id "$IDC_VIEWLOG_ACCOUNT")" "3|1.50 Hrs. 18 "

# --- Refiltered through each box; the account box of a card and of a limited account.
choose "$IDC_VIEWLOG_CONNECTION" "Home ISP"
count_is 1 "filtering on Home ISP in this month lists one session"
check "Home ISP: the total, the account box" "$(shown) $(drv text --title "$V" --id "$IDC_VIEWLOG_ACCOUNT")" $'1|1.00 Hr. Prepaid Card\nAllotted Time : 20 Hrs.'
choose "$IDC_VIEWLOG_YEAR" "ALL "
count_is 2 "Home ISP in this month of every year lists two sessions"
choose "$IDC_VIEWLOG_MONTH" ALL
count_is 4 "Home ISP in any month of any year lists four sessions"
choose "$IDC_VIEWLOG_CONNECTION" "Work"
count_is 1 "Work in any month of any year lists its one session (the deleted one not)"
check "Work: the account box" "$(drv text --title "$V" --id "$IDC_VIEWLOG_ACCOUNT")" $'Limited Access Account\nThis Month   : 30 Mins.\nCurrent Cost : 5.00 EUR'

# --- An empty search: a message, then the previous view again.
choose "$IDC_VIEWLOG_CONNECTION" "Home ISP"
count_is 4 "back on Home ISP"
choose "$IDC_VIEWLOG_MONTH" "${months[$month]}"
count_is 2 "Home ISP in this month of every year"
choose "$IDC_VIEWLOG_YEAR" 1999
check "empty search: the message" "$(drv answer-box --title "" --contains "Matching" --button ok)" "There Are No Entries Matching Your Search Criteria"
check "empty search: the list, count, total and boxes restored" "$(lines | grep -c 'Connection Used') $(shown) $(boxes)" \
  "2 2|1.00 Hrs. Home ISP|${months[$month]}|ALL "

# --- The report of the restored list; an older, longer file leaves nothing behind.
report="$APP_INSTALL/Log File.txt"
head -c 20000 /dev/zero | tr '\0' 'x' >"$report"
drv click --title "$V" --id "$IDC_VIEWLOG_REPORT" >/dev/null
check_true "report: written" app_wait_until 10 eval '(( $(stat -c %s "$report") < 20000 ))'
check_true "report: the text editor starts" app_wait_until 20 app_wine_pid notepad.exe
check "report: the filtered list, 7 + 12 + 1 lines ending in CR LF" \
  "$(tr -d '\r' <"$report" | sed -n '1p;3p' | tr '\n' '|')$(grep -c $'\r$' "$report")" "Orvalen-generated log|2 connection(s) displayed|20"
drv command --class Orvalen --id "$IDM_TRAY_VIEW_LOG" >/dev/null
need "View Log is still there" drv wait-window --title "$V"
check "a second View Log from the tray: still one" "$(drv windows | grep -cF "title=\"$V\"")" 1
drv click --title "$V" --id "$IDC_VIEWLOG_CLOSE" >/dev/null
see "Close ends the dialog" wait-window --gone --title "$V"
need "View Log opens again after Close" app_open_view_log
see "reopened: the current month again" text --title "$V" --id "$IDC_VIEWLOG_COUNT" --equals 3

# --- Manage Log: a summary, then Delete Entry answered No and Yes.
statuses() { od -A n -v -t u1 -w192 -j 8 "$APP_LOG" | awk '{ printf "%s ", $1 }'; }
names() { drv list --title "$M" --id "$IDC_MANAGE_LIST" | sort | tr '\n' '|'; }
open_manage() {
  drv click --title "$V" --id "$IDC_VIEWLOG_MANAGE" >/dev/null
  need "Manage Log opens from View Log" drv wait-window --title "$M"
}
close_manage() {
  drv click --title "$M" --id "$IDC_MANAGE_CLOSE" >/dev/null
  need "Close ends Manage Log" drv wait-window --gone --title "$M"
}
open_manage
check "Manage Log: each name once; Delete Entry and the summary disabled" "$(names) $(app_field_of enabled "$M" "$IDC_MANAGE_DELETE,$IDC_MANAGE_SUMMARY,$IDC_MANAGE_CLEAR")" \
  "$(printf '%s\n' "Home ISP" "home isp" "HOME ISP" "Work" | sort | tr '\n' '|') 0 0 1"
drv select --double --title "$M" --id "$IDC_MANAGE_LIST" --index "$(( $(drv list --title "$M" --id "$IDC_MANAGE_LIST" | grep -nxF "Home ISP" | cut -d: -f1) - 1 ))" >/dev/null
see "a double click shows the card's summary" text --title "$M" --id "$IDC_MANAGE_SUMMARY" --contains "Pre-paid Internet Card"
check "a double click enables Delete Entry and the summary" "$(app_field_of enabled "$M" "$IDC_MANAGE_DELETE,$IDC_MANAGE_SUMMARY")" "1 1"
before=$(md5sum "$APP_LOG" "$APP_CONFIG")
drv click --title "$M" --id "$IDC_MANAGE_DELETE" >/dev/null
check "Delete Entry: the question" "$(drv answer-box --title "Delete Connectiom" --button no)" "Are You Sure You Want To Delete This Entry?"
check "No: nothing changes" "$(drv list --title "$M" --id "$IDC_MANAGE_LIST" --count) $(md5sum "$APP_LOG" "$APP_CONFIG")" "4 $before"
drv click --title "$M" --id "$IDC_MANAGE_DELETE" >/dev/null
need "Delete Entry asks again" drv answer-box --title "Delete Connectiom" --button yes
check_true "Yes: the log is saved" app_wait_until 10 eval '[[ "$(statuses)" == "3 1 1 3 1 3 " ]]'
check "Yes: the name leaves the list, Delete Entry disabled, the summary emptied" \
  "$(names) $(app_field_of enabled "$M" "$IDC_MANAGE_DELETE") $(drv text --title "$M" --id "$IDC_MANAGE_SUMMARY")" \
  "$(printf '%s\n' "home isp" "HOME ISP" "Work" | sort | tr '\n' '|') 0 "
# Closing after a deletion refreshes View Log on everything of this year.
close_manage
need "View Log refreshed" drv text --title "$V" --id "$IDC_VIEWLOG_MONTH" --equals ALL --timeout-ms 30000
check "View Log refreshed: the boxes, two sessions left, Home ISP gone, the filters usable" \
  "$(boxes) $(drv text --title "$V" --id "$IDC_VIEWLOG_COUNT") $(drv list --title "$V" --id "$IDC_VIEWLOG_CONNECTION" | grep -cxF "Home ISP") $(app_field_of enabled "$V" \
    "$filters,$IDC_VIEWLOG_MANAGE,$IDC_VIEWLOG_REPORT")" \
  "All Connections|ALL|$year 2 0 1 1 1 1 1"

# --- Clear Entire Log answered No: nothing changes, and View Log keeps its filter.
choose "$IDC_VIEWLOG_MONTH" "${months[$month]}"
need "View Log on this month" drv text --title "$V" --id "$IDC_VIEWLOG_MONTH" --equals "${months[$month]}" --timeout-ms 30000
open_manage
before=$(md5sum "$APP_LOG" "$APP_CONFIG")
drv click --title "$M" --id "$IDC_MANAGE_CLEAR" >/dev/null
check "Clear Entire Log: the question" "$(drv answer-box --title "ALERT !!" --button no)" "This will delete the entire log from your disk. Do you want to continue?"
check "No: nothing changes" "$(drv list --title "$M" --id "$IDC_MANAGE_LIST" --count) $(md5sum "$APP_LOG" "$APP_CONFIG")" "3 $before"
close_manage
check "No, then Close: View Log keeps its filter" "$(drv text --title "$V" --id "$IDC_VIEWLOG_MONTH")" "${months[$month]}"

# --- Clear Entire Log answered Yes: every record Deleted, View Log disabled at once.
open_manage
drv click --title "$M" --id "$IDC_MANAGE_CLEAR" >/dev/null
need "Clear Entire Log asks again" drv answer-box --title "ALERT !!" --button yes
check_true "Yes: the log is saved" app_wait_until 10 eval '[[ "$(statuses)" == "3 3 3 3 3 3 " ]]'
check "Yes: the list empty, both actions disabled" "$(drv list --title "$M" --id "$IDC_MANAGE_LIST" --count) $(app_field_of enabled "$M" "$IDC_MANAGE_CLEAR,$IDC_MANAGE_DELETE")" "0 0 0"
close_manage
controls="$IDC_VIEWLOG_MANAGE,$filters,$IDC_VIEWLOG_ACCOUNT,$IDC_VIEWLOG_REPORT,$IDC_VIEWLOG_CLOSE"
check "View Log: everything but Close disabled, nothing listed, count and total" \
  "$(app_field_of enabled "$V" "$controls") $(drv list --title "$V" --id "$IDC_VIEWLOG_LIST" --count) $(shown)" "0 0 0 0 0 0 1 0 0|0.00 Hr."

# --- Opened again on the empty log.
drv click --title "$V" --id "$IDC_VIEWLOG_CLOSE" >/dev/null
need "View Log closes" drv wait-window --gone --title "$V"
need "View Log opens on the empty log" app_open_view_log
check "empty log: four empty lines, then the notice; everything but Close disabled; no count, no total" \
  "$(lines | tr '\n' '|') $(app_field_of enabled "$V" "$controls") $(shown)" \
  "||||                      The   Log   Is  Currently   Empty| 0 0 0 0 0 0 1 |"
check_true "the program still runs" app_running

app_finish
