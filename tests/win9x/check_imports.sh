#!/usr/bin/env bash
# check_imports.sh OBJDUMP EXE DENIED_LIST ALLOWED_DLLS [--version 4.0]
#
# Fitness of a Windows program for Windows 95/98/ME, from its PE headers
# (objdump -p): lists the imported DLLs and functions, and fails when
#   - a DLL is not in ALLOWED_DLLS (one name a line, case ignored);
#   - a function matches DENIED_LIST (exact names and shell patterns; "!Name"
#     exempts a name from the patterns; see tests/win9x/denied_imports.txt);
#   - with --version V: the OS version or the subsystem version is not V, or the
#     subsystem is not the Windows GUI one.
# Every finding is printed as a line starting with "denied:" or "wrong:".
set -euo pipefail
[[ $# == 4 || ($# == 6 && $5 == --version) ]] || { sed -n '2,11p' "$0" | sed 's/^# \{0,1\}//' >&2; exit 2; }
exe=$2 version=${6:-}
headers=$("$1" -p "$exe") || { echo "$1 could not read $exe" >&2; exit 2; }
problems=0
wrong() { echo "$1: $2"; problems=$((problems + 1)); }
value() { awk -v key="$1" '$1 == key { print $2; exit }' <<<"$headers"; }

if [[ -n $version ]]; then
  for kind in OSystem Subsystem; do
    actual="$(value "Major${kind}Version").$(value "Minor${kind}Version")"
    [[ $actual == "$version" ]] || wrong wrong "${kind}Version is $actual, not $version"
  done
  (( 10#$(value Subsystem) == 2 )) || wrong wrong "subsystem $(value Subsystem) is not the Windows GUI (2)"
fi

# "DLL<TAB>function" for every import; an import by ordinal only reads "#N".
imports=$(awk '/^\tDLL Name: / { dll = $3; next } /^\t?$/ { dll = "" }
  dll != "" && /^\t[0-9a-fA-F]+\t +[0-9]+/ { print dll "\t" ((NF >= 3) ? $3 : "#" $2) }' <<<"$headers")
[[ -n $imports ]] || { echo "no imports found in $exe: not a PE file objdump understands?" >&2; exit 2; }
allowed=" $(grep -v '^\s*#' "$4" | awk 'NF { printf "%s ", tolower($1) }')"
mapfile -t rules < <(grep -v '^\s*#' "$3" | awk 'NF { print $1 }')

is_denied() {  # NAME: true when a rule denies it (exact names first, then "!" exemptions, then patterns)
  local rule
  for rule in "${rules[@]}"; do [[ $rule == !* || $rule == *[*?]* || $1 != "$rule" ]] || return 0; done
  for rule in "${rules[@]}"; do [[ $rule != !* || $1 != "${rule#!}" ]] || return 1; done
  # shellcheck disable=SC2053  # the rule is a pattern on purpose
  for rule in "${rules[@]}"; do [[ $rule != *[*?]* || $1 != $rule ]] || return 0; done
  return 1
}

current=
while IFS=$'\t' read -r dll name; do
  if [[ $dll != "$current" ]]; then
    current=$dll
    echo "$dll:"
    [[ $allowed == *" ${dll,,} "* ]] || wrong denied "$dll is not a DLL of Windows 95/98/ME"
  fi
  if is_denied "$name"; then wrong denied "$dll $name"; else echo "    $name"; fi
done <<<"$imports"

(( problems == 0 )) || { echo "$problems problem(s): $exe is not fit for Windows 95/98/ME"; exit 1; }
echo "fit for Windows 95/98/ME as far as its headers and imports tell"
