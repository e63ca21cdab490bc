# shellcheck shell=bash disable=SC2034  # APP_* variables are for the test scripts
# app_lib.sh: shared helpers of the app_* end-to-end tests. Source it from a
# test script, then call app_setup with the script's arguments:
#
#   app_xxx.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR [LOG_MAKER_EXE]
#
# The program is stopped after APP_RUN_LIMIT seconds (default 120).
#
# Each test gets its own fresh prefix WINE_DIR/app-NAME cloned from the template,
# a "set-up medium" C:\setup holding the program, its three companion files and
# the stand-in rasapi32.dll, and stops that prefix's wineserver when it ends.
#
#   app_setup NAME ARGS...          the prefix, the set-up folder, the EXIT trap
#   app_start                       Orvalen.exe from C:\setup in the background
#   app_wait_exit SECS              wait for it to end; prints its exit code
#   app_running                     true while it has not ended
#   app_unix_pid                    the Unix PID of its Wine process
#   app_wine_pid EXE                the Unix PID of a Wine process of the prefix
#   drv ARGS...                     orvalen_driver in the prefix
#   dial ARGS...                    scripts/dialup in the prefix
#   app_u8/app_u32/app_i32 FILE OFF little-endian numbers read with od
#   app_cstr FILE OFF MAX           a NUL-terminated string
#   app_size FILE                   file size in bytes
#   app_wait_until SECS CMD...      poll CMD every 0.1 s until it succeeds
#   check NAME ACTUAL EXPECTED      one check; check_true NAME CMD...
#   app_finish                      summary and exit status
#   app_first_run_through_welcome   start on a fresh prefix, Proceed, main dialog
#   app_through_welcome             the same for a program already started
#   app_wait_online NAME            the main status dialog shows NAME on-line
#   app_decline_account_notice NAME answer "not now" to the account notice
#   app_screenshot FILE             PNG of the prefix's virtual desktop
#
# Prepared files instead of a first run (needs LOG_MAKER_EXE, tests/drivers/log_maker):
#   app_describe FIELD...           one line of the description, fields joined by tabs:
#                                     record NAME YEAR MONTH DAY HH:MM:SS SECONDS [STATUS]
#                                     repeat COUNT NAME YEAR MONTH DAY HH:MM:SS SECONDS
#                                     account NAME KIND [HOURS MONTHLY EXCESS VAT]
#                                     setting FIELD VALUE
#   app_make_files                  writes the configuration (defaults plus the settings
#                                   and configured accounts described) and the log
#   app_start_prepared              starts the program on them: no Welcome; waits for the
#                                   main window and the end of the splash
#   app_open_view_log               tray menu "View Log"; prints the dialog's handle
# Give every connection of a prepared log a configured account: the program asks
# about connections without one at every start.
#   app_field_of FIELD TITLE IDS    enabled/visible/checked of controls: "1 0 1"

set -u
_app_here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=../../scripts/wine-env.sh
source "$_app_here/../../scripts/wine-env.sh"
orv_resource_ids

APP_MAIN_DIALOG="Orvalen - Connections Monitor  V1.5"
APP_CONFIG_REL=drive_c/windows/Orvaconfig.bic
APP_LOG_REL="drive_c/Program Files/Orvalen/Orvabook_.ovb"
APP_INSTALL_REL="drive_c/Program Files/Orvalen"

app_passed=0
app_failed=0
app_started_at=$SECONDS

check() {  # NAME ACTUAL EXPECTED
  if [[ $2 == "$3" ]]; then
    app_passed=$((app_passed + 1))
    echo "ok    $1"
  else
    app_failed=$((app_failed + 1))
    echo "FAIL  $1"
    echo "      expected: $3"
    echo "      actual:   $2"
  fi
}

check_true() {  # NAME CMD...
  local name=$1
  shift
  if "$@"; then
    app_passed=$((app_passed + 1))
    echo "ok    $name"
  else
    app_failed=$((app_failed + 1))
    echo "FAIL  $name"
    echo "      command failed: $*"
  fi
}

