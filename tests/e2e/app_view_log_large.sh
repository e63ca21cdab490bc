#!/usr/bin/env bash
# app_view_log_large.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR LOG_MAKER_EXE
#
# View Log on a log of 10,000 sessions (60,000 list lines): how long the dialog
# takes to open and to refilter, and that it answers at once afterwards. Leaves a
# screenshot in ARTIFACT_DIR/view-log-large.png.
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=app_lib.sh
source "$here/app_lib.sh"
APP_OWN_DISPLAY=1   # for the screenshot: see app_screenshot
app_setup view-log-large "$@"

V=$APP_VIEW_LOG
year=$(date +%Y)
month=$(date +%-m)
app_describe repeat 9999 "Home ISP" "$year" "$month" 1 08:00:00 360
app_describe record "Work" "$year" "$month" 2 09:00:00 3600
app_describe account "Home ISP" 3
app_describe account "Work" 3
app_make_files
app_start_prepared

# Generous bounds: they catch a fill that redraws or reallocates per line (which
# takes minutes here), not a slow machine.
t0=$(app_now)
app_open_view_log >/dev/null || app_abort "View Log opens on 10,000 sessions"
drv wait-text --title "$V" --id "$IDC_VIEWLOG_COUNT" --equals 10000 --timeout-ms 60000 >/dev/null \
  || app_abort "all 10,000 sessions of this month are listed"
open_ms=$(app_elapsed_ms "$t0" "$(app_now)")
echo "      (open to 10,000 sessions listed: $open_ms ms)"
check "open: 60,000 lines" "$(drv list-count --title "$V" --id "$IDC_VIEWLOG_LIST")" 60000
check "open: the total" "$(drv text --title "$V" --id "$IDC_VIEWLOG_TOTAL")" "1000.90 Hrs."
check "open: the last session is the last entry" \
  "$(drv item --title "$V" --id "$IDC_VIEWLOG_LIST" --index -5)" " Connection Used :  Work"
check "open: within 15 s" "$(( open_ms < 15000 ))" 1

t0=$(app_now)
drv select --title "$V" --id "$IDC_VIEWLOG_CONNECTION" --index "$(drv list --title "$V" --id "$IDC_VIEWLOG_CONNECTION" | grep -nxF "Home ISP" | cut -d: -f1 | awk '{print $1 - 1}')" >/dev/null
drv wait-text --title "$V" --id "$IDC_VIEWLOG_COUNT" --equals 9999 --timeout-ms 60000 >/dev/null \
  || app_abort "filtering on Home ISP lists 9,999 sessions"
filter_ms=$(app_elapsed_ms "$t0" "$(app_now)")
echo "      (refilter to 9,999 sessions: $filter_ms ms)"
check "refilter: 59,994 lines" "$(drv list-count --title "$V" --id "$IDC_VIEWLOG_LIST")" 59994
check "refilter: within 15 s" "$(( filter_ms < 15000 ))" 1

t0=$(app_now)
check "the dialog answers afterwards" "$(drv text --title "$V" --id "$IDC_VIEWLOG_TOTAL")" "999.90 Hrs."
answer_ms=$(app_elapsed_ms "$t0" "$(app_now)")
echo "      (a read after the fill: $answer_ms ms)"

shot=$APP_ARTIFACTS/view-log-large.png
if app_screenshot "$shot"; then
  echo "      screenshot: $shot"
else
  echo "note: no screenshot: $(cat "$APP_HOME/import.err")"
fi
check_true "the program still runs" app_running

app_finish
