#!/usr/bin/env bash
# app_view_log.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR LOG_MAKER_EXE
#
# The View Log dialog on a prepared log that mixes letter cases, months and years:
# opened from the tray menu, filtered through its three boxes, an empty search and
# the restore of the previous view, the account box, the text report on disk and
# the editor it starts, and a second opening while one is open.
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=app_lib.sh
source "$here/app_lib.sh"
APP_RUN_LIMIT=400   # a loaded machine makes the many checks slow
app_setup view-log "$@"

V=$APP_VIEW_LOG
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
app_open_view_log >/dev/null || app_abort "View Log opens from the tray menu"

# The date as the list writes it.
list_date() {  # DAY-OF-WEEK MONTH DAY YEAR
  local weekdays=("Sun. " "Mon.  " "Tue.  " "Wed.  " "Thu.  " "Fri.  " "Sat.  ")
  local names=(Jan. Feb. Mar. Apr. May June July Aug. Sept. Oct. Nov. Dec.)
  echo "${weekdays[$1]}${names[$(( $2 - 1 ))]}  $3, $4"
}
dow() { date -d "$1-$2-$3" +%w; }  # YEAR MONTH DAY
lines() { drv list --title "$V" --id "$IDC_VIEWLOG_LIST"; }
line() { lines | sed -n "$(( $1 + 1 ))p"; }
count() { drv text --title "$V" --id "$IDC_VIEWLOG_COUNT"; }
total() { drv text --title "$V" --id "$IDC_VIEWLOG_TOTAL"; }
selected() { drv text --title "$V" --id "$1"; }
# Index of the item that is exactly TEXT in box ID.
index_of() { drv list --title "$V" --id "$1" | grep -nxF -- "$2" | head -n 1 | cut -d: -f1 | awk '{print $1 - 1}'; }
choose() {  # ID TEXT: select it as the user would
  local i
  i=$(index_of "$1" "$2")
  [[ -n $i ]] || app_abort "\"$2\" is an item of box $1"
  drv select --title "$V" --id "$1" --index "$i" >/dev/null
}
wait_count() { drv wait-text --title "$V" --id "$IDC_VIEWLOG_COUNT" --equals "$1" --timeout-ms 30000 >/dev/null; }

# --- Opening: all connections, the current month of the current year.
check "open: connection box" "$(selected "$IDC_VIEWLOG_CONNECTION")" "All Connections"
check "open: month box on the current month" "$(selected "$IDC_VIEWLOG_MONTH")" "${months[$month]}"
check "open: year box on the current year" "$(selected "$IDC_VIEWLOG_YEAR")" "$year"
check "open: month items" "$(drv list --title "$V" --id "$IDC_VIEWLOG_MONTH" | tr '\n' ' ')" "${months[*]} "
years=$(drv list --title "$V" --id "$IDC_VIEWLOG_YEAR")
check "open: the years start with ALL and 1999" "$(head -n 2 <<<"$years" | tr '\n' '|')" "ALL |1999|"
check "open: the years go up to the current one" "$(tail -n 1 <<<"$years")" "$year"
check "open: connection items, sorted, each letter case once" \
  "$(drv list --title "$V" --id "$IDC_VIEWLOG_CONNECTION" | sort -f | tr '\n' '|')" \
  "$(printf '%s\n' "All Connections" "Home ISP" "home isp" "HOME ISP" "Work" | sort -f | tr '\n' '|')"
check "open: three sessions of this month" "$(count)" 3
check "open: total of 5401 s" "$(total)" "1.50 Hrs."
check "open: six lines each" "$(lines | wc -l)" 18
check "open: line 1, the date" "$(line 0)" " Date                     : $(list_date "$(dow "$year" "$month" 3)" "$month" 3 "$year")"
check "open: across midnight" "$(line 8) / $(line 9)" \
  " Log Off Time        : 11 : 59 : 31  PM /  Log On Time        : 11 : 59 : 30  PM"
check "open: the account box is empty for all connections" "$(drv text --title "$V" --id "$IDC_VIEWLOG_ACCOUNT")" ""

# --- All three filters specific: the exact name only; exactly one hour is "Hr.".
choose "$IDC_VIEWLOG_CONNECTION" "Home ISP"
wait_count 1 || app_abort "filtering on Home ISP in this month lists one session"
check "Home ISP, this month: total of 3600 s" "$(total)" "1.00 Hr."
check "Home ISP, this month: only the exact name" "$(lines | grep -c 'Connection Used')" 1
check "Home ISP: the account box" "$(drv text --title "$V" --id "$IDC_VIEWLOG_ACCOUNT")" $'Prepaid Card\nAllotted Time : 20 Hrs.'

