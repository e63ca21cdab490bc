#!/bin/sh
# The simulation's long soak (tests/unit/simulation_test.cpp): COUNT schedules
# (seeds FIRST to FIRST + COUNT - 1) in JOBS processes at the lowest priority,
# each going through its seeds in chunks of 25,000 with a log each in build/soak,
# so the figures so far can be read at any time:
#   cat build/soak/*.log | grep '^simulation:'
# A chunk stops at its first failing seed and prints the command that repeats it
# and its shortest schedule; the others go on. Prints the totals at the end. A
# million schedules take about half an hour of one core.
#   scripts/soak-simulation.sh [COUNT] [JOBS] [FIRST]      (1000000 1 1)
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
count=${1:-1000000}
jobs=${2:-1}
first=${3:-1}
chunk=25000
cmake -S "$root" -B "$root/build/native" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$root/build/native" -j2 --target orvalen_unit_tests >/dev/null
out="$root/build/soak"
mkdir -p "$out"
rm -f "$out"/*.log
per=$(((count + jobs - 1) / jobs))
i=0
while [ "$i" -lt "$jobs" ]; do
  (
    start=$((first + i * per))
    end=$((start + per))
    [ "$end" -gt $((first + count)) ] && end=$((first + count))
    while [ "$start" -lt "$end" ]; do
      n=$chunk
      [ $((start + n)) -gt "$end" ] && n=$((end - start))
      ORVALEN_SIM_SEEDS="$start:$n" nice -n 19 "$root/build/native/tests/unit/orvalen_unit_tests" \
        --gtest_filter='Simulation.EverySession*' >"$out/seeds-$start.log" 2>&1 || true
      start=$((start + n))
    done
  ) &
  i=$((i + 1))
done
wait
awk '/^simulation:/ { s += $2; st += $7; c += $9; f += $12; k += $14; v += $16 }
  END { printf "total: %d schedules, %d steps, %d file calls, %d faults, %d kills, %d violations\n", s, st, c, f, k, v }' \
  "$out"/*.log
! grep -h -A6 'Failure' "$out"/*.log
