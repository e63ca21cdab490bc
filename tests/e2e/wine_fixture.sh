#!/usr/bin/env bash
# wine_fixture.sh setup|cleanup WINE_DIR
#
# The ctest fixture "wine_env": setup makes the Wine template (once; kept across
# runs), a fresh shared prefix for scripts/wine-run, and an Xvfb when DISPLAY is
# unset or unreachable; cleanup stops the wineservers of the prefixes in
# WINE_DIR and that Xvfb, each by its own prefix or recorded PID.
set -u
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=../../scripts/wine-env.sh
source "$here/../../scripts/wine-env.sh"
action=${1:-} wine_dir=${2:-}
[[ ($action == setup || $action == cleanup) && -n $wine_dir ]] || { echo "usage: wine_fixture.sh setup|cleanup WINE_DIR" >&2; exit 2; }
mkdir -p "$wine_dir"
if [[ $action == setup ]]; then
  start=$SECONDS
  orv_xvfb_ensure "$wine_dir" && echo "display: $DISPLAY" || exit 1
  tpl=$(orv_wine_template "$wine_dir") && echo "template: $tpl" || exit 1
  prefix=$(orv_wine_shared_prefix "$wine_dir" --fresh) && orv_wine_start "$prefix" || exit 1
  echo "shared prefix: $prefix (ready after $(( SECONDS - start )) s)"
  exit 0
fi
status=0
for reg in "$wine_dir"/*/system.reg; do
  [[ ! -f $reg ]] || orv_wine_stop "$(dirname "$reg")" || status=1
done
orv_xvfb_stop "$wine_dir"
echo "stopped the wineservers and the Xvfb of $wine_dir"
exit "$status"
