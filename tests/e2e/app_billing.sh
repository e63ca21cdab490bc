#!/usr/bin/env bash
# app_billing.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR LOG_MAKER_EXE
#
# A usage warning set low (1 % of a one-hour card: 36 s) is crossed during a
# session: its notice appears within a minute, once, and its mark is saved. Then
# View Log's Export writes the file the user names with the sessions its filter
# shows. (The figures, texts and bytes are billing_test's, warning_test's and
# export_test's matter.)
# shellcheck disable=SC2016  # conditions for eval are single-quoted on purpose
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=app_lib.sh
source "$here/app_lib.sh"
APP_RUN_LIMIT=300
app_setup billing "$@"

W="Orvalen Usage Warning"
year=$(date +%Y) month=$(date +%-m)
app_describe record "Work" "$year" "$month" 2 09:00:00 1800
app_describe record "Work" "$year" "$month" 3 09:00:00 65
app_describe account "Card ISP" 1 1 0 0 0 1
app_describe account "Work" 3
app_make_files
app_start_prepared

# --- The warning: a new card with nothing logged, so 1 % is crossed 36 s into the session.
dial connect "Card ISP"
connected=$SECONDS
need "the warning appears within a minute" drv wait-window --title "$W" --timeout-ms 60000
check "within a minute of connecting" "$(( SECONDS - connected <= 60 ))" 1
check "it names the connection and the share" \
  "$(drv text --title "$W" --id "$IDC_NOTICE_MESSAGE" | sed -n 2p)" "Card ISP: 1 % of the card used"
check "its mark is saved: the card's share, not yet the full card" \
  "$(app_u32 "$APP_CONFIG" $(( 136 + 72 ))) $(app_u32 "$APP_CONFIG" $(( 136 + 76 )))" "1 0"
drv click --title "$W" --id "$IDC_NOTICE_CLOSE" >/dev/null
see "Close ends the notice" wait-window --gone --title "$W"
check_true "once: no second notice in the next 30 s" eval '! drv wait-window --title "$W" --timeout-ms 30000 >/dev/null 2>&1'
dial disconnect

# --- The export: View Log on Work, a file named in the save dialog, the two sessions in it.
need "View Log opens" app_open_view_log
i=$(drv list --title "$APP_VIEW_LOG" --id "$IDC_VIEWLOG_CONNECTION" | grep -nxF "Work" | cut -d: -f1)
drv select --title "$APP_VIEW_LOG" --id "$IDC_VIEWLOG_CONNECTION" --index $(( i - 1 )) >/dev/null
see "filtered on Work" text --title "$APP_VIEW_LOG" --id "$IDC_VIEWLOG_COUNT" --equals 2 --timeout-ms 30000
drv click --title "$APP_VIEW_LOG" --id "$IDC_VIEWLOG_EXPORT" >/dev/null
need "the save dialog opens" drv wait-window --title "Export Log" --timeout-ms 30000
check "it offers a dated name" "$(drv text --title "Export Log" --id "$IDC_SAVE_FILE_NAME")" "Orvalen log $(date +%F).csv"
need "a name can be typed" drv set-text --title "Export Log" --id "$IDC_SAVE_FILE_NAME" --text 'C:\work.csv'
need "Save can be clicked" drv click --title "Export Log" --id "$IDOK"
csv=$APP_PREFIX/drive_c/work.csv
check_true "the file is written" app_wait_until 20 test -s "$csv"
check "the header and Work's two sessions, each line ending in CR LF" "$(cut -d, -f1,7 "$csv" | tr '\n' '|') $(grep -c $'\r$' "$csv")" \
  "Connection,Seconds|Work,1800|Work,65| 3"
check_true "the program still runs" app_running

app_finish
