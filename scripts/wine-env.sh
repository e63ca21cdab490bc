# shellcheck shell=bash
# Wine harness for the run command and the tests. Source it; nothing runs on load.
#
#   orv_wine_template DIR              make (once) DIR/template; prints its path
#   orv_wine_fresh_prefix TPL PREFIX   new prefix PREFIX cloned from template TPL
#   orv_wine_shared_prefix DIR [--fresh]
#                                      DIR/shared, the prefix scripts/wine-run uses;
#                                      prints its path
#   orv_wine_prefix_current PREFIX     true if PREFIX matches the installed Wine
#   orv_wine_export PREFIX             export WINEPREFIX, HOME, XDG_*, WINEDEBUG, ...
#   orv_wine_start PREFIX              start PREFIX's wineserver, detached
#   orv_wine_stop PREFIX               stop PREFIX's wineserver and wait for it
#   orv_wine_run [-t SECS] PREFIX PROGRAM [ARGS...]
#                                      run PROGRAM under wine64 in PREFIX with a
#                                      time limit; returns the program's exit code
#   orv_wine_install_standin DLL DIR   put the stand-in rasapi32.dll into DIR
#   orv_wine_dir_for FILE              DIR to use for FILE: <build tree>/wine
#   orv_xvfb_ensure STATE_DIR          make DISPLAY usable: keep a reachable one,
#                                      else reuse or start the Xvfb recorded there
#   orv_xvfb_attach STATE_DIR          use the Xvfb recorded there, if it runs
#   orv_xvfb_stop STATE_DIR            stop the Xvfb recorded there (by PID)
#   orv_display_ok                     true if $DISPLAY answers
#   orv_resource_ids                   the program's resource ids (IDD_..., IDC_...,
#                                      IDM_...) and the system ids it uses as shell variables
#
# Every Wine process is started under `timeout`. Only the wineserver of a prefix
# we name and the Xvfb whose PID we recorded are ever stopped.
#
# Environment: ORVALEN_WINE_TIMEOUT (default limit of orv_wine_run, 300 s),
# ORVALEN_WINE_LINGER (seconds a started wineserver outlives its last program,
# 10), ORVALEN_WINEDEBUG (WINEDEBUG, default -all), ORVALEN_XVFB=1 (use our own
# Xvfb even when DISPLAY works).

ORV_WINE_OVERRIDES="winemenubuilder.exe=d;mscoree=d;mshtml=d;rasapi32=n,b"
ORV_TEMPLATE_RECIPE=5   # raise when _orv_make_template changes: templates are remade
ORV_DESKTOP_SIZE=1024x768

_orv_say() { printf 'wine-env: %s\n' "$*" >&2; }

# Locates wine64 and the real wineserver binary. Debian keeps wine64 out of PATH,
# and its /usr/bin/wineserver wrapper forces -p0, which defeats our own -p.
_orv_wine_tools() {
  [[ -n ${ORV_WINE64:-} && -n ${ORV_WINESERVER:-} ]] && return 0
  local candidate
  for candidate in "$(command -v wine64 2>/dev/null)" /usr/lib/wine/wine64 /usr/lib64/wine/wine64; do
    if [[ -n $candidate && -x $candidate ]]; then ORV_WINE64=$candidate; break; fi
  done
  for candidate in /usr/lib/wine/wineserver64 /usr/lib64/wine/wineserver64 \
                   "$(command -v wineserver64 2>/dev/null)" "$(command -v wineserver 2>/dev/null)"; do
    if [[ -n $candidate && -x $candidate ]]; then ORV_WINESERVER=$candidate; break; fi
  done
  if [[ -z ${ORV_WINE64:-} || -z ${ORV_WINESERVER:-} ]]; then
    _orv_say "wine64 or wineserver not found; run scripts/install-deps.sh as root"
    return 1
  fi
}

