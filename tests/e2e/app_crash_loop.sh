#!/usr/bin/env bash
# app_crash_loop.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR
#
# The program killed with kill -9 again and again, at random moments of its
# sessions: during a session, 0-300 ms after a disconnect (while the log and then
# the configuration are saved), and at start-up (while it recovers the session it
# was killed in). After every restart the log on disk must hold each session
# once; one cut short is recorded from its checkpoint (duration 0 within the first
# three minutes). Round r uses the connection "ISP r" so every session can be
# told apart. ORVALEN_CRASH_SEED repeats a run; ORVALEN_CRASH_ROUNDS sets the count.
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=app_lib.sh
source "$here/app_lib.sh"
app_setup crash-loop "$@"

seed=${ORVALEN_CRASH_SEED:-$(( $(date +%s) % 100000 ))}
rounds=${ORVALEN_CRASH_ROUNDS:-20}
RANDOM=$seed
echo "seed $seed (ORVALEN_CRASH_SEED=$seed repeats this run), $rounds rounds"

# A configuration as a first run leaves it, with an account set up for every
# connection of the test, so no account notice comes between the kills; and the
# fresh log beside it.
mkdir -p "$APP_INSTALL"
python3 - "$APP_CONFIG" "$APP_LOG" "$rounds" <<'EOF'
import struct, sys
config, log, rounds = sys.argv[1], sys.argv[2], int(sys.argv[3])
block = bytearray(6352)
block[0:12] = b"orvalen_v015"
struct.pack_into("<fI", block, 20, 1.0, 1)
block[43:46] = bytes([1, 0, 2])
block[52:56] = bytes([0, 10, 30, 30])
struct.pack_into("<I", block, 60, 1)
block[133], block[134] = 1, 219
for k in range(min(rounds, 50)):
    struct.pack_into("<I32sI", block, 136 + 120 * k, 1, b"ISP %d" % (k + 1), 3)  # unlimited
open(config, "wb").write(block)
open(log, "wb").write(struct.pack("<II", 2, 384) + bytes(384))
EOF

# "name|duration|log-on h:m:s|log-off h:m:s" for every record in use.
log_records() {
  python3 - "$APP_LOG" <<'EOF'
import struct, sys
data = open(sys.argv[1], "rb").read()
count = struct.unpack_from("<I", data, 0)[0] if len(data) >= 8 else 0
for i in range(count):
    rec = data[8 + 192 * i: 8 + 192 * (i + 1)]
    if len(rec) < 192 or rec[0] != 1:
        continue
    on, off = struct.unpack_from("<3I", rec, 20), struct.unpack_from("<3I", rec, 32)
    name = rec[87:].split(b"\0")[0].decode("latin-1")
    print("%s|%d|%d:%d:%d|%d:%d:%d" % ((name, struct.unpack_from("<i", rec, 48)[0]) + on + off))
EOF
}

ms_sleep() { sleep "$(printf '0.%03d' "$1")"; }

wait_started() {  # the hidden main window exists: storage is loaded
  drv wait-window --class Orvalen --any-visibility --timeout-ms 30000 >/dev/null
}

kill_program() {
  local pid
  pid=$(app_unix_pid) || app_abort "the Wine process of Orvalen.exe is found"
  kill -9 "$pid"
  [[ "$(app_wait_exit 15)" == 137 ]] || app_abort "the killed program ended"
  # The single-instance rule would find the dead program's window until the
  # server has dropped it.
  drv wait-gone --class Orvalen --any-visibility >/dev/null || app_abort "the killed program's windows are gone"
}

# Done once the marker is back to 219 on disk: the open session is recorded.
restart() {
  app_start
  app_wait_until 40 app_u8_is "$APP_CONFIG" 134 219 || app_abort "the restart records the open session"
}

open_session() {  # NAME: connected, and the session's first checkpoint on disk
  dial connect "$1" >/dev/null
  checkpoint_is() { app_u8_is "$APP_CONFIG" 134 218 && [[ "$(app_cstr "$APP_CONFIG" 6292 60)" == "$1" ]]; }
  app_wait_until 40 checkpoint_is "$1" || app_abort "the session of $1 opens"
}

app_start
wait_started || app_abort "the program starts on the prepared files"
modes=(during-session after-disconnect at-start-up)
for (( r = 1; r <= rounds; r++ )); do
  name="ISP $r"
  mode=${modes[RANDOM % 3]}
  delay=$(( RANDOM % 301 ))
  open_session "$name"
  logon=$(app_hms "$APP_CONFIG" 6260)
  case $mode in
    during-session)
      ms_sleep "$delay"
      kill_program
      dial disconnect >/dev/null
      restart
      ;;
    after-disconnect)
      dial disconnect >/dev/null
      ms_sleep "$delay"
      kill_program
      restart
      ;;
    at-start-up)
      kill_program
      dial disconnect >/dev/null
      app_start
      wait_started || app_abort "the program starts to recover $name"
      ms_sleep "$delay"
      kill_program
      restart
      ;;
  esac

  mapfile -t records < <(log_records)
  mine=() others=0
  for line in "${records[@]}"; do
    if [[ ${line%%|*} == "$name" ]]; then mine+=("$line"); else others=$(( others + 1 )); fi
  done
  label="round $r ($mode, ${delay} ms)"
  check "$label: every earlier session still once" "$others" "$(( r - 1 ))"
  check "$label: $name recorded once" "${#mine[@]}" 1
  IFS='|' read -r _ duration on off <<<"${mine[0]:-}"
  case $mode in
    during-session)
      check "$label: cut short, recorded from its checkpoint" "$duration|$on|$off" "0|$logon|$logon" ;;
    *)
      check "$label: logged on at the session's start" "$on" "$logon"
      (( duration >= 0 && duration <= 5 )) || check "$label: a short session's duration" "$duration" "0..5" ;;
  esac
done
check_true "the program still runs after $rounds kills" app_running
app_finish
