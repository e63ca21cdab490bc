#!/usr/bin/env bash
# measure-idle-cpu.sh [--build DIR] [--seconds S] [--records N] [--hidden] [--builtin-ras]
#
# How much CPU the running program takes while it only waits, under wine64: the
# x86_64 Orvalen.exe, installed in a fresh prefix with a log of N made-up sessions
# (default 100000) and a configuration in which every connection of the log has a
# configured account (so no Welcome or account notice appears), the main status
# dialog open (unless --hidden). It measures utime + stime from /proc/PID/stat over
# S seconds (default 60) twice: off-line, then on-line (the stand-in dial-up
# service connected to "Home ISP", a connection of the log with a pre-paid card).
# It prints percent of one core for the Orvalen.exe process, for the prefix's
# wineserver and for the prefix's other Wine processes (desktop, services), and
# how often the program asked the dial-up service: polls (enumerations) and
# service calls (enumerations and status queries) a second, as the stand-in
# counted them.
#
# The stand-in answers each call from its state file: with --builtin-ras the
# program gets Wine's own rasapi32 instead (always off-line, no call counts) and
# only the off-line figure is measured, to tell the program's own cost from the
# stand-in's.
#
# DIR is the x86_64 build tree (default build/x86_64; configured and built when
# missing). Needs Xvfb and wine64 (scripts/install-deps.sh). Takes about 2*S + 30 s.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
# shellcheck source-path=SCRIPTDIR source=wine-env.sh
source "$root/scripts/wine-env.sh"
orv_resource_ids

build=$root/build/x86_64
seconds=60
records=100000
show_dialog=--show-main-dialog
builtin_ras=0
while (( $# > 0 )); do
  case $1 in
    --build) build=$(cd "$2" && pwd -P); shift 2 ;;
    --seconds) seconds=$2; shift 2 ;;
    --records) records=$2; shift 2 ;;
    --hidden) show_dialog=; shift ;;
    --builtin-ras) builtin_ras=1; shift ;;
    *) sed -n '2,22p' "${BASH_SOURCE[0]}" | sed 's/^# \{0,1\}//' >&2; exit 2 ;;
  esac
done
[[ $seconds =~ ^[0-9]+$ && $records =~ ^[0-9]+$ ]] || { echo "--seconds and --records take numbers" >&2; exit 2; }

if [[ ! -f $build/CMakeCache.txt ]]; then
  cmake -S "$root" -B "$build" -DCMAKE_TOOLCHAIN_FILE="$root/cmake/toolchain-x86_64-mingw.cmake" \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
fi
cmake --build "$build" -j2 --target Orvalen rasapi32_standin orvalen_driver test_log_maker >/dev/null

exe=$build/app/Orvalen.exe
standin=$build/tests/drivers/rasapi32.dll
driver=$build/tests/drivers/orvalen_driver.exe
log_maker=$build/tests/drivers/test_log_maker.exe
for file in "$exe" "$standin" "$driver" "$log_maker"; do
  [[ -f $file ]] || { echo "missing: $file" >&2; exit 1; }
done

wine_dir=$build/wine
prefix=$wine_dir/idle-cpu
xvfb_dir=$wine_dir/idle-cpu.xvfb
dialog_title="Orvalen - Connections Monitor  V1.5"

cleanup() {
  orv_wine_stop "$prefix" || true
  orv_xvfb_stop "$xvfb_dir"
}
trap cleanup EXIT

ORVALEN_XVFB=1 orv_xvfb_ensure "$xvfb_dir"
tpl=$(orv_wine_template "$wine_dir")
orv_wine_fresh_prefix "$tpl" "$prefix"
orv_wine_start "$prefix"

