#!/usr/bin/env bash
# app_first_run.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR
#
# First run on a machine that has never seen the program: the Welcome dialog,
# then the default configuration, the installed copy, the shortcuts, the
# autostart value, an empty log and the main status dialog, once.
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=app_lib.sh
source "$here/app_lib.sh"
app_setup first-run "$@"

check "no configuration before the first start" "$( [[ -e $APP_CONFIG ]] && echo present || echo absent )" absent

app_start
drv wait-window --title "Welcome to Orvalen" --timeout-ms 30000 >/dev/null \
  || app_abort "the Welcome dialog appears on the first run"
check "Welcome is modal and first: nothing written yet" \
  "$( [[ -e $APP_CONFIG || -e $APP_INSTALL ]] && echo written || echo nothing )" nothing
check "Welcome: its one button is Proceed" \
  "$(drv text --title "Welcome to Orvalen" --id "$IDC_WELCOME_PROCEED")" "&Proceed"
drv click --title "Welcome to Orvalen" --id "$IDC_WELCOME_PROCEED" >/dev/null || app_abort "Proceed can be clicked"
drv wait-gone --title "Welcome to Orvalen" >/dev/null || app_abort "Proceed closes the Welcome dialog"
drv wait-window --title "$APP_MAIN_DIALOG" --timeout-ms 15000 >/dev/null \
  || app_abort "the main status dialog opens after the Welcome dialog"

# The first tick of the dialog (after one second) fills in the clock: by then a
# second dialog, had one been created, would be up too.
drv wait-text --title "$APP_MAIN_DIALOG" --id "$IDC_MAIN_TIME" --contains ":" >/dev/null \
  || app_abort "the main status dialog shows the time"
windows=$(drv windows)
check "exactly one main status dialog" \
  "$(grep -cF "title=\"$APP_MAIN_DIALOG\"" <<<"$windows")" 1
check "the main status dialog is visible" \
  "$(grep -F "title=\"$APP_MAIN_DIALOG\"" <<<"$windows" | grep -o 'visible=[01]')" "visible=1"