# --- Year ALL: letter case no longer counts; one second over the hour is "Hrs.".
choose "$IDC_VIEWLOG_YEAR" "ALL "
wait_count 2 || app_abort "Home ISP in this month of every year lists two sessions"
check "Home ISP, this month, every year: 3601 s" "$(total)" "1.00 Hrs."
check "Home ISP, every year: both letter cases" \
  "$(lines | grep 'Connection Used' | tr '\n' '|')" " Connection Used :  Home ISP| Connection Used :  home isp|"

# --- Month ALL too: the other month and the other year join, in log order.
choose "$IDC_VIEWLOG_MONTH" ALL
wait_count 4 || app_abort "Home ISP in any month of any year lists four sessions"
check "Home ISP, everything: in log order" \
  "$(lines | grep 'Connection Used' | tr '\n' '|')" \
  " Connection Used :  Home ISP| Connection Used :  home isp| Connection Used :  Home ISP| Connection Used :  HOME ISP|"
check "Home ISP, everything: 4321 s" "$(total)" "1.20 Hrs."

# --- A limited-access account: minutes this month and the cost.
choose "$IDC_VIEWLOG_CONNECTION" "Work"
wait_count 1 || app_abort "Work in any month of any year lists its one session (the deleted one not)"
check "Work: the account box" "$(drv text --title "$V" --id "$IDC_VIEWLOG_ACCOUNT")" \
  $'Limited Access Account\nThis Month   : 30 Mins.\nCurrent Cost : 5.00 EUR'

# --- An empty search: a message, then the previous view again.
choose "$IDC_VIEWLOG_CONNECTION" "Home ISP"
wait_count 4 || app_abort "back on Home ISP"
choose "$IDC_VIEWLOG_MONTH" "${months[$month]}"
wait_count 2 || app_abort "Home ISP in this month of every year"
choose "$IDC_VIEWLOG_YEAR" 1999
box=$(drv answer-box --title "" --contains "Matching" --button ok) \
  || app_abort "an empty search brings up a message"
check "empty search: the message" "$box" "There Are No Entries Matching Your Search Criteria"
check "empty search: the list is restored" "$(lines | grep -c 'Connection Used')" 2
check "empty search: the count is restored" "$(count)" 2
check "empty search: the total is restored" "$(total)" "1.00 Hrs."
check "empty search: the boxes are restored" "$(selected "$IDC_VIEWLOG_CONNECTION")|$(selected "$IDC_VIEWLOG_MONTH")|$(selected "$IDC_VIEWLOG_YEAR")" \
  "Home ISP|${months[$month]}|ALL "

# --- The report of the restored list; an older, longer file leaves nothing behind.
report="$APP_INSTALL/Log File.txt"
head -c 20000 /dev/zero | tr '\0' 'x' >"$report"
drv click --title "$V" --id "$IDC_VIEWLOG_REPORT" >/dev/null
check_true "report: written" app_wait_until 10 bash -c "[[ \$(stat -c %s '$report') -lt 20000 ]]"
check_true "report: the text editor starts" app_wait_until 20 app_wine_pid notepad.exe
check "report: the filtered list, in CR LF lines" "$(head -n 3 "$report" | tr -d '\r' | sed -n '1p;3p' | tr '\n' '|')" \
  "Orvalen-generated log|2 connection(s) displayed|"
check "report: 7 + 12 + 1 lines" "$(grep -c $'\r$' "$report")" 20

drv command --class Orvalen --id "$IDM_TRAY_VIEW_LOG" >/dev/null
drv wait-window --title "$V" >/dev/null
check "a second View Log from the tray: still one" "$(drv windows | grep -cF "title=\"$V\"")" 1
drv click --title "$V" --id "$IDC_VIEWLOG_CLOSE" >/dev/null
check "Close ends the dialog" "$(drv wait-gone --title "$V")" gone
app_open_view_log >/dev/null || app_abort "View Log opens again after Close"
check "reopened: the current month again" "$(count)" 3
drv post --title "$V" --msg WM_CLOSE >/dev/null
check "the close box ends the dialog" "$(drv wait-gone --title "$V")" gone
check_true "the program still runs" app_running

app_finish
