#!/usr/bin/env bash
# dialup_smoke.sh WINE_DIR DIALUP_QUERY_EXE RASAPI32_DLL DIALUP_SCRIPT
#
# The dial-up stand-in end to end: in a fresh prefix, each session state set
# with scripts/dialup must be what a program asking rasapi32 sees.
set -u
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=../../scripts/wine-env.sh
source "$here/../../scripts/wine-env.sh"

(( $# == 4 )) || { echo "usage: dialup_smoke.sh WINE_DIR DIALUP_QUERY_EXE RASAPI32_DLL DIALUP_SCRIPT" >&2; exit 2; }
wine_dir=$1 query_exe=$2 standin_dll=$3 dialup=$4

passed=0 failed=0
check() {  # NAME ACTUAL EXPECTED
  if [[ $2 == "$3" ]]; then
    passed=$((passed + 1))
    echo "ok    $1"
  else
    failed=$((failed + 1))
    echo "FAIL  $1"
    echo "      expected: $3"
    echo "      actual:   $2"
  fi
}

start=$SECONDS
orv_xvfb_attach "$wine_dir" || true   # a console program: any display, or none, will do
tpl=$(orv_wine_template "$wine_dir") || exit 1
prefix=$wine_dir/e2e-dialup
orv_wine_fresh_prefix "$tpl" "$prefix" || exit 1
trap 'orv_wine_stop "$prefix"' EXIT

bin=$prefix/drive_c/smoke
mkdir -p "$bin"
cp -f "$query_exe" "$bin/dialup_query.exe"
orv_wine_install_standin "$standin_dll" "$bin" || exit 1
state_file=$prefix/drive_c/orvalen-dialup.txt

query() {  # [ARG]: one line from dialup_query
  local out rc=0
  out=$(orv_wine_run -t 30 "$prefix" "$bin/dialup_query.exe" "$@" 2>"$prefix.home/query.err") || rc=$?
  if (( rc != 0 )); then
    echo "dialup_query exited with $rc: $(cat "$prefix.home/query.err")" >&2
  fi
  printf '%s\n' "${out%$'\r'}" | tr -d '\r'
}
dial() { "$dialup" --prefix "$prefix" "$@"; }
handle_in_file() { sed -n 's/^handle=//p' "$state_file"; }

# The stand-in, not Wine's built-in rasapi32, must be the one loaded.
orv_wine_run -t 30 "$prefix" "$bin/dialup_query.exe" >/dev/null 2>"$prefix.home/query.err"
check "the stand-in DLL is loaded" \
  "$(grep -ci 'smoke\\rasapi32.dll' "$prefix.home/query.err")" "1"

check "no state file: nothing listed" \
  "$(query)" "enum=0 count=0 handle=0 status=- state=- error=- name="
check "no state file: any handle is invalid" \
  "$(query 1)" "enum=0 count=0 handle=0 status=6 state=- error=- name="

dial none
check "none: nothing listed, handle invalid" \
  "$(query 1)" "enum=0 count=0 handle=0 status=6 state=- error=- name="

dial dialing "Home ISP"
h=$(handle_in_file)
check "dialing: listed with an intermediate state" \
  "$(query)" "enum=0 count=1 handle=$h status=0 state=0x5 error=0 name=Home ISP"

dial connect "Home ISP"
check "connect completes the dial with the same handle" "$(handle_in_file)" "$h"
check "connect: connected" \
  "$(query)" "enum=0 count=1 handle=$h status=0 state=0x2000 error=0 name=Home ISP"
check "Windows 95 sizes: wrong dwSize and short buffer are refused" \
  "$(query --errors)" \
  "enum_badsize=632 enum_small=603 needed=424 status_badsize=632"   # 412 on 32-bit Windows

dial disconnect
check "disconnect: listed as disconnected, same handle" \
  "$(query)" "enum=0 count=1 handle=$h status=0 state=0x2001 error=0 name=Home ISP"

dial vanish
check "vanish: nothing listed, the old handle is invalid" \
  "$(query "$h")" "enum=0 count=0 handle=0 status=6 state=- error=- name="

dial connect "Home ISP"
h2=$(handle_in_file)
check "reconnect: a new handle" "$(( h2 > h ))" "1"
check "reconnect: the new connection is listed" \
  "$(query)" "enum=0 count=1 handle=$h2 status=0 state=0x2000 error=0 name=Home ISP"
check "reconnect: the handle of the earlier connection is invalid" \
  "$(query "$h")" "enum=0 count=1 handle=$h2 status=6 state=- error=- name=Home ISP"

long_name=$(printf 'N%.0s' {1..300})
dial connect "$long_name"
check "a name over 256 characters is cut to 256" \
  "$(query | sed -n 's/.* name=//p' | tr -d '\n' | wc -c)" "256"

printf 'state=conn' >"$state_file"
check "a half-written file means no connection" \
  "$(query)" "enum=0 count=0 handle=0 status=- state=- error=- name="
printf 'state=connected\r\nhandle=zz\r\nname= Work \r\n' >"$state_file"
check "a bad handle falls back to 1; CRLF and blanks are trimmed" \
  "$(query)" "enum=0 count=1 handle=1 status=0 state=0x2000 error=0 name=Work"
head -c 3000 /dev/urandom >"$state_file"
check "binary garbage: no crash" "$(query | cut -d' ' -f1)" "enum=0"

dial none
check "dialup status prints the state file" "$(dial status | head -1)" "state=none"

echo "dial-up stand-in checks took $(( SECONDS - start )) s"
echo "$passed passed, $failed failed"
(( failed == 0 ))