# What a prefix made by this Wine looks like: if Wine is upgraded, templates and
# clones are remade rather than updated in place (see orv_wine_fresh_prefix).
_orv_wine_stamp() {
  local inf
  for inf in /usr/share/wine/wine.inf /usr/share/wine/wine/wine.inf /usr/local/share/wine/wine.inf; do
    [[ -f $inf ]] && break
  done
  printf 'recipe %s, %s %s\n' "$ORV_TEMPLATE_RECIPE" "$("$ORV_WINE64" --version 2>/dev/null)" \
    "$(stat -c %Y "$inf" 2>/dev/null)"
}

orv_wine_prefix_current() {
  local prefix=${1%/}
  _orv_wine_tools || return 1
  [[ -f $prefix/system.reg && -f $prefix/.orvalen-stamp ]] || return 1
  [[ "$(cat "$prefix/.orvalen-stamp")" == "$(_orv_wine_stamp)" ]]
}

orv_wine_export() {
  local prefix=${1%/}
  export WINEPREFIX=$prefix
  export WINEARCH=win64
  export WINEDEBUG=${ORVALEN_WINEDEBUG:--all}
  export WINEDLLOVERRIDES=$ORV_WINE_OVERRIDES
  # Wine links the profile's Desktop/Documents to $HOME: keep them out of the
  # real home directory, one scratch home per prefix.
  export HOME=$prefix.home
  export XDG_CONFIG_HOME=$HOME/.config
  export XDG_DATA_HOME=$HOME/.local/share
  export XDG_CACHE_HOME=$HOME/.cache
  export XDG_DESKTOP_DIR=$HOME/Desktop
  mkdir -p "$HOME/Desktop"
}

_orv_server_running() {
  WINEPREFIX=${1%/} "$ORV_WINESERVER" -k0 >/dev/null 2>&1
}

# Polls instead of `wineserver -w`: with no server running, -w starts one.
_orv_wait_server_gone() {
  local prefix=$1 limit=$(( ${2:-30} * 10 )) i
  for (( i = 0; i < limit; i++ )); do
    _orv_server_running "$prefix" || return 0
    sleep 0.1
  done
  _orv_say "the wineserver of $prefix is still running"
  return 1
}

orv_wine_stop() {
  local prefix=${1%/}
  _orv_wine_tools || return 1
  [[ -d $prefix ]] || return 0
  _orv_server_running "$prefix" || return 0
  WINEPREFIX=$prefix timeout 20 "$ORV_WINESERVER" -k >/dev/null 2>&1
  _orv_wait_server_gone "$prefix" 20
}

# A wineserver and the system processes (services.exe, ...) inherit the stdout
# and stderr of the program that first starts them and keep them open until the
# server exits: a test's output pipe would then stay open seconds after the test
# ended. So the server is started here with its output in a log, and a first
# throwaway program starts the system processes the same way.
orv_wine_start() {
  local prefix=${1%/} linger=${ORVALEN_WINE_LINGER:-10}
  _orv_wine_tools || return 1
  [[ -f $prefix/system.reg ]] || { _orv_say "$prefix is not a Wine prefix"; return 1; }
  _orv_server_running "$prefix" && return 0
  (
    flock -w 120 8 || { _orv_say "timed out waiting for $prefix.lock"; exit 1; }
    _orv_server_running "$prefix" && exit 0
    orv_wine_export "$prefix"
    local log=$prefix.home/wine.log
    # The server and the system processes outlive this block: they must not
    # inherit the lock's descriptor, or the lock stays held while they run.
    timeout 20 "$ORV_WINESERVER" -p"$linger" </dev/null >>"$log" 2>&1 8>&-
    timeout 120 "$ORV_WINE64" cmd.exe /c exit </dev/null >>"$log" 2>&1 8>&-
    _orv_server_running "$prefix" || { _orv_say "could not start the wineserver of $prefix (see $log)"; exit 1; }
  ) 8>"$prefix.lock"
}

