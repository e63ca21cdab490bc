#!/usr/bin/env bash
# Builds Orvalen and runs it under Wine.
#
# The product is the i686 build (build/i686/app/Orvalen.exe); this machine runs
# 64-bit code only, so the same source built for x86_64 is what runs here, under
# wine64 in the prefix build/wine/run-prefix, with our stand-in dial-up service.
#
# With a display the program stays up until you quit it from its tray menu; switch
# the dial-up connection from another terminal with scripts/dialup. Without one, an
# Xvfb is started, one session is played and a screenshot of every dialog is
# saved in build/screenshots/ (about two minutes: the alarm is set to a minute).
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

"$root/scripts/install-deps.sh"

# shellcheck source=configure.sh
source "$root/scripts/configure.sh"
for arch in i686 x86_64; do
  orv_configure "$arch" "$(orv_toolchain "$arch")"
  echo "== build $arch"
  cmake --build "$root/build/$arch" -j2 --target Orvalen rasapi32_standin orvalen_driver >/dev/null
done

# shellcheck source=wine-env.sh
source "$root/scripts/wine-env.sh"
orv_resource_ids
wine_dir=$root/build/wine
prefix=$wine_dir/run-prefix
headless=0
if [[ ${ORVALEN_XVFB:-} == 1 ]] || ! orv_display_ok; then headless=1; fi
orv_xvfb_ensure "$wine_dir"
tpl=$(orv_wine_template "$wine_dir")
# Without a display the scripted run starts from a fresh prefix, so that it shows
# the first run's Welcome too.
if (( headless == 1 )) || ! orv_wine_prefix_current "$prefix"; then orv_wine_fresh_prefix "$tpl" "$prefix"; fi

# The program installs itself from the folder it is started in: stage it with its
# files and the stand-in rasapi32.dll (also beside the installed copy, which the
# autostart value points to).
bin=$root/build/x86_64
stage=$root/build/run
mkdir -p "$stage" "$prefix/drive_c/Program Files/Orvalen"
cp -f "$bin/app/Orvalen.exe" "$bin/app/ReadMe.txt" "$bin/app/OrvalenManual.doc" "$bin/app/Alarm.wav" "$stage/"
orv_wine_install_standin "$bin/tests/drivers/rasapi32.dll" "$stage"
orv_wine_install_standin "$bin/tests/drivers/rasapi32.dll" "$prefix/drive_c/Program Files/Orvalen"

dialup() { "$root/scripts/dialup" --prefix "$prefix" "$@" >/dev/null; }
driver() { orv_wine_run -t 60 "$prefix" "$bin/tests/drivers/orvalen_driver.exe" "$@"; }

if (( headless == 0 )); then
  cat <<EOT
Orvalen is starting in Wine's virtual desktop (display $DISPLAY); its icon is in the
tray of that desktop. Right-click it for the menu, double-click it for the main
status dialog. Switch the stand-in dial-up connection from another terminal:
  scripts/dialup connect "Home ISP"    scripts/dialup disconnect
Quit from the tray menu (Exit).
EOT
  cd "$stage"
  exec_status=0
  orv_wine_run -t 604800 "$prefix" "$stage/Orvalen.exe" || exec_status=$?
  orv_wine_stop "$prefix"
  exit "$exec_status"
fi

shots=$root/build/screenshots
rm -rf "$shots"
mkdir -p "$shots"
dialog="Orvalen - Connections Monitor  V1.5"
sheet="Configure Orvalen"
shot() { import -window root "$shots/$1.png" && echo "screenshot: build/screenshots/$1.png"; }
# Waits for a window and takes its picture; the rest of the desktop is kept, so
# that a dialog's owner shows behind it.
shot_of() {  # NAME TITLE [TIMEOUT-MS, at most 60000]
  driver wait-window --title "$2" --timeout-ms "${3:-20000}" >/dev/null && sleep 0.5 && shot "$1"
}
page() {  # NAME INDEX A-CONTROL-OF-THAT-PAGE
  driver post --title "$sheet" --msg "$PSM_SETCURSEL" --wparam "$2" >/dev/null
  driver state --title "$sheet" --id "$3" --visible 1 >/dev/null && sleep 0.5 && shot "$1"
}