# Installed as a first run would have left it, so the program starts from its own
# folder: no reinstallation, no Welcome.
install_dir="$prefix/drive_c/Program Files/Orvalen"
mkdir -p "$install_dir"
cp -f "$exe" "$install_dir/Orvalen.exe"
for file in ReadMe.txt OrvalenManual.doc Alarm.wav; do cp -f "$(dirname "$exe")/$file" "$install_dir/"; done
(( builtin_ras )) || orv_wine_install_standin "$standin" "$install_dir"
# Its presence asks the stand-in to count the calls into it (every five seconds).
calls_file=$prefix/drive_c/orvalen-dialup-calls.txt
rm -f "$calls_file"
(( builtin_ras )) || : >"$calls_file"
cp -f "$log_maker" "$prefix/drive_c/test_log_maker.exe"
# Four connections, four sessions a day going back from today, every connection
# with a configured account (a card, a limited and an unlimited one).
{
  printf 'spread\t%s\tHome ISP,Work Dial-Up,Holiday Card,Evening Line\ttoday\t4\t1800\n' "$records"
  printf 'account\tHome ISP\t1\t100\n'
  printf 'account\tWork Dial-Up\t2\t20\t19.5\t0.02\t17.5\n'
  printf 'account\tHoliday Card\t3\n'
  printf 'account\tEvening Line\t1\t100\n'
  printf 'setting\tshowMainWindowAtStart\t%s\n' "$(( ${#show_dialog} > 0 ))"
} >"$prefix/drive_c/idle-log.txt"
orv_wine_run -t 120 "$prefix" 'C:\test_log_maker.exe' 'C:\idle-log.txt'
"$root/scripts/dialup" --prefix "$prefix" none >/dev/null

drv() { orv_wine_run -t 60 "$prefix" "$driver" "$@"; }

run_file=$prefix.home/orvalen.rc
rm -f "$run_file"
(
  cd "$install_dir"
  rc=0
  orv_wine_run -t $(( 2 * seconds + 180 )) "$prefix" ./Orvalen.exe >"$prefix.home/orvalen.out" 2>&1 || rc=$?
  echo "$rc" >"$run_file"
) </dev/null &

# The Unix PID of a process of this prefix by its name (Wine names the process
# of a Windows program after the exe).
pid_of() {
  local dir
  for dir in /proc/[0-9]*; do
    [[ "$(cat "$dir/comm" 2>/dev/null)" == "$1" ]] || continue
    { tr '\0' '\n' <"$dir/environ"; } 2>/dev/null | grep -qxF "WINEPREFIX=$prefix" || continue
    printf '%s\n' "${dir#/proc/}"
    return 0
  done
  return 1
}

