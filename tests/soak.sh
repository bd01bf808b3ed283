#!/usr/bin/env bash
# The long form of the tests, for a night: random models, interrupted runs, fuzzers. One summary at the end; ends with 1
# when anything failed. Settings come from the environment, see `make soak`. The programs must have been built.
set -uo pipefail
cd "$(dirname "$0")/.."
first=${FIRST_SEED:-1000} count=${SEEDS:-500} rounds=${ROUNDS:-2000} seconds=${FUZZ_SECONDS:-1800}
log=build/soak
mkdir -p $log
summary=()
status=0

# What failed keeps its log; property_failures/ stands beside it.
step() { # title, log, command ...
    local title=$1 file=$2 began=$SECONDS outcome=good
    shift 2
    echo "$title ..."
    "$@" > "$file" 2>&1 || { outcome="FAILED, see $file"; status=1; }
    summary+=("$(printf '%-40s %6d s   %s' "$title" $((SECONDS - began)) "$outcome")")
}

properties() {
    (cd $log && TARNVEXO_PROPERTY_SEEDS=$first:$count ../tests/app_tests --gtest_filter='Results.*' --gtest_brief=1)
}

step "properties of $count models from seed $first" $log/properties.log properties
step "$rounds interrupted runs" $log/interrupts.log /usr/bin/python3 tests/soak/interrupt_rounds.py \
    --program build/tarnvexo --generate build/tools/generate_model --rounds "$rounds" --seed "$first"
if [ "$seconds" != 0 ]; then
    step "fuzzers, $seconds s each" $log/fuzz.log fuzz/soak.sh "$seconds"
fi

echo
printf '%s\n' "${summary[@]}"
[ "$seconds" = 0 ] || cat $log/fuzz.log
exit $status