echo "== no display: one scripted session under Xvfb ($DISPLAY), with a picture of every dialog"
dialup none
(cd "$stage" && orv_wine_run -t 600 "$prefix" "$stage/Orvalen.exe" >"$root/build/run.log" 2>&1) &
program=$!
trap 'orv_wine_stop "$prefix"; orv_xvfb_stop "$wine_dir"' EXIT

# A first run greets with the Welcome dialog and then shows the main dialog;
# later runs start in the tray, so ask for the dialog as a double click would.
if driver wait-window --class "#32770" --title "" --timeout-ms 30000 >/dev/null 2>&1; then shot splash; fi
driver wait-window --class Orvalen --any-visibility --timeout-ms 30000 >/dev/null
if driver wait-window --title "Welcome to Orvalen" --timeout-ms 3000 >/dev/null 2>&1; then
  sleep 0.5
  shot welcome
  driver click --title "Welcome to Orvalen" --id "$IDC_WELCOME_PROCEED" >/dev/null
fi
if ! driver wait-window --title "$dialog" --timeout-ms 3000 >/dev/null 2>&1; then
  driver post --class Orvalen --msg "$TRAY_MESSAGE" --lparam WM_LBUTTONDBLCLK >/dev/null
  driver wait-window --title "$dialog" --timeout-ms 10000 >/dev/null
fi
driver text --title "$dialog" --id "$IDC_MAIN_TIME" --contains ":" --timeout-ms 5000 >/dev/null
shot main-dialog-before

driver click --title "$dialog" --id "$IDC_MAIN_ABOUT" >/dev/null
shot_of about "About Orvalen "
driver click --title "About Orvalen " --id "$IDC_ABOUT_CLOSE" >/dev/null
driver wait-window --gone --title "About Orvalen " >/dev/null

# The settings sheet, each page; the alarm is set to remind every minute.
driver click --title "$dialog" --id "$IDC_MAIN_CONFIGURE" >/dev/null
shot_of settings-general "$sheet"
page settings-accounts 1 "$IDC_ACCOUNTS_CONNECTION"
page settings-log 2 "$IDC_LOGPAGE_SHOW_ALL"
page settings-alarm-off 3 "$IDC_ALARM_OFF"
driver click --title "$sheet" --id "$IDC_ALARM_ON" >/dev/null
driver set-text --title "$sheet" --id "$IDC_ALARM_REPEAT_HOURS" --text 0 >/dev/null
driver set-text --title "$sheet" --id "$IDC_ALARM_REPEAT_MINUTES" --text 1 >/dev/null
driver check --title "$sheet" --id "$IDC_ALARM_BOX_ONLY" --value 1 >/dev/null
sleep 0.5
shot settings-alarm-on
driver click --title "$sheet" --id "$IDOK" >/dev/null
driver wait-window --gone --title "$sheet" >/dev/null

dialup connect "Home ISP"
driver text --title "$dialog" --id "$IDC_MAIN_FIRST_CAPTION" --equals "You've Been Logged on since:" --timeout-ms 10000 >/dev/null
sleep 3
driver text --title "$dialog" --id "$IDC_MAIN_SECOND_VALUE" --contains "Min" --timeout-ms 5000 >/dev/null
shot main-dialog-online
echo "on-line for: $(driver text --title "$dialog" --id "$IDC_MAIN_SECOND_VALUE")"
echo "waiting for the alarm, set to every minute"
# One driver call may run 60 s at most: two looks.
driver wait-window --title "Orvalen Notification Alarm" --timeout-ms 45000 >/dev/null 2>&1 || true
shot_of alarm-notice "Orvalen Notification Alarm" 40000
driver click --title "Orvalen Notification Alarm" --id "$IDC_NOTICE_CLOSE" >/dev/null || true

