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

# The files: their bytes are the unit tests' business; here, that they are there.
check "configuration: size and marker" "$(app_size "$APP_CONFIG") $(app_cstr "$APP_CONFIG" 0 20)" "6352 orvalen_v015"
check "log: two blank records" "$(app_size "$APP_LOG")" 392

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

# The autostart value (its 101 bytes are checked by the unit tests under Wine).
check "autostart value" \
  "$(orv_wine_run -t 60 "$APP_PREFIX" reg.exe query 'HKLM\Software\Microsoft\Windows\CurrentVersion\Run' /v Orvalen 2>/dev/null \
      | tr -d '\r' | sed -n 's/^ *Orvalen *\(REG_[A-Z_]*\) *\(.*\)$/\1 \2/p')" \
  'REG_SZ C:\Program Files\Orvalen\Orvalen.exe'

app_finish
