# shellcheck shell=bash disable=SC2034  # APP_* variables are for the test scripts
# app_lib.sh: shared helpers of the app_* end-to-end tests (and scripts/smoke-i686.sh).
# Source it, then call app_setup NAME with the script's arguments:
#
#   app_xxx.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR [LOG_MAKER_EXE]
#
# Each test gets its own fresh prefix WINE_DIR/app-NAME cloned from the template,
# a "set-up medium" C:\setup holding the program, its three companion files and
# the stand-in rasapi32.dll, and stops that prefix's wineserver when it ends.
#
#   app_start                       Orvalen.exe from C:\setup in the background,
#                                   stopped after APP_RUN_LIMIT seconds (default 120)
#   app_wait_exit SECS              its exit code once it has ended; app_running
#   app_wine_pid EXE                the Unix PIDs of the Wine processes EXE of the prefix
#   drv ARGS...                     orvalen_driver (tests/drivers/win_driver) in the prefix
#   dial ARGS...                    scripts/dialup in the prefix
#   app_u8/app_u32/app_i32/app_cstr FILE OFF [MAX]   numbers and strings of a file
#   app_wait_until SECS CMD...      poll CMD every 0.1 s until it succeeds
#   check NAME ACTUAL EXPECTED      one check; check_true NAME CMD...: CMD succeeds;
#   see NAME DRIVER-ARGS...         a driver command (wait-window, text --equals,
#                                   state --enabled ...) succeeds: it waits, it checks
#   need WHAT CMD...                CMD must succeed, or the test stops (app_abort)
#   app_through_welcome             Proceed on the first run's Welcome, main dialog
#   app_wait_online NAME            the main status dialog shows NAME on-line
#   app_decline_account_notice NAME answer "not now" to the account notice
#   app_field_of FIELD TITLE IDS    enabled/visible/checked of controls: "1 0 1"
#   app_describe FIELD...           a line of the description test_log_maker turns into
#                                   the configuration and log (see tests/drivers/log_maker)
#   app_make_files, app_start_prepared, app_open_view_log
# Give every connection of a prepared log a configured account: the program asks
# about connections without one at every start.
set -u
_app_here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=../../scripts/wine-env.sh
source "$_app_here/../../scripts/wine-env.sh"
orv_resource_ids

APP_MAIN_DIALOG="Orvalen - Connections Monitor  V1.5"
APP_VIEW_LOG="View Log File..."
app_passed=0
app_failed=0
app_started_at=$SECONDS

check() {  # NAME ACTUAL EXPECTED
  if [[ $2 == "$3" ]]; then
    app_passed=$((app_passed + 1))
    echo "ok    $1"
  else
    app_failed=$((app_failed + 1))
    printf 'FAIL  %s\n      expected: %s\n      actual:   %s\n' "$1" "$3" "$2"
  fi
}
check_true() {  # NAME CMD...
  local name=$1
  shift
  if "$@"; then check "$name" ok ok; else check "$name" "command failed: $*" "success"; fi
}
see() { local name=$1; shift; check_true "$name" _app_quiet drv "$@"; }
_app_quiet() { "$@" >/dev/null; }
need() { local what=$1; shift; "$@" >/dev/null || app_abort "$what"; }

# A failed precondition: later checks would only repeat it.
app_abort() {
  app_failed=$((app_failed + 1))
  echo "FAIL  $*"
  app_finish
  exit 1
}

app_finish() {
  echo "took $(( SECONDS - app_started_at )) s; $app_passed passed, $app_failed failed"
  if (( app_failed > 0 )) && [[ -n ${APP_PREFIX:-} && -d ${APP_PREFIX:-} ]]; then
    ! app_running || { echo "--- top-level windows"; drv windows 2>&1 | grep -v "message-only" | sed "s/^/    /"; }
    [[ ! -s $APP_HOME/orvalen.out ]] || { echo "--- output of Orvalen.exe"; sed 's/^/    /' "$APP_HOME/orvalen.out"; }
  fi
  (( app_failed == 0 ))
}