# Every other process of the prefix (explorer's desktop, services, ...).
other_pids() {
  local dir
  for dir in /proc/[0-9]*; do
    local pid=${dir#/proc/}
    [[ $pid == "$app_pid" || $pid == "$server_pid" ]] && continue
    [[ "$(cat "$dir/comm" 2>/dev/null)" == *.exe ]] || continue
    { tr '\0' '\n' <"$dir/environ"; } 2>/dev/null | grep -qxF "WINEPREFIX=$prefix" || continue
    printf '%s\n' "$pid"
  done
}

# utime + stime in clock ticks; fields 14 and 15 of /proc/PID/stat, counted after
# the parenthesised name (which may hold blanks).
ticks_of() {
  local total=0 pid stat rest
  for pid in "$@"; do
    stat=$(cat "/proc/$pid/stat" 2>/dev/null) || continue
    rest=${stat##*) }
    read -r -a fields <<<"$rest"
    total=$(( total + fields[11] + fields[12] ))
  done
  echo "$total"
}

hz=$(getconf CLK_TCK)

# "ENUM STATUS TICK" from the stand-in's count file ("- - -" without one); a read
# that meets the file while it is rewritten is tried again.
calls_of() {
  local line _
  for _ in 1 2 3 4 5 6 7 8 9 10; do
    line=$(cat "$calls_file" 2>/dev/null) || line=
    if [[ $line =~ ^enum=([0-9]+)\ status=([0-9]+)\ tick=([0-9]+) ]]; then
      echo "${BASH_REMATCH[1]} ${BASH_REMATCH[2]} ${BASH_REMATCH[3]}"
      return 0
    fi
    (( builtin_ras )) && break
    sleep 0.1
  done
  echo "- - -"
}

if [[ -n $show_dialog ]]; then
  drv wait-window --title "$dialog_title" --timeout-ms 60000 >/dev/null \
    || { echo "the main status dialog did not open" >&2; drv windows >&2 || true; exit 1; }
else
  drv wait-window --class Orvalen --any-visibility --timeout-ms 60000 >/dev/null \
    || { echo "the program's main window did not appear" >&2; exit 1; }
fi
app_pid=$(pid_of Orvalen.exe) || { echo "no Orvalen.exe process" >&2; exit 1; }
server_pid=$(pid_of wineserver64 || pid_of wineserver) || { echo "no wineserver" >&2; exit 1; }
mapfile -t others < <(other_pids)
echo "Orvalen.exe pid $app_pid, wineserver pid $server_pid, other Wine processes: ${#others[@]}"
echo "log: $records records; measuring ${seconds} s each; clock ticks of $hz Hz"

measure() {  # LABEL
  # Start-up work (reading the log, the splash) is over well before this point;
  # let the last of it settle before counting.
  sleep 3
  local a0 s0 o0 a1 s1 o1 t0 t1 c0 c1
  t0=$(date +%s%N)
  a0=$(ticks_of "$app_pid") s0=$(ticks_of "$server_pid") o0=$(ticks_of "${others[@]}")
  c0=$(calls_of)
  sleep "$seconds"
  a1=$(ticks_of "$app_pid") s1=$(ticks_of "$server_pid") o1=$(ticks_of "${others[@]}")
  c1=$(calls_of)
  t1=$(date +%s%N)
  [[ -f $run_file ]] && { echo "the program ended during the measurement" >&2; exit 1; }
  awk -v label="$1" -v a=$(( a1 - a0 )) -v s=$(( s1 - s0 )) -v o=$(( o1 - o0 )) \
      -v hz="$hz" -v ns=$(( t1 - t0 )) 'BEGIN {
    wall = ns / 1e9
    printf "%-9s Orvalen.exe %6.3f%%   wineserver %6.3f%%   other Wine processes %6.3f%%   (of one core, %.1f s)\n",
      label, 100 * a / hz / wall, 100 * s / hz / wall, 100 * o / hz / wall, wall
  }'
  local e0 q0 k0 e1 q1 k1
  read -r e0 q0 k0 <<<"$c0"
  read -r e1 q1 k1 <<<"$c1"
  if [[ $e0 != - && $e1 != - ]] && (( k1 > k0 )); then
    awk -v label="$1" -v e=$(( e1 - e0 )) -v q=$(( q1 - q0 )) -v ms=$(( k1 - k0 )) 'BEGIN {
      printf "%-9s polls %.1f/s, dial-up service calls %.1f/s (over %.1f s)\n",
        label, 1000 * e / ms, 1000 * (e + q) / ms, ms / 1000
    }'
  fi
}

measure off-line
if (( builtin_ras )); then
  echo "(Wine's built-in rasapi32: no on-line measurement)"
  exit 0
fi
"$root/scripts/dialup" --prefix "$prefix" connect "Home ISP" >/dev/null
if [[ -n $show_dialog ]]; then
  drv text --title "$dialog_title" --id "$IDC_MAIN_FIRST_CAPTION" --equals "You've Been Logged on since:" --timeout-ms 30000 >/dev/null \
    || { echo "the main status dialog does not show the session" >&2; exit 1; }
  echo "account status on-line: $(drv text --title "$dialog_title" --id "$IDC_MAIN_ACCOUNT_STATUS" | tr '\n\t' '  ' | tr -s ' ')"
fi
measure on-line
