#!/usr/bin/env bash
# app_view_log_large.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR LOG_MAKER_EXE
#
# A log of 10,000 sessions, held open by another program with read sharing only
# (as a virus scanner or a backup program does) while Orvalen starts: it loads
# whole and nothing is said. View Log on it (60,000 list lines): how long the
# dialog takes to open and to refilter, and that it answers at once afterwards.
# The other program lets go, a session is recorded, and the log on disk holds the
# earlier sessions and the new one. Leaves a screenshot in
# ARTIFACT_DIR/view-log-large.png.
# shellcheck disable=SC2016,SC2034  # conditions for eval are single-quoted on purpose
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=app_lib.sh
source "$here/app_lib.sh"
APP_OWN_DISPLAY=1   # for the screenshot: see app_setup
app_setup view-log-large "$@"

V=$APP_VIEW_LOG
app_describe repeat 9999 "Home ISP" "$(date +%Y)" "$(date +%-m)" 1 08:00:00 360
app_describe record "Work" "$(date +%Y)" "$(date +%-m)" 2 09:00:00 3600
app_describe account "Home ISP" 3
app_describe account "Work" 3
app_make_files
in_use() { od -A n -v -t u1 -w192 -j 8 "$APP_LOG" | awk '$1 == 1' | wc -l; }  # records in use on disk

drv hold-file --path 'C:\Program Files\Orvalen\Orvabook_.ovb' --release-when 'C:\setup\release' >"$APP_HOME/hold.out" 2>&1 &
holder=$!
need "another program holds the log" app_wait_until 30 grep -q held "$APP_HOME/hold.out"
app_start_prepared
check "held: no message about the log; the program runs" "$(drv windows | grep -c 'Orvalen Notification') $(app_running && echo runs)" "0 runs"

# Generous bounds: they catch a fill that redraws or reallocates per line (which
# takes minutes here), not a slow machine.
t0=$(app_now)
need "View Log opens on 10,000 sessions" app_open_view_log
need "all 10,000 sessions of this month are listed" drv text --title "$V" --id "$IDC_VIEWLOG_COUNT" --equals 10000 --timeout-ms 60000
open_ms=$(( $(app_now) - t0 ))
echo "      (open to 10,000 sessions listed: $open_ms ms)"
check "open: within 15 s; 60,000 lines, the total, the last session last" \
  "$(( open_ms < 15000 )) $(drv list --title "$V" --id "$IDC_VIEWLOG_LIST" --count) $(drv text --title "$V" --id "$IDC_VIEWLOG_TOTAL")|$(drv list --title "$V" --id "$IDC_VIEWLOG_LIST" --index -5)" \
  "1 60000 1000.90 Hrs.| Connection Used :  Work"
t0=$(app_now)
drv select --title "$V" --id "$IDC_VIEWLOG_CONNECTION" --index "$(( $(drv list --title "$V" --id "$IDC_VIEWLOG_CONNECTION" | grep -nxF "Home ISP" | cut -d: -f1) - 1 ))" >/dev/null
need "filtering on Home ISP lists 9,999 sessions" drv text --title "$V" --id "$IDC_VIEWLOG_COUNT" --equals 9999 --timeout-ms 60000
filter_ms=$(( $(app_now) - t0 ))
t0=$(app_now)
total=$(drv text --title "$V" --id "$IDC_VIEWLOG_TOTAL")
echo "      (refilter to 9,999 sessions: $filter_ms ms; a read after the fill: $(( $(app_now) - t0 )) ms)"
check "refilter: within 15 s; 59,994 lines; the dialog answers afterwards" \
  "$(( filter_ms < 15000 )) $(drv list --title "$V" --id "$IDC_VIEWLOG_LIST" --count) $total" "1 59994 999.90 Hrs."
app_screenshot "$APP_ARTIFACTS/view-log-large.png" || echo "note: no screenshot: $(cat "$APP_HOME/import.err")"

touch "$APP_SETUP_DIR/release"
wait "$holder"
check "the other program let go" "$?" 0
dial connect "Home ISP"
need "a session opens: the marker 218 is on disk" app_wait_until 10 app_u8_is "$APP_CONFIG" 134 218
dial disconnect
check_true "the session is recorded beside the 10,000 earlier ones" app_wait_until 20 eval '(( $(in_use) == 10001 ))'
check "no sibling file left; the program runs" "$(find "$APP_INSTALL" -name 'Orvabook_.ovb.*' | wc -l) $(app_running && echo runs)" "0 runs"

app_finish
