# The commands fuzz and soak of the project's script, which reads this file when it runs one of them.
# shellcheck shell=bash
# The script's variables and functions:
# shellcheck disable=SC2154

help_fuzz() {
    cat -- "$root/tests/fuzz/help.txt"
}

help_soak() {
    cat <<'END'
Usage: ./korvid soak [SECONDS] [--seed N] [--sanitize]

Opens the gallery on a window system without a display, and lets a scripted random user click, drag, scroll, type, resize
the window and change pages and the appearance, ten times a second for 1200 seconds or as many as given. Fails on a
crash, on any message of the library or of Qt and, in runs of 600 seconds and more, when the memory in use grows by more
than 2 %.

  --seed N      makes another plan; the default is 1
  --sanitize    under the address, undefined-behaviour and leak sanitizers, in build/asan, for 300 seconds by default
END
}

# run_fuzzer <name> <seconds> <program> [option of libFuzzer]...: runs one fuzzer, which has been built.
run_fuzzer() {
    local name=$1 seconds=$2 program=$3 folder="$root/build/fuzz" options=("${@:4}")
    [[ -e $root/tests/fuzz/$name.dict ]] && options+=("-dict=$root/tests/fuzz/$name.dict")
    mkdir -p -- "$folder/corpus/$name" "$folder/seeds/$name"
    log "fuzzing $name for $seconds seconds"
    (cd -- "$folder" && KORVID_FUZZ_SEEDS="seeds/$name" FONTCONFIG_FILE="$folder/tests/support/fonts.conf" \
        QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8 \
        LSAN_OPTIONS="suppressions='$root/tests/leak-suppressions.txt' print_suppressions=0" \
        "bin/$program" -max_total_time="$seconds" -timeout=10 -print_final_stats=1 -artifact_prefix="$name-" \
        "corpus/$name" "${options[@]}" "seeds/$name") || fail "fuzzing $name failed; the input is in build/fuzz"
}

command_fuzz() {
    local name=paths seconds=60 line lines programs=()
    [[ $# -gt 0 && ! $1 =~ ^[0-9]+$ ]] && { name=$1; shift; }
    [[ $# -gt 0 ]] && { seconds=$1; shift; }
    mapfile -t lines < <(awk -v name="$name" '!/^#/ && (name == "all" || $1 == name)' "$root/tests/fuzz/fuzzers.txt")
    [[ $# -eq 0 && $seconds =~ ^[0-9]+$ && ${#lines[@]} -gt 0 ]] \
        || fail_with_usage "fuzz takes a name from its list, or 'all', and a number of seconds" fuzz
    install_missing build test fuzz
    for line in "${lines[@]}"; do
        read -r _ line _ <<<"$line"
        programs+=("$line")
    done
    build fuzz --target "${programs[@]}"
    for line in "${lines[@]}"; do
        read -r -a line <<<"$line"
        run_fuzzer "${line[0]}" "$seconds" "${line[@]:1}"
    done
}

command_soak() {
    local preset=release seconds='' seed=1
    while [[ $# -gt 0 ]]; do
        case $1 in
            --sanitize) preset=asan ;;
            --seed)
                [[ ${2:-} =~ ^[0-9]+$ ]] || fail_with_usage "--seed takes a number" soak
                seed=$2
                shift
                ;;
            *)
                [[ -z $seconds && $1 =~ ^[0-9]+$ ]] || fail_with_usage "soak does not know '$1'" soak
                seconds=$1
                ;;
        esac
        shift
    done
    [[ -n $seconds ]] || { [[ $preset == asan ]] && seconds=300 || seconds=1200; }
    check_proc
    install_missing build gallery test
    build "$preset" --target SoakTests
    log "the random user with seed $seed uses the gallery for $seconds seconds"
    LSAN_OPTIONS="suppressions='$root/tests/leak-suppressions.txt' print_suppressions=0" \
        KORVID_SOAK_SECONDS=$seconds KORVID_SOAK_SEED=$seed \
        "$root/build/$preset/bin/SoakTests" --gtest_filter='Soak.*' --gtest_brief=1 || fail "the soak run failed"
}