dialup disconnect
driver text --title "$dialog" --id "$IDC_MAIN_FIRST_CAPTION" --equals "Your Last Logon was at :" --timeout-ms 10000 >/dev/null
# A connection without an account: the notice, then its account dialog.
shot_of account-notice "Orvalen Notification..."
driver answer-box --title "Orvalen Notification..." --button ok >/dev/null
shot_of account-dialog "Orvalen....Configure Account Details For --Home ISP"
driver click --title "Orvalen....Configure Account Details For --Home ISP" --id "$IDC_ACCOUNTS_CANCEL" >/dev/null
shot_of account-not-set-up "Orvalen Notification"
driver answer-box --title "Orvalen Notification" --button ok >/dev/null
driver text --title "$dialog" --id "$IDC_MAIN_PREVIOUS_SESSION" --contains "" --timeout-ms 3000 >/dev/null || true
sleep 1.5
shot main-dialog-after
echo "previous session:"
driver list --title "$dialog" --id "$IDC_MAIN_PREVIOUS_SESSION" | sed 's/^/  /'

driver click --title "$dialog" --id "$IDC_MAIN_VIEW_LOG" >/dev/null
shot_of view-log "View Log File..."
driver click --title "View Log File..." --id "$IDC_VIEWLOG_MANAGE" >/dev/null
shot_of manage-log "Manage Log File"
driver post --title "Manage Log File" --msg WM_CLOSE >/dev/null
driver wait-window --gone --title "Manage Log File" >/dev/null
driver click --title "View Log File..." --id "$IDC_VIEWLOG_CLOSE" >/dev/null

# Billing: a period from the 14th and low warnings on Home ISP, a session that
# brings the warning, View Log's period line and its export dialog.
driver click --title "$dialog" --id "$IDC_MAIN_CONFIGURE" >/dev/null
driver wait-window --title "$sheet" >/dev/null
driver post --title "$sheet" --msg "$PSM_SETCURSEL" --wparam 1 >/dev/null
item=$(driver list --title "$sheet" --id "$IDC_ACCOUNTS_CONNECTION" | grep -nxF "Home ISP" | cut -d: -f1)
driver select --title "$sheet" --id "$IDC_ACCOUNTS_CONNECTION" --index $(( ${item:-1} - 1 )) >/dev/null
driver check --title "$sheet" --id "$IDC_ACCOUNTS_LIMITED" --value 1 >/dev/null
for field in MONTHLY_CHARGE:20 BASIC_HOURS:1 EXCESS_PER_MINUTE:0.05 VAT:5 PERIOD_DAY:14 WARN_PERCENT:1 WARN_COST:25; do
  id_name=IDC_ACCOUNTS_${field%%:*}
  driver set-text --title "$sheet" --id "${!id_name}" --text "${field#*:}" >/dev/null
done
sleep 0.5
shot settings-accounts-billing
driver click --title "$sheet" --id "$IDOK" >/dev/null
driver wait-window --gone --title "$sheet" >/dev/null
dialup connect "Home ISP"
shot_of usage-warning "Orvalen Usage Warning" 30000
driver click --title "Orvalen Usage Warning" --id "$IDC_NOTICE_CLOSE" >/dev/null || true
dialup disconnect
driver text --title "$dialog" --id "$IDC_MAIN_FIRST_CAPTION" --equals "Your Last Logon was at :" --timeout-ms 10000 >/dev/null
driver click --title "$dialog" --id "$IDC_MAIN_VIEW_LOG" >/dev/null
driver wait-window --title "View Log File..." >/dev/null
item=$(driver list --title "View Log File..." --id "$IDC_VIEWLOG_CONNECTION" | grep -nxF "Home ISP" | cut -d: -f1)
driver select --title "View Log File..." --id "$IDC_VIEWLOG_CONNECTION" --index $(( ${item:-1} - 1 )) >/dev/null
driver text --title "View Log File..." --id "$IDC_VIEWLOG_ACCOUNT" --contains "Period" --timeout-ms 10000 >/dev/null
shot view-log-billing
driver click --title "View Log File..." --id "$IDC_VIEWLOG_EXPORT" >/dev/null
shot_of view-log-export "Export Log"
driver click --title "Export Log" --id "$IDCANCEL" >/dev/null
driver wait-window --gone --title "Export Log" >/dev/null
driver click --title "View Log File..." --id "$IDC_VIEWLOG_CLOSE" >/dev/null

driver command --class Orvalen --id "$IDM_TRAY_EXIT" >/dev/null
shot_of quit-question ""
driver answer-box --title "" --contains "quit Orvalen" --button yes >/dev/null
wait "$program" && echo "Orvalen ended with exit code 0"