check "the main window exists, hidden, titled Orvalen" \
  "$(grep -F 'class="Orvalen"' <<<"$windows" | grep -o 'visible=[01] class="Orvalen" title="[^"]*"')" \
  'visible=0 class="Orvalen" title="Orvalen"'
check "no Welcome left" "$(grep -cF 'title="Welcome to Orvalen"' <<<"$windows")" 0
check "off-line, no connection yet: Configure enabled" \
  "$(drv state --title "$APP_MAIN_DIALOG" --id "$IDC_MAIN_CONFIGURE" | cut -d' ' -f1)" "enabled=1"
check "off-line, no connection yet: no session caption" \
  "$(drv text --title "$APP_MAIN_DIALOG" --id "$IDC_MAIN_FIRST_CAPTION")" ""
check "off-line, no connection yet: the initial status text" \
  "$(drv text --title "$APP_MAIN_DIALOG" --id "$IDC_MAIN_ACCOUNT_STATUS")" \
  "$(printf '\t\t   Status: \n\n        No  Active  Dial-Up  Connections...')"

# The configuration: 6352 bytes of defaults, zero everywhere else.
check "configuration size" "$(app_size "$APP_CONFIG")" 6352
check "configuration marker" "$(app_cstr "$APP_CONFIG" 0 20)" "orvalen_v015"
check "session marker: no session" "$(app_u8 "$APP_CONFIG" 134)" 219
check "alarm intervals (43..45)" "$(app_bytes "$APP_CONFIG" 43 3)" "1 0 2"
check "alarm switches (52..55)" "$(app_bytes "$APP_CONFIG" 52 4)" "0 10 30 30"
check "initial log filter (133)" "$(app_u8 "$APP_CONFIG" 133)" 1
check "run at startup (60)" "$(app_u32 "$APP_CONFIG" 60)" 1
check "show at start (56)" "$(app_u32 "$APP_CONFIG" 56)" 0
check "reserved 1.0 and 1 (20, 24)" "$(app_bytes "$APP_CONFIG" 20 8)" "0 0 128 63 1 0 0 0"
expected_nonzero="0=111 1=114 2=118 3=97 4=108 5=101 6=110 7=95 8=118 9=48 10=49 11=53 \
22=128 23=63 24=1 43=1 45=2 53=10 54=30 55=30 60=1 133=1 134=219"
check "configuration: every other byte is zero" \
  "$(od -A d -t u1 -v -w1 "$APP_CONFIG" | awk 'NF == 2 && $2 != 0 { printf "%s%d=%d", sep, $1, $2; sep = " " }')" \
  "$(tr -s ' ' <<<"$expected_nonzero")"

# The log: a header for two blank records.
check "log size" "$(app_size "$APP_LOG")" 392
check "log header: 2 records, 384 bytes" "$(app_u32 "$APP_LOG" 0) $(app_u32 "$APP_LOG" 4)" "2 384"
check "log records blank" \
  "$(od -A n -t u1 -v -j 8 "$APP_LOG" | tr -s ' \n' '\n' | grep -cv '^0\?$')" 0

# The installed copy.
for file in Orvalen.exe ReadMe.txt OrvalenManual.doc Alarm.wav; do
  check_true "installed: $file, same as on the set-up medium" \
    cmp -s "$APP_SETUP_DIR/$file" "$APP_INSTALL/$file"
done

# The shortcuts: Wine keeps the Start Menu in the user's profile and links
# the Desktop to our scratch $HOME.
shopt -s nullglob
programs=( "$APP_PREFIX"/drive_c/users/*/AppData/Roaming/Microsoft/Windows/"Start Menu"/Programs/Orvalen )
desktops=( "$APP_PREFIX"/drive_c/users/*/Desktop/Orvalen.lnk )
shopt -u nullglob
check "one Start Menu folder Orvalen" "${#programs[@]}" 1
check "the desktop shortcut" "${#desktops[@]}" 1
check "the desktop shortcut lands in the scratch home" \
  "$( [[ -f $APP_HOME/Desktop/Orvalen.lnk ]] && echo yes || echo no )" yes
lnk_target() {  # LNK TARGET-FILE-NAME: the link mentions its target
  [[ -f $1 ]] && LC_ALL=C grep -aqi "$2" "$1"
}
check_true "Start Menu ReadMe.lnk points at ReadMe.txt" lnk_target "${programs[0]:-/none}/ReadMe.lnk" 'ReadMe\.txt'
check_true "Start Menu Manual.lnk points at OrvalenManual.doc" lnk_target "${programs[0]:-/none}/Manual.lnk" 'OrvalenManual\.doc'
check_true "Start Menu Orvalen.lnk points at Orvalen.exe" lnk_target "${programs[0]:-/none}/Orvalen.lnk" 'Orvalen\.exe'
check_true "desktop Orvalen.lnk points at Orvalen.exe" lnk_target "${desktops[0]:-/none}" 'Orvalen\.exe'
check "Start Menu folder holds exactly the three shortcuts" \
  "$(find "${programs[0]:-/nonexistent}" -mindepth 1 -printf "%f\n" 2>/dev/null | sort | tr "\n" " ")" "Manual.lnk Orvalen.lnk ReadMe.lnk "

# The autostart value, as the registry reports it...
run_key='HKLM\Software\Microsoft\Windows\CurrentVersion\Run'
check "autostart value" \
  "$(orv_wine_run -t 60 "$APP_PREFIX" reg.exe query "$run_key" /v Orvalen 2>/dev/null \
      | tr -d '\r' | sed -n 's/^ *Orvalen *\(REG_[A-Z_]*\) *\(.*\)$/\1 \2/p')" \
  'REG_SZ C:\Program Files\Orvalen\Orvalen.exe'

# ... and its length, from the saved registry: stopping the prefix ends the
# program and makes the wineserver write system.reg. Wine keeps the ANSI data
# as one UTF-16 unit per byte and saves a string value that ends in NUL
# quoted, with embedded NULs as \0 and the last NUL implied.
orv_wine_stop "$APP_PREFIX"
reg_length() {
  local line
  line=$(awk '/^\[/ { in_run = ($1 == "[Software\\\\Microsoft\\\\Windows\\\\CurrentVersion\\\\Run]") }
              in_run && /^"Orvalen"=/ { print; exit }' "$APP_PREFIX/system.reg")
  if [[ $line == '"Orvalen"="'* ]]; then
    local data=${line#'"Orvalen"="'}
    data=${data%'"'}
    local escaped_backslash="\\\\" escaped_nul="\\0"   # two characters each in the file
    data=${data//"$escaped_backslash"/B}   # one character of the value
    data=${data//"$escaped_nul"/Z}         # as is an embedded NUL
    echo $(( ${#data} + 1 ))
  else
    echo "unexpected: ${line:-no value}"
  fi
}
check "autostart value data: 101 bytes" "$(reg_length)" 101

app_finish
