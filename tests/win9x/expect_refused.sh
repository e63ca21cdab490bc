#!/usr/bin/env bash
# expect_refused.sh NAME... -- CHECK_IMPORTS_ARGUMENTS...
#
# Runs check_imports.sh and succeeds only when it fails and its findings name
# every NAME (a "denied:" line each): the check still finds what it must.
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
names=()
while (( $# > 0 )) && [[ $1 != -- ]]; do names+=("$1"); shift; done
(( $# > 0 && ${#names[@]} > 0 )) || { echo "usage: expect_refused.sh NAME... -- ARGS..." >&2; exit 2; }
shift
output=$(bash "$here/check_imports.sh" "$@")
status=$?
echo "$output" | grep -E '^(denied|wrong):'
if (( status != 1 )); then
  echo "FAIL: check_imports.sh exited with $status, expected 1"
  exit 1
fi
for name in "${names[@]}"; do
  if ! grep -qE "^denied: [^ ]+ $name " <<<"$output"; then
    echo "FAIL: $name was not refused"
    exit 1
  fi
done
echo "refused as expected: ${names[*]}"
