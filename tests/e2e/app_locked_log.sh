#!/usr/bin/env bash
# app_locked_log.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR LOG_MAKER_EXE
#
# A log of five sessions held open by another program with read sharing only (as
# a virus scanner or a backup program does) while Orvalen starts: it loads whole
# and nothing is said. The other program lets go, a session is recorded, and the
# log on disk holds the five earlier sessions and the new one.
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=app_lib.sh
source "$here/app_lib.sh"
app_setup locked-log "$@"

for day in 3 4 5 6 7; do
  app_describe record "Home ISP" 2025 1 "$day" 10:00:00 600
done
app_describe account "Home ISP" 3
app_make_files
check "prepared: a log of five sessions" "$(app_u32 "$APP_LOG" 0)" 5

release=$APP_SETUP_DIR/release
rm -f "$release"
: >"$APP_HOME/hold.out"
drv hold-file --path 'C:\Program Files\Orvalen\Orvabook_.ovb' --release-when 'C:\setup\release' \
  >"$APP_HOME/hold.out" 2>&1 &
holder=$!
held() { grep -q held "$APP_HOME/hold.out"; }
app_wait_until 30 held || app_abort "another program holds the log"

app_start_prepared
check "held: no message about the log" "$(drv windows | grep -c 'Orvalen Notification')" 0
check_true "held: the program runs" app_running

touch "$release"
wait "$holder"
check "the other program let go" "$?" 0

dial connect "Home ISP"
app_wait_until 10 app_u8_is "$APP_CONFIG" 134 218 || app_abort "a session opens: the marker 218 is on disk"
dial disconnect
in_use() {  # the records in use on disk
  local count n=0 i
  count=$(app_u32 "$APP_LOG" 0)
  for (( i = 0; i < count; i++ )); do
    [[ $(app_u8 "$APP_LOG" "$(app_record_offset "$i")") == 1 ]] && n=$(( n + 1 ))
  done
  echo "$n"
}
six_in_use() { [[ $(in_use) == 6 ]]; }
check_true "the session is recorded beside the five earlier ones" app_wait_until 20 six_in_use
check "no sibling file left" "$(find "$(dirname "$APP_LOG")" -name 'Orvabook_.ovb.*' | wc -l)" 0
check_true "the program runs" app_running

app_finish
