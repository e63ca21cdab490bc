#!/usr/bin/env bash
# Builds Orvalen and runs it under Wine.
#
# The product is the i686 build (build/i686/app/Orvalen.exe); this machine runs
# 64-bit code only, so the same source built for x86_64 is what runs here, under
# wine64 in the prefix build/wine/run-prefix, with our stand-in dial-up service.
#
# With a display the program stays up until you quit it from its tray menu; switch
# the dial-up connection from another terminal with scripts/dialup. Without one, an
# Xvfb is started, one session is played and screenshots of the main status dialog
# are saved in build/screenshots/.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

"$root/scripts/install-deps.sh"

for arch in i686 x86_64; do
  echo "== build $arch"
  cmake -S "$root" -B "$root/build/$arch" -DCMAKE_TOOLCHAIN_FILE="$root/cmake/toolchain-$arch-mingw.cmake" \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo >"$root/build/$arch.configure.log" 2>&1 ||
    { cat "$root/build/$arch.configure.log"; exit 1; }
  cmake --build "$root/build/$arch" -j2 --target Orvalen rasapi32_standin orvalen_driver >/dev/null
done

# shellcheck source=wine-env.sh
source "$root/scripts/wine-env.sh"
wine_dir=$root/build/wine
prefix=$wine_dir/run-prefix
headless=0
if [[ ${ORVALEN_XVFB:-} == 1 ]] || ! orv_display_ok; then headless=1; fi
orv_xvfb_ensure "$wine_dir"
tpl=$(orv_wine_template "$wine_dir")
orv_wine_prefix_current "$prefix" || orv_wine_fresh_prefix "$tpl" "$prefix"

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
mkdir -p "$shots"
dialog="Orvalen - Connections Monitor  V1.5"
shot() { import -window root "$shots/$1.png" && echo "screenshot: build/screenshots/$1.png"; }

echo "== no display: running one scripted session under Xvfb ($DISPLAY)"
dialup none
(cd "$stage" && orv_wine_run -t 300 "$prefix" "$stage/Orvalen.exe" >"$root/build/run.log" 2>&1) &
program=$!
trap 'orv_wine_stop "$prefix"; orv_xvfb_stop "$wine_dir"' EXIT

# A first run greets with the Welcome dialog and then shows the main dialog;
# later runs start in the tray, so ask for the dialog as a double click would.
driver wait-window --class Orvalen --any-visibility --timeout-ms 30000 >/dev/null
if driver wait-window --title "Welcome to Orvalen" --timeout-ms 1500 >/dev/null 2>&1; then
  shot welcome
  driver click --title "Welcome to Orvalen" --id 1 >/dev/null
fi
if ! driver wait-window --title "$dialog" --timeout-ms 3000 >/dev/null 2>&1; then
  driver post --class Orvalen --msg 10 --lparam 515 >/dev/null
  driver wait-window --title "$dialog" --timeout-ms 10000 >/dev/null
fi
driver wait-text --title "$dialog" --id 110 --contains ":" --timeout-ms 5000 >/dev/null
shot main-dialog-before

dialup connect "Home ISP"
driver wait-text --title "$dialog" --id 104 --equals "You've Been Logged on since:" --timeout-ms 10000 >/dev/null
sleep 3
driver wait-text --title "$dialog" --id 113 --contains "Min" --timeout-ms 5000 >/dev/null
shot main-dialog-online
echo "on-line for: $(driver text --title "$dialog" --id 113)"

dialup disconnect
driver wait-text --title "$dialog" --id 104 --equals "Your Last Logon was at :" --timeout-ms 10000 >/dev/null
driver wait-text --title "$dialog" --id 601 --contains "" --timeout-ms 3000 >/dev/null || true
sleep 1.5
shot main-dialog-after
echo "previous session:"
driver list --title "$dialog" --id 601 | sed 's/^/  /'

driver command --class Orvalen --id 2 >/dev/null
driver answer-box --title "" --contains "quit Orvalen" --button yes >/dev/null
wait "$program" && echo "Orvalen ended with exit code 0"
