#!/usr/bin/env bash
# Builds every fuzzer, runs each for SECONDS from its committed corpus, and keeps the smallest set of inputs with the
# same coverage in build-fuzz/corpus/TARGET. Prints a line per target: executions, coverage and features as libFuzzer
# counts them, inputs kept, findings. Ends with 1 when there is a finding; its input is in build-fuzz/findings.
#     fuzz/soak.sh [SECONDS [TARGET ...]]          1800 seconds and all targets unless told otherwise
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-1800}
shift || true
build=build-fuzz

# target: dictionary, longest input, committed corpus
settings() {
    case $1 in
        reader_fuzz)        echo "fuzz/model_file.dict 4096 tests/input/corpus" ;;
        run_fuzz)           echo "fuzz/model_file.dict 4096 tests/input/corpus" ;;
        contour_fuzz)       echo "fuzz/contour_file.dict 8192 tests/input/contour_corpus" ;;
        strict_reader_fuzz) echo "fuzz/model_file.dict 4096 tests/input/corpus" ;;
        *) echo "fuzz/soak.sh: error: there is no fuzzer $1" >&2; exit 2 ;;
    esac
}

cmake -S . -B $build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER="${CLANG:-clang++-14}" \
    -DTARNVEXO_FUZZ=ON -DTARNVEXO_TESTS=OFF -DTARNVEXO_BENCH=OFF > /dev/null
targets=("$@")
[ $# != 0 ] || targets=(reader_fuzz strict_reader_fuzz contour_fuzz run_fuzz)
cmake --build $build --target "${targets[@]}" > /dev/null

mkdir -p $build/findings
status=0
for target in "${targets[@]}"; do
    read -r dictionary longest seeds <<< "$(settings "$target")"
    found=$PWD/$build/corpus/$target
    log=$PWD/$build/$target.log
    findings=$PWD/$build/findings/$target-
    program=$PWD/$build/fuzz/$target
    mkdir -p "$found"
    # -close_fd_mask=1: what the program prints is thrown away. Paths are absolute: run_fuzz changes its directory.
    result=0
    nice -n 19 "$program" -dict="$PWD/$dictionary" -max_len="$longest" -max_total_time="$seconds" -print_final_stats=1 \
        -close_fd_mask=1 -artifact_prefix="$findings" "$found" "$PWD/$seeds" > "$log" 2>&1 || result=$?
    rm -rf "$found.smallest"
    mkdir "$found.smallest"
    nice -n 19 "$program" -merge=1 "$found.smallest" "$found" "$PWD/$seeds" > "$log.merge" 2>&1
    rm -rf "$found"
    mv "$found.smallest" "$found"
    executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    coverage=$(grep -o 'cov: [0-9]* ft: [0-9]*' "$log" | tail -n 1)
    finding="no finding"
    if [ $result != 0 ]; then
        finding="FINDING, see $log and $findings*"
        status=1
    fi
    printf '%-18s %12s executions   %-22s %5d inputs   %s\n' "$target" "${executions:-?}" "$coverage" \
        "$(ls "$found" | wc -l)" "$finding"
done
exit $status
