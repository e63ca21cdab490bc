#!/usr/bin/env bash
# app_crash_loop.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR LOG_MAKER_EXE
#
# The program killed with kill -9 again and again, at random moments of its
# sessions: during a session, 0-300 ms after a disconnect (while the log and then
# the configuration are saved), and at start-up (while it recovers the session it
# was killed in). After every restart the log on disk must hold each session
# once; one cut short is recorded from its checkpoint (duration 0 within the first
# three minutes). Round r uses the connection "ISP r" so every session can be
# told apart. ORVALEN_CRASH_SEED repeats a run; ORVALEN_CRASH_ROUNDS sets the count.
# shellcheck disable=SC2016,SC2034  # conditions for eval are single-quoted on purpose
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=app_lib.sh
source "$here/app_lib.sh"
app_setup crash-loop "$@"

seed=${ORVALEN_CRASH_SEED:-$(( $(date +%s) % 100000 ))}
rounds=${ORVALEN_CRASH_ROUNDS:-20}
RANDOM=$seed
echo "seed $seed (ORVALEN_CRASH_SEED=$seed repeats this run), $rounds rounds"

# Every connection of the test with an account, so no notice comes between the kills.
for (( k = 1; k <= rounds && k <= 50; k++ )); do app_describe account "ISP $k" 3; done
app_make_files

# "name|duration|log-on h:m:s|log-off h:m:s" for every record in use.
log_records() {
  python3 -c '
import struct, sys
data = open(sys.argv[1], "rb").read()
for i in range(struct.unpack_from("<I", data)[0] if len(data) >= 8 else 0):
    rec = data[8 + 192 * i: 200 + 192 * i]
    if len(rec) == 192 and rec[0] == 1:
        print("%s|%d|%d:%d:%d|%d:%d:%d" % ((rec[87:].split(b"\0")[0].decode("latin-1"), struct.unpack_from("<i", rec, 48)[0])
                                         + struct.unpack_from("<3I", rec, 20) + struct.unpack_from("<3I", rec, 32)))' "$APP_LOG"
}

ms_sleep() { sleep "$(printf '0.%03d' "$1")"; }
wait_started() { drv wait-window --class Orvalen --any-visibility --timeout-ms 30000 >/dev/null; }  # storage is loaded
kill_program() {
  kill -9 "$(app_wine_pid Orvalen.exe)"
  need "the killed program ended" eval '[[ "$(app_wait_exit 15)" == 137 ]]'
  # The single-instance rule would find the dead program's window until the server has dropped it.
  need "the killed program's windows are gone" drv wait-window --gone --class Orvalen --any-visibility
}
# Done once the marker is back to 219 on disk: the open session is recorded.
restart() {
  app_start
  need "the restart records the open session" app_wait_until 40 app_u8_is "$APP_CONFIG" 134 219
}
checkpoint_is() { app_u8_is "$APP_CONFIG" 134 218 && [[ "$(app_cstr "$APP_CONFIG" 6292 60)" == "$1" ]]; }

app_start
need "the program starts on the prepared files" wait_started
modes=(during-session after-disconnect at-start-up)
for (( r = 1; r <= rounds; r++ )); do
  name="ISP $r"
  mode=${modes[RANDOM % 3]}
  delay=$(( RANDOM % 301 ))
  dial connect "$name" >/dev/null
  need "the session of $name opens" app_wait_until 40 checkpoint_is "$name"
  logon=$(od -A n -t u4 -j 6260 -N 12 "$APP_CONFIG" | xargs | tr ' ' :)
  case $mode in
    during-session) ms_sleep "$delay"; kill_program; dial disconnect >/dev/null ;;
    after-disconnect) dial disconnect >/dev/null; ms_sleep "$delay"; kill_program ;;
    at-start-up)
      kill_program
      dial disconnect >/dev/null
      app_start
      need "the program starts to recover $name" wait_started
      ms_sleep "$delay"
      kill_program
      ;;
  esac
  restart
  records=$(log_records)
  label="round $r ($mode, ${delay} ms)"
  check "$label: every earlier session still once, $name once" "$(grep -vc "^$name|" <<<"$records") $(grep -c "^$name|" <<<"$records")" "$(( r - 1 )) 1"
  IFS='|' read -r _ duration on off < <(grep "^$name|" <<<"$records")
  if [[ $mode == during-session ]]; then
    check "$label: cut short, recorded from its checkpoint" "$duration|$on|$off" "0|$logon|$logon"
  else
    check "$label: logged on at the session's start, a short session" "$on $(( duration >= 0 && duration <= 5 ))" "$logon 1"
  fi
done
check_true "the program still runs after $rounds kills" app_running
app_finish