app_setup() {  # NAME WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR [LOG_MAKER_EXE]
  local name=$1 file
  shift
  (( $# == 6 || $# == 7 )) || { echo "usage: app_$name.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR [LOG_MAKER_EXE]" >&2; exit 2; }
  APP_WINE_DIR=$1 APP_EXE=$2 APP_DRIVER=$4 APP_DIALUP=$5 APP_ARTIFACTS=$6 APP_LOG_MAKER=${7:-}
  APP_PREFIX=$APP_WINE_DIR/app-$name
  APP_HOME=$APP_PREFIX.home
  APP_XVFB_DIR=$APP_WINE_DIR/app-$name.xvfb
  trap _app_cleanup EXIT
  # A GUI program: a display of its own when asked for (a test that takes a
  # screenshot: tests side by side raise their desktops in turn), else the one
  # the caller has, else the fixture's Xvfb.
  if [[ ${APP_OWN_DISPLAY:-0} == 1 ]]; then
    ORVALEN_XVFB=1 orv_xvfb_ensure "$APP_XVFB_DIR" || exit 1
  elif ! orv_display_ok && ! orv_xvfb_attach "$APP_WINE_DIR"; then
    echo "no display: neither \$DISPLAY nor the Xvfb of the wine_env fixture answers" >&2
    exit 1
  fi
  orv_wine_fresh_prefix "$(orv_wine_template "$APP_WINE_DIR")" "$APP_PREFIX" || exit 1
  APP_CONFIG=$APP_PREFIX/drive_c/windows/Orvaconfig.bic
  APP_INSTALL="$APP_PREFIX/drive_c/Program Files/Orvalen"
  APP_LOG=$APP_INSTALL/Orvabook_.ovb
  APP_SETUP_DIR=$APP_PREFIX/drive_c/setup
  APP_RC_FILE=$APP_HOME/orvalen.rc
  mkdir -p "$APP_SETUP_DIR"
  cp -f "$APP_EXE" "$APP_SETUP_DIR/Orvalen.exe" || exit 1
  for file in ReadMe.txt OrvalenManual.doc Alarm.wav; do
    cp -f "$(dirname "$APP_EXE")/$file" "$APP_SETUP_DIR/$file" || exit 1
  done
  orv_wine_install_standin "$3" "$APP_SETUP_DIR" || exit 1
  # Off-line until a test dials; the wineserver started now, not with the program.
  dial none && orv_wine_start "$APP_PREFIX" || exit 1
  echo "prefix: $APP_PREFIX (ready after $(( SECONDS - app_started_at )) s)"
}

drv() { LANG=C.UTF-8 orv_wine_run -t 60 "$APP_PREFIX" "$APP_DRIVER" "$@"; }
dial() { "$APP_DIALUP" --prefix "$APP_PREFIX" "$@"; }

# The program runs from the set-up folder, as from a floppy: it installs itself
# from its current directory. Its output goes to a file, not a pipe, so that the
# exit is seen at once; the exit code lands in APP_RC_FILE.
app_start() {
  rm -f "$APP_RC_FILE"
  (
    cd "$APP_SETUP_DIR" || exit 1
    rc=0
    orv_wine_run -t "${APP_RUN_LIMIT:-120}" "$APP_PREFIX" ./Orvalen.exe >>"$APP_HOME/orvalen.out" 2>&1 || rc=$?
    printf '%s\n' "$rc" >"$APP_RC_FILE.tmp"
    mv -f "$APP_RC_FILE.tmp" "$APP_RC_FILE"
  ) </dev/null &
  APP_JOB=$!
}
app_running() { [[ ! -f $APP_RC_FILE ]]; }
app_wait_exit() { app_wait_until "$1" test -f "$APP_RC_FILE" && cat "$APP_RC_FILE"; }

app_wait_until() {  # SECS CMD...: true once CMD succeeds, false after SECS
  local limit=$(( $1 * 10 )) i
  shift
  for (( i = 0; i < limit; i++ )); do
    "$@" && return 0
    sleep 0.1
  done
  "$@"
}

app_u8() { od -A n -t u1 -j "$2" -N 1 "$1" 2>/dev/null | tr -d ' \n'; }
app_u32() { od -A n -t u4 -j "$2" -N 4 "$1" 2>/dev/null | tr -d ' \n'; }
app_i32() { od -A n -t d4 -j "$2" -N 4 "$1" 2>/dev/null | tr -d ' \n'; }
app_cstr() { tail -c +$(( $2 + 1 )) "$1" 2>/dev/null | head -c "$3" | tr '\0' '\n' | head -n 1; }
app_size() { stat -c %s "$1" 2>/dev/null || echo missing; }
app_u8_is() { [[ "$(app_u8 "$1" "$2")" == "$3" ]]; }  # FILE OFF VALUE
app_record_offset() { echo $(( 8 + 192 * $1 )); }  # log record I
app_now() { date +%s%3N; }  # milliseconds
# 0..86399 from three u32 at OFF (hour, minute, second).
app_seconds_of_day() { echo $(( $(app_u32 "$1" "$2") * 3600 + $(app_u32 "$1" $(( $2 + 4 ))) * 60 + $(app_u32 "$1" $(( $2 + 8 ))) )); }

# The Unix PIDs of the Wine processes of our prefix with this exe name; false if none.
app_wine_pid() {  # EXE-NAME
  local dir found=1
  for dir in /proc/[0-9]*; do
    [[ "$(cat "$dir/comm" 2>/dev/null)" == "$1" ]] || continue
    tr '\0' '\n' <"$dir/environ" 2>/dev/null | grep -qxF "WINEPREFIX=$APP_PREFIX" && echo "${dir#/proc/}" && found=0
  done
  return $found
}

# The first run's Welcome dialog comes before anything is written; Proceed creates
# the configuration and opens the main status dialog.
app_through_welcome() {
  need "the Welcome dialog appears on the first run" drv wait-window --title "Welcome to Orvalen" --timeout-ms 30000
  need "Proceed can be clicked" drv click --title "Welcome to Orvalen" --id "$IDC_WELCOME_PROCEED"
  need "the main status dialog opens after the Welcome dialog" drv wait-window --title "$APP_MAIN_DIALOG" --timeout-ms 15000
}

app_wait_online() {  # NAME
  drv text --title "$APP_MAIN_DIALOG" --ids "$IDC_MAIN_FIRST_CAPTION,$IDC_MAIN_CONNECTION_NAME" \
    --equals "You've Been Logged on since:|$1" >/dev/null
}

# Once a session of a connection without account details is recorded (and at a
# start while there is one), the program asks for them: a notice, then the
# account dialog. "Not now": OK, Cancel, then OK on the "not properly set up" box.
app_decline_account_notice() {  # NAME
  drv answer-box --title "Orvalen Notification..." --contains "(- $1 -)" --button ok --timeout-ms 15000 >/dev/null &&
    drv click --title "Orvalen....Configure Account Details For --$1" --id "$IDC_ACCOUNTS_CANCEL" >/dev/null &&
    drv answer-box --title "Orvalen Notification" --contains "not properly set up" --button ok >/dev/null
}

# One field (enabled, visible or checked) of several controls, in one driver call:
# IDS separated by commas, values by blanks; "missing" for an id the window lacks.
app_field_of() {  # FIELD TITLE IDS
  drv state --title "$2" --ids "$3" | sed -n "s/^[0-9-]* missing$/missing/p; s/.*$1=\([0-9]*\).*/\1/p" | tr '\n' ' ' | sed 's/ $//'
}

app_screenshot() {  # FILE
  mkdir -p "$(dirname "$1")" && rm -f "$1"
  timeout 30 import -window root "$1" 2>"$APP_HOME/import.err"
}

app_describe() {  # FIELD...
  local IFS=$'\t'
  printf '%s\n' "$*" >>"$APP_SETUP_DIR/log-description.txt"
}
app_make_files() {
  orv_wine_run -t 60 "$APP_PREFIX" "$APP_LOG_MAKER" 'C:\setup\log-description.txt' >"$APP_HOME/log-maker.out" 2>&1 \
    || { cat "$APP_HOME/log-maker.out"; app_abort "the log maker writes the prepared files"; }
}
# No Welcome on prepared files; the tray menu works once the splash (a
# caption-less dialog) has gone.
app_start_prepared() {
  app_start
  need "the program starts on the prepared files" drv wait-window --class Orvalen --any-visibility --timeout-ms 30000
  need "the splash closes" drv wait-window --gone --class "#32770" --title "" --timeout-ms 15000
}
app_open_view_log() {
  drv command --class Orvalen --id "$IDM_TRAY_VIEW_LOG" >/dev/null && drv wait-window --title "$APP_VIEW_LOG" --timeout-ms 30000
}

_app_cleanup() {
  [[ -n ${APP_PREFIX:-} ]] && orv_wine_stop "$APP_PREFIX"
  [[ ${APP_OWN_DISPLAY:-0} == 1 ]] && orv_xvfb_stop "$APP_XVFB_DIR"
  return 0
}