# The Windows 98 look: Wine's own theme off (its flat, near-white controls and
# light-blue captions are not what the program's users see) and the "Windows
# Standard" colours: grey 3D faces, a navy caption gradient, the teal desktop.
_orv_classic_colours() {
  local entry
  for entry in ActiveBorder=192,192,192 ActiveTitle=0,0,128 AppWorkSpace=128,128,128 \
      Background=0,128,128 ButtonAlternateFace=192,192,192 ButtonDkShadow=0,0,0 \
      ButtonFace=192,192,192 ButtonHilight=255,255,255 ButtonLight=192,192,192 \
      ButtonShadow=128,128,128 ButtonText=0,0,0 GradientActiveTitle=16,132,208 \
      GradientInactiveTitle=192,192,192 GrayText=128,128,128 Hilight=0,0,128 \
      HilightText=255,255,255 HotTrackingColor=0,0,255 InactiveBorder=192,192,192 \
      InactiveTitle=128,128,128 InactiveTitleText=192,192,192 InfoText=0,0,0 \
      InfoWindow=255,255,225 Menu=192,192,192 MenuBar=192,192,192 MenuHilight=0,0,128 \
      MenuText=0,0,0 Scrollbar=192,192,192 TitleText=255,255,255 Window=255,255,255 \
      WindowFrame=0,0,0 WindowText=0,0,0; do
    printf '"%s"="%s"\n' "${entry%%=*}" "$(tr , ' ' <<<"${entry#*=}")"
  done
}

_orv_make_template() {
  local tpl=$1 stamp=$2
  local home=$tpl.home log=$tpl.log
  orv_wine_stop "$tpl"
  rm -rf "$tpl" "$home" "$tpl.reg"
  _orv_say "creating the Wine template prefix $tpl (about 15 s)"
  (
    orv_wine_export "$tpl"
    set -e
    # One server for all the steps (each Wine command would otherwise start and
    # stop its own); its output goes to the log, not to our caller's pipe.
    timeout 180 "$ORV_WINE64" wineboot --init
    timeout 20 "$ORV_WINESERVER" -p1 || true   # 2 = already running: fine
    mkdir -p "$tpl/drive_c/windows/Fonts"
    # Without these fonts caption buttons render as letters ("0 1 r"). The
    # dialogs ask for "Helv" and "MS Shell Dlg", which a Windows 98 machine
    # draws with the bitmap MS Sans Serif (sserife.fon): Wine's outline copy of
    # it is wider and cuts texts short, so the bitmap one is used, as there.
    cp /usr/share/wine/fonts/*.ttf /usr/share/wine/fonts/*.fon "$tpl/drive_c/windows/Fonts/"
    rm -f "$tpl/drive_c/windows/Fonts/ms_sans_serif.ttf"
    # Virtual desktop: a taskbar and a visible tray without a window manager
    # (EnableShell: Wine shows the taskbar on a desktop not named "shell" only
    # on request), and no 2 s tray-withdraw delay at every exit.
    # No debugger on a crash: winedbg prints a backtrace but then ends the
    # process itself, often with exit code 0, so a crashing test could pass;
    # without one the process ends with the exception code (0xC0000005 -> 5).
    cat >"$tpl.reg" <<EOF
REGEDIT4

[HKEY_CURRENT_USER\\Software\\Wine\\Explorer]
"Desktop"="Default"

[HKEY_CURRENT_USER\\Software\\Wine\\Explorer\\Desktops]
"Default"="$ORV_DESKTOP_SIZE"

[HKEY_CURRENT_USER\\Software\\Wine\\Explorer\\Desktops\\Default]
"EnableShell"=dword:00000001

[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows NT\\CurrentVersion\\FontSubstitutes]
"Helv"="MS Sans Serif"
"MS Shell Dlg"="MS Sans Serif"

[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\ThemeManager]
"ThemeActive"="0"
"DllName"=""

[HKEY_CURRENT_USER\\Control Panel\\Colors]
$(_orv_classic_colours)

[HKEY_CURRENT_USER\\Software\\Wine\\WineDbg]
"ShowCrashDialog"=dword:00000000

[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows NT\\CurrentVersion\\AeDebug]
"Debugger"="orvalen-no-debugger.exe"
EOF
    timeout 60 "$ORV_WINE64" reg.exe import "Z:${tpl//\//\\}.reg"
    timeout 60 "$ORV_WINE64" reg.exe query 'HKCU\Software\Wine\Explorer\Desktops' /v Default
    timeout 60 "$ORV_WINE64" reg.exe query 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug' /v Debugger
  ) </dev/null >"$log" 2>&1
  local rc=$?
  # user.reg and system.reg are written when the server exits.
  _orv_wait_server_gone "$tpl" 60 || orv_wine_stop "$tpl"
  rm -f "$tpl.reg"
  if (( rc != 0 )) || ! grep -q "$ORV_DESKTOP_SIZE" "$tpl/user.reg" 2>/dev/null \
      || ! grep -q orvalen-no-debugger "$tpl/system.reg" 2>/dev/null \
      || ! grep -qF '"MS Shell Dlg"="MS Sans Serif"' "$tpl/system.reg" 2>/dev/null \
      || ! grep -qF '"ButtonFace"="192 192 192"' "$tpl/user.reg" 2>/dev/null; then
    _orv_say "creating $tpl failed; the end of $log:"
    tail -n 20 "$log" >&2
    return 1
  fi
  # Clones must point the profile folders at their own home: remember this one.
  printf '%s\n' "$home" >"$tpl/.orvalen-home"
  printf '%s\n' "$stamp" >"$tpl/.orvalen-stamp"   # last: marks the template complete
}

orv_wine_template() {
  local dir=${1%/}
  local tpl=$dir/template stamp
  _orv_wine_tools || return 1
  stamp=$(_orv_wine_stamp)
  if ! orv_wine_prefix_current "$tpl"; then
    mkdir -p "$dir" || return 1
    (
      flock -w 900 9 || { _orv_say "timed out waiting for $dir/template.lock"; exit 1; }
      orv_wine_prefix_current "$tpl" && exit 0
      _orv_make_template "$tpl" "$stamp"
    ) 9>"$dir/template.lock" || return 1
  fi
  printf '%s\n' "$tpl"
}

# A fresh prefix in about 0.1 s. A real copy (cp -a) of the 700 MB template takes
# 1.4 s and writes 700 MB per test; hard links (cp -al) take 0.03 s but share
# inodes, and Wine rewrites some files in place (CreateFile with CREATE_ALWAYS
# truncates: win.ini, system.ini; the registry is saved by rename). So only the
# program files Wine installs and never opens for writing (dll, exe, nls, fonts,
# ...) are linked; everything else is copied for real. The clone's
# .update-timestamp says "disable": Wine would otherwise refresh those linked
# files in place after a Wine upgrade; instead templates and clones carry a stamp
# and are remade.
_ORV_LINKED=( -iname '*.dll' -o -iname '*.exe' -o -iname '*.nls' -o -iname '*.sys'
  -o -iname '*.drv' -o -iname '*.ocx' -o -iname '*.cpl' -o -iname '*.acm' -o -iname '*.tlb'
  -o -iname '*.com' -o -iname '*.ax' -o -iname '*.ds' -o -iname '*.msstyles' -o -iname '*.icm'
  -o -iname '*.ttf' -o -iname '*.ttc' -o -iname '*.fon' -o -iname '*.mui' -o -iname '*.manifest' )

orv_wine_fresh_prefix() {
  local tpl=${1%/} prefix=${2%/}
  _orv_wine_tools || return 1
  [[ -f $tpl/.orvalen-stamp && -f $tpl/.orvalen-home ]] || { _orv_say "$tpl is not a finished template"; return 1; }
  orv_wine_stop "$prefix" || return 1
  rm -rf "$prefix" "$prefix.home"
  local tmp=$prefix.tmp.$$
  rm -rf "$tmp"
  mkdir -p "$(dirname "$prefix")" || return 1
  cp -al "$tpl" "$tmp" || return 1
  ( cd "$tmp" && find . -type f ! \( "${_ORV_LINKED[@]}" \) -print0 | xargs -0r rm -f ) || return 1
  ( cd "$tpl" && find . -type f ! \( "${_ORV_LINKED[@]}" \) -print0 | xargs -0r cp -p --parents -t "$tmp" ) || return 1
  printf 'disable\n' >"$tmp/.update-timestamp"
  rm -f "$tmp/.orvalen-home"
  cp -a "$(cat "$tpl/.orvalen-home")" "$prefix.home" 2>/dev/null || mkdir -p "$prefix.home/Desktop"
  local old link target
  old=$(cat "$tpl/.orvalen-home")
  while IFS= read -r -d '' link; do
    target=$(readlink "$link")
    if [[ $target == "$old" || $target == "$old"/* ]]; then
      ln -sfn "$prefix.home${target#"$old"}" "$link"
    fi
  done < <(find "$tmp/drive_c/users" -type l -print0)
  mv "$tmp" "$prefix"
}

orv_wine_shared_prefix() {
  local dir=${1%/} fresh=${2:-}
  local prefix=$dir/shared tpl
  tpl=$(orv_wine_template "$dir") || return 1
  if [[ $fresh == --fresh ]] || ! orv_wine_prefix_current "$prefix"; then
    (
      flock -w 300 9 || { _orv_say "timed out waiting for $dir/shared.lock"; exit 1; }
      [[ $fresh != --fresh ]] && orv_wine_prefix_current "$prefix" && exit 0
      orv_wine_fresh_prefix "$tpl" "$prefix"
    ) 9>"$dir/shared.create.lock" || return 1
  fi
  printf '%s\n' "$prefix"
}

orv_wine_run() {
  local limit=${ORVALEN_WINE_TIMEOUT:-300}
  if [[ ${1:-} == -t ]]; then limit=$2; shift 2; fi
  local prefix=${1%/}
  shift
  _orv_wine_tools || return 125
  orv_wine_start "$prefix" || return 125
  local rc=0
  ( orv_wine_export "$prefix" && exec timeout -k 5 "$limit" "$ORV_WINE64" "$@" ) || rc=$?
  if (( rc == 124 || rc == 137 )); then
    _orv_say "$1 did not finish within $limit s; stopped"
  fi
  return "$rc"
}

# Wine loads a native DLL from the program's folder when WINEDLLOVERRIDES says
# rasapi32=n,b, which orv_wine_export does.
orv_wine_install_standin() {
  local dll=$1 dir=$2
  [[ -f $dll ]] || { _orv_say "no stand-in DLL at $dll"; return 1; }
  mkdir -p "$dir" && cp -f "$dll" "$dir/rasapi32.dll"
}

# The build tree a file lies in (the nearest folder up with a CMakeCache.txt),
# plus /wine; the file's own folder plus /wine when it is in none.
orv_wine_dir_for() {
  local dir
  dir=$(cd "$(dirname "$1")" 2>/dev/null && pwd -P) || return 1
  local probe=$dir
  while [[ $probe != / ]]; do
    if [[ -f $probe/CMakeCache.txt ]]; then printf '%s/wine\n' "$probe"; return 0; fi
    probe=$(dirname "$probe")
  done
  printf '%s/wine\n' "$dir"
}

orv_display_ok() {
  [[ -n ${DISPLAY:-} ]] || return 1
  if command -v xdotool >/dev/null 2>&1; then
    timeout 5 xdotool getdisplaygeometry >/dev/null 2>&1
  elif command -v xdpyinfo >/dev/null 2>&1; then
    timeout 5 xdpyinfo >/dev/null 2>&1
  else
    local n=${DISPLAY#*:}
    [[ -S /tmp/.X11-unix/X${n%%.*} ]]
  fi
}

_orv_xvfb_alive() {
  local dir=$1 pid
  [[ -s $dir/xvfb.pid && -s $dir/xvfb.display ]] || return 1
  pid=$(cat "$dir/xvfb.pid")
  [[ $pid =~ ^[0-9]+$ ]] && [[ "$(cat "/proc/$pid/comm" 2>/dev/null)" == Xvfb ]]
}

orv_xvfb_attach() {
  local dir=${1%/}
  _orv_xvfb_alive "$dir" || return 1
  DISPLAY=":$(cat "$dir/xvfb.display")"
  export DISPLAY
}

orv_xvfb_ensure() {
  local dir=${1%/}
  if [[ ${ORVALEN_XVFB:-} != 1 ]] && orv_display_ok; then return 0; fi
  mkdir -p "$dir" || return 1
  (
    flock -w 60 9 || exit 1
    _orv_xvfb_alive "$dir" && exit 0
    command -v Xvfb >/dev/null 2>&1 || { _orv_say "Xvfb not found; run scripts/install-deps.sh as root"; exit 1; }
    rm -f "$dir/xvfb.display" "$dir/xvfb.pid"
    # -displayfd: Xvfb picks a free display number and writes it once ready.
    # Output to a log, not to our caller's pipe (the Xvfb outlives the caller).
    Xvfb -displayfd 3 -screen 0 "${ORV_DESKTOP_SIZE}x24" -nolisten tcp \
      3>"$dir/xvfb.display" </dev/null >"$dir/xvfb.log" 2>&1 9>&- &
    local pid=$! i
    printf '%s\n' "$pid" >"$dir/xvfb.pid"
    for (( i = 0; i < 100; i++ )); do
      [[ -s $dir/xvfb.display ]] && grep -q '^[0-9]' "$dir/xvfb.display" && exit 0
      kill -0 "$pid" 2>/dev/null || break
      sleep 0.1
    done
    _orv_say "Xvfb did not start (see $dir/xvfb.log)"
    kill "$pid" 2>/dev/null
    rm -f "$dir/xvfb.display" "$dir/xvfb.pid"
    exit 1
  ) 9>"$dir/xvfb.lock" || return 1
  orv_xvfb_attach "$dir"
}

orv_xvfb_stop() {
  local dir=${1%/} pid i
  if _orv_xvfb_alive "$dir"; then
    pid=$(cat "$dir/xvfb.pid")
    kill "$pid" 2>/dev/null
    for (( i = 0; i < 50; i++ )); do
      kill -0 "$pid" 2>/dev/null || break
      sleep 0.1
    done
    kill -0 "$pid" 2>/dev/null && kill -9 "$pid" 2>/dev/null
  fi
  rm -f "$dir/xvfb.pid" "$dir/xvfb.display"
}

# shellcheck disable=SC2034  # the variables are for the scripts that source this file
orv_resource_ids() {
  local header
  header="$(dirname "${BASH_SOURCE[0]}")/../resources/resource_ids.h"
  [[ -r $header ]] || { echo "orv_resource_ids: no $header" >&2; return 1; }
  eval "$(sed -nE 's/^#define (ID[A-Z0-9_]+)[[:space:]]+([0-9]+)([^0-9].*)?$/\1=\2/p' "$header")"
  # Without a name in the header: the system's buttons, a property sheet's Apply
  # and its page message, the tray icon's id and message (app/win32/tray_icon.h),
  # the save dialog's file name box.
  IDOK=1 IDCANCEL=2 IDYES=6 IDNO=7 ID_APPLY_NOW=0x3021 PSM_SETCURSEL=WM_USER+101
  TRAY_ICON_ID=22 TRAY_MESSAGE=WM_APP+1
  IDC_SAVE_FILE_NAME=0x47c  # cmb13: the file name box of the system's save dialog
}