# A failed precondition: later checks would only repeat it.
app_abort() {
  app_failed=$((app_failed + 1))
  echo "FAIL  $*"
  echo "aborted after $(( SECONDS - app_started_at )) s; $app_passed passed, $app_failed failed"
  _app_dump_diagnostics
  exit 1
}

app_finish() {
  echo "took $(( SECONDS - app_started_at )) s; $app_passed passed, $app_failed failed"
  (( app_failed == 0 )) || _app_dump_diagnostics
  (( app_failed == 0 ))
}

_app_dump_diagnostics() {
  [[ -n ${APP_PREFIX:-} && -d ${APP_PREFIX:-} ]] || return 0
  if [[ -n ${APP_JOB:-} ]] && app_running; then
    echo "--- top-level windows"
    drv windows 2>&1 | grep -v "message-only" | sed "s/^/    /"
  fi
  if [[ -s $APP_HOME/orvalen.out ]]; then
    echo "--- output of Orvalen.exe"
    sed 's/^/    /' "$APP_HOME/orvalen.out"
  fi
}

app_setup() {  # NAME WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR
  local name=$1
  shift
  (( $# == 6 || $# == 7 )) || { echo "usage: app_$name.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR [LOG_MAKER_EXE]" >&2; exit 2; }
  APP_WINE_DIR=$1 APP_EXE=$2 APP_STANDIN=$3 APP_DRIVER=$4 APP_DIALUP=$5 APP_ARTIFACTS=$6 APP_LOG_MAKER=${7:-}
  APP_PREFIX=$APP_WINE_DIR/app-$name
  APP_HOME=$APP_PREFIX.home
  APP_XVFB_DIR=$APP_WINE_DIR/app-$name.xvfb
  trap _app_cleanup EXIT
  # A GUI program: a display of its own when asked for, else the one the caller
  # has, else the fixture's Xvfb.
  if [[ ${APP_OWN_DISPLAY:-0} == 1 ]]; then
    ORVALEN_XVFB=1 orv_xvfb_ensure "$APP_XVFB_DIR" || exit 1
  elif ! orv_display_ok && ! orv_xvfb_attach "$APP_WINE_DIR"; then
    echo "no display: neither \$DISPLAY nor the Xvfb of the wine_env fixture answers" >&2
    exit 1
  fi
  local tpl
  tpl=$(orv_wine_template "$APP_WINE_DIR") || exit 1
  orv_wine_fresh_prefix "$tpl" "$APP_PREFIX" || exit 1
  APP_CONFIG=$APP_PREFIX/$APP_CONFIG_REL
  APP_LOG=$APP_PREFIX/$APP_LOG_REL
  APP_INSTALL=$APP_PREFIX/$APP_INSTALL_REL
  APP_SETUP_DIR=$APP_PREFIX/drive_c/setup
  APP_RC_FILE=$APP_HOME/orvalen.rc
  mkdir -p "$APP_SETUP_DIR"
  local exe_dir file
  exe_dir=$(dirname "$APP_EXE")
  cp -f "$APP_EXE" "$APP_SETUP_DIR/Orvalen.exe" || exit 1
  for file in ReadMe.txt OrvalenManual.doc Alarm.wav; do
    cp -f "$exe_dir/$file" "$APP_SETUP_DIR/$file" || exit 1
  done
  orv_wine_install_standin "$APP_STANDIN" "$APP_SETUP_DIR" || exit 1
  # Off-line until a test dials; the program then sees "no connection at all".
  dial none || exit 1
  # Start the wineserver now, so that the first start of the program is not
  # charged with it.
  orv_wine_start "$APP_PREFIX" || exit 1
  echo "prefix: $APP_PREFIX (ready after $(( SECONDS - app_started_at )) s)"
}

drv() {
  LANG=C.UTF-8 orv_wine_run -t 60 "$APP_PREFIX" "$APP_DRIVER" "$@"
}

dial() {
  "$APP_DIALUP" --prefix "$APP_PREFIX" "$@"
}

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

app_running() {
  [[ ! -f $APP_RC_FILE ]]
}

app_wait_exit() {  # SECS: prints the exit code; 1 when still running
  app_wait_until "$1" test -f "$APP_RC_FILE" || return 1
  cat "$APP_RC_FILE"
}

# The Wine process of Orvalen.exe in our prefix (Wine names it after the exe).
app_unix_pid() { app_wine_pid Orvalen.exe; }

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
app_bytes() { od -A n -t u1 -j "$2" -N "$3" "$1" 2>/dev/null | tr -s ' \n' ' ' | sed 's/^ //; s/ $//'; }
app_cstr() { tail -c +$(( $2 + 1 )) "$1" 2>/dev/null | head -c "$3" | tr '\0' '\n' | head -n 1; }
app_size() { stat -c %s "$1" 2>/dev/null || echo missing; }

app_u8_is() {  # FILE OFF VALUE
  [[ "$(app_u8 "$1" "$2")" == "$3" ]]
}

# 0..86399 from three u32 at OFF (hour, minute, second).
app_seconds_of_day() {
  local h m s
  h=$(app_u32 "$1" "$2") m=$(app_u32 "$1" $(( $2 + 4 ))) s=$(app_u32 "$1" $(( $2 + 8 )))
  echo $(( h * 3600 + m * 60 + s ))
}

app_hms() {  # FILE OFF: "h:m:s"
  echo "$(app_u32 "$1" "$2"):$(app_u32 "$1" $(( $2 + 4 ))):$(app_u32 "$1" $(( $2 + 8 )))"
}

# Log record I starts at 8 + 192 * I.
app_record_offset() { echo $(( 8 + 192 * $1 )); }

app_now() { date +%s.%N; }
app_elapsed_ms() {  # FROM TO (app_now stamps): milliseconds
  local from=${1%%.*} to=${2%%.*} fn=${1#*.} tn=${2#*.}
  echo $(( (to - from) * 1000 + 10#${tn:0:3} - 10#${fn:0:3} ))
}
app_elapsed() { echo $(( $(app_elapsed_ms "$1" "$2") / 1000 )); }  # whole seconds, rounded down

# The (Windows) PID of the first top-level window titled TITLE; empty if none.
app_window_pid() {  # TITLE
  drv windows | grep -F "title=\"$1\"" | head -n 1 | sed -n 's/.* pid=\([0-9]*\) .*/\1/p'
}

# First run on a fresh prefix: the Welcome dialog comes before anything is
# written; Proceed creates the configuration and opens the main status dialog.
app_first_run_through_welcome() {
  app_start
  app_through_welcome
}

app_through_welcome() {
  drv wait-window --title "Welcome to Orvalen" --timeout-ms 30000 >/dev/null \
    || app_abort "the Welcome dialog appears on the first run"
  drv click --title "Welcome to Orvalen" --id "$IDC_WELCOME_PROCEED" >/dev/null \
    || app_abort "Proceed can be clicked"
  drv wait-gone --title "Welcome to Orvalen" >/dev/null \
    || app_abort "Proceed closes the Welcome dialog"
  APP_DIALOG_HWND=$(drv wait-window --title "$APP_MAIN_DIALOG" --timeout-ms 15000) \
    || app_abort "the main status dialog opens after the Welcome dialog"
}

# While the connection is up, the main status dialog shows it.
app_wait_online() {  # NAME
  drv wait-text --title "$APP_MAIN_DIALOG" --id "$IDC_MAIN_FIRST_CAPTION" --equals "You've Been Logged on since:" >/dev/null \
    && drv wait-text --title "$APP_MAIN_DIALOG" --id "$IDC_MAIN_CONNECTION_NAME" --equals "$1" >/dev/null
}

# Once a session of a connection without account details is recorded, the
# program asks for them: a notice, then the account dialog for that connection.
# Answer "not now": OK, Cancel, then OK on the "not properly set up" box.
# True once all three have been answered; false if one of them did not come.
app_decline_account_notice() {  # NAME
  drv answer-box --title "Orvalen Notification..." --contains "(- $1 -)" --button ok --timeout-ms 15000 \
    >/dev/null || return 1
  drv click --title "Orvalen....Configure Account Details For --$1" --id "$IDC_ACCOUNTS_CANCEL" >/dev/null || return 1
  drv answer-box --title "Orvalen Notification" --contains "not properly set up" --button ok >/dev/null
}

# One field (enabled, visible or checked) of several controls of a window, in one
# driver call: IDS separated by commas, values by blanks; "missing" for an id
# the window does not have.
app_field_of() {  # FIELD TITLE IDS
  drv states --title "$2" --ids "$3" \
    | sed -n "s/^[0-9-]* missing$/missing/p; s/.*$1=\([0-9]*\).*/\1/p" | tr '\n' ' ' | sed 's/ $//'
}

# The Unix PID of a Wine process of our prefix, by its exe name.
app_wine_pid() {  # EXE-NAME
  local dir
  for dir in /proc/[0-9]*; do
    [[ "$(cat "$dir/comm" 2>/dev/null)" == "$1" ]] || continue
    if tr '\0' '\n' <"$dir/environ" 2>/dev/null | grep -qxF "WINEPREFIX=$APP_PREFIX"; then
      printf '%s\n' "${dir#/proc/}"
      return 0
    fi
  done
  return 1
}

# A screenshot of the screen. Tests that run side by side share the fixture's
# display, each prefix with its own desktop window at the same place, and they
# raise them in turn: a test that takes one asks app_setup for a display of
# its own (APP_OWN_DISPLAY=1).
app_screenshot() {  # FILE
  mkdir -p "$(dirname "$1")" && rm -f "$1"
  timeout 30 import -window root "$1" 2>"$APP_HOME/import.err"
}

APP_VIEW_LOG="View Log File..."
APP_DESCRIPTION_REL=drive_c/setup/log-description.txt

app_describe() {  # FIELD...
  local IFS=$'\t'
  mkdir -p "$(dirname "$APP_PREFIX/$APP_DESCRIPTION_REL")"
  printf '%s\n' "$*" >>"$APP_PREFIX/$APP_DESCRIPTION_REL"
}

app_make_files() {
  [[ -n $APP_LOG_MAKER ]] || app_abort "app_make_files needs the log maker (7th argument)"
  orv_wine_run -t 60 "$APP_PREFIX" "$APP_LOG_MAKER" 'C:\setup\log-description.txt' >"$APP_HOME/log-maker.out" 2>&1 \
    || { cat "$APP_HOME/log-maker.out"; app_abort "the log maker writes the prepared files"; }
}

app_start_prepared() {
  app_start
  drv wait-window --class Orvalen --any-visibility --timeout-ms 30000 >/dev/null \
    || app_abort "the program starts on the prepared files"
  # The splash is a caption-less dialog; the tray menu works once it has gone.
  drv wait-gone --class "#32770" --title "" --timeout-ms 15000 >/dev/null \
    || app_abort "the splash closes"
}

app_open_view_log() {
  drv command --class Orvalen --id "$IDM_TRAY_VIEW_LOG" >/dev/null || return 1
  drv wait-window --title "$APP_VIEW_LOG" --timeout-ms 30000
}

_app_cleanup() {
  [[ -n ${APP_PREFIX:-} ]] && orv_wine_stop "$APP_PREFIX"
  [[ ${APP_OWN_DISPLAY:-0} == 1 ]] && orv_xvfb_stop "$APP_XVFB_DIR"
  return 0
}
