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
(( $# == 4 || $# == 6 )) || { sed -n '2,12p' "$0" | sed 's/^# \{0,1\}//' >&2; exit 2; }
objdump=$1 exe=$2 denied_list=$3 allowed_dlls=$4
version=
if (( $# == 6 )); then
  [[ $5 == --version ]] || { echo "unknown option $5" >&2; exit 2; }
  version=$6
fi
for file in "$exe" "$denied_list" "$allowed_dlls"; do
  [[ -f $file ]] || { echo "missing: $file" >&2; exit 2; }
done

headers=$("$objdump" -p "$exe") || { echo "$objdump could not read $exe" >&2; exit 2; }
problems=0

header_value() { awk -v key="$1" '$1 == key { print $2; exit }' <<<"$headers"; }

if [[ -n $version ]]; then
  for kind in OSystem Subsystem; do
    actual="$(header_value "Major${kind}Version").$(header_value "Minor${kind}Version")"
    echo "${kind}Version $actual"
    if [[ $actual != "$version" ]]; then
      echo "wrong: ${kind}Version is $actual, not $version"
      problems=$((problems + 1))
    fi
  done
  subsystem=$(header_value Subsystem)
  echo "Subsystem $subsystem"
  if [[ $((10#${subsystem:-0})) != 2 ]]; then
    echo "wrong: subsystem $subsystem is not the Windows GUI (2)"
    problems=$((problems + 1))
  fi
fi

# "DLL<TAB>function" for every import; an import by ordinal only reads "#N".
imports=$(awk '
  /^\tDLL Name: / { dll = $3; next }
  /^\t?$/ { dll = "" }
  dll != "" && /^\t[0-9a-fA-F]+\t +[0-9]+/ {
    name = (NF >= 3) ? $3 : "#" $2
    print dll "\t" name
  }' <<<"$headers")
[[ -n $imports ]] || { echo "no imports found in $exe: not a PE file objdump understands?" >&2; exit 2; }

mapfile -t allowed < <(grep -v '^\s*#' "$allowed_dlls" | awk 'NF { print tolower($1) }')
exact=() patterns=() exempt=()
while read -r entry _; do
  [[ -z $entry || $entry == \#* ]] && continue
  if [[ $entry == !* ]]; then exempt+=("${entry#!}")
  elif [[ $entry == *[*?]* ]]; then patterns+=("$entry")
  else exact+=("$entry")
  fi
done <"$denied_list"

is_denied() {  # NAME: prints the rule that denies it
  local name=$1 rule
  for rule in "${exact[@]}"; do [[ $name == "$rule" ]] && { echo "$rule"; return 0; }; done
  for rule in "${exempt[@]}"; do [[ $name == "$rule" ]] && return 1; done
  for rule in "${patterns[@]}"; do
    # shellcheck disable=SC2053  # the rule is a pattern on purpose
    [[ $name == $rule ]] && { echo "$rule"; return 0; }
  done
  return 1
}

current=
while IFS=$'\t' read -r dll name; do
  if [[ $dll != "$current" ]]; then
    current=$dll
    echo "$dll: $(awk -F'\t' -v d="$dll" '$1 == d { n++ } END { print n }' <<<"$imports") functions"
    known=0
    for ok in "${allowed[@]}"; do [[ ${dll,,} == "$ok" ]] && known=1; done
    if (( ! known )); then
      echo "denied: $dll is not a DLL of Windows 95/98/ME"
      problems=$((problems + 1))
    fi
  fi
  if rule=$(is_denied "$name"); then
    echo "denied: $dll $name (rule $rule)"
    problems=$((problems + 1))
  else
    echo "    $name"
  fi
done <<<"$imports"

if (( problems > 0 )); then
  echo "$problems problem(s): $exe is not fit for Windows 95/98/ME"
  exit 1
fi
echo "fit for Windows 95/98/ME as far as its headers and imports tell"
