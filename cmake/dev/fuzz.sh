# Part of ./dev: made-up inputs for the rules that take in what comes from outside. What they promise
# stands in tests/fuzz/targets, how it is built in tests/fuzz/native. The inputs that are kept are in
# tests/fuzz/corpus; the ordinary tests replay them.

fuzz_folder=$PWD/build/fuzz
fuzz_corpus=$PWD/tests/fuzz/corpus

# The unversioned packages are the release's own clang; its sanitizers come for 32 bits, too.
packages_to_fuzz=(clang libclang-rt-dev g++-multilib lib32z1-dev)

# usage: fuzz [SECONDS] [TARGET]...
#        fuzz --runs NUMBER [TARGET]...   so many inputs each, however long that takes
#        fuzz --keep [TARGET]...   the shortest inputs that reach what the kept ones do not are kept,
#                                  too, of those that runs on this machine have found
fuzz() {
  local keep= limit=-max_total_time=60 targets
  if [[ ${1:-} == --keep ]]; then
    keep=yes
    shift
  elif [[ ${1:-} == --runs ]]; then
    [[ ${2:-} =~ ^[0-9]+$ ]] || die "fuzz: --runs wants a number."
    limit=-runs=$2
    shift 2
  elif [[ ${1:-} =~ ^[0-9]+$ ]]; then
    limit=-max_total_time=$1
    shift
  fi
  check_fuzz_tools
  get_unzip_source
  stage fuzz-build build_fuzz
  mkdir -p "$fuzz_folder/crashes"
  targets=("$@")
  ((${#targets[@]} > 0)) || mapfile -t targets < <(ls "$fuzz_corpus")
  if [[ -n $keep ]]; then keep_inputs "${targets[@]}"; else run_targets "$limit" "${targets[@]}"; fi
}

check_fuzz_tools() {
  command -v clang++ >/dev/null ||
    die "fuzz: clang is missing; it is needed with its sanitizers, and g++ and zlib for 32 bits, too."
}

# Anew when the way there has changed.
get_unzip_source() {
  local source=build/third-party/unzip-source stamp
  stamp=$(cksum <cmake/unzip/build-unzip32)
  [[ $(cat "$source/stamp" 2>/dev/null) != "$stamp" ]] || return 0
  stage unzip-source cmake/unzip/build-unzip32 --source "$source"
  printf '%s\n' "$stamp" >"$source/stamp"
}

build_fuzz() {
  cmake -S tests/fuzz/native -B "$fuzz_folder" -G Ninja -DCMAKE_C_COMPILER=clang \
    -DCMAKE_CXX_COMPILER=clang++ && cmake --build "$fuzz_folder"
}

# usage: run_targets LIMIT TARGET...   A table with a line for each; an error when one crashed.
run_targets() {
  local limit=$1 target log crashes failed=0
  shift
  printf '%-18s %12s %10s %8s\n' target runs "new inputs" crashes
  for target; do
    log=build/log/fuzz-$target.txt
    crashes=0
    run_target "$target" "$limit" >"$log" 2>&1 || crashes=1
    printf '%-18s %12s %10s %8s\n' "$target" "$(told executed_units "$log")" \
      "$(told new_units_added "$log")" "$crashes"
    if ((crashes > 0)); then
      failed=1
      show_crash "$log"
    fi
  done
  return "$failed"
}

run_target() {
  local found=$fuzz_folder/found/$1
  [[ -x $fuzz_folder/bin/$1 ]] || die "fuzz: there is no target $1."
  mkdir -p "$found"
  with_sanitizers "$1" "$2" -max_len="$(longest_input "$1")" -print_final_stats=1 \
    -artifact_prefix="$fuzz_folder/crashes/$1-" "$found" "$fuzz_corpus/$1"
}

longest_input() {
  case $1 in
    archive_* | html_page | unpacking) say 600 ;;
    *) say 256 ;;
  esac
}

# usage: with_sanitizers TARGET [OPTION]...   The unzip library loses some memory now and then.
with_sanitizers() {
  local target=$1 leaks=1
  shift
  [[ $target != unpacking ]] || leaks=0
  ASAN_OPTIONS=quarantine_size_mb=8:malloc_context_size=4:detect_stack_use_after_return=0:detect_leaks=$leaks \
    "$fuzz_folder/bin/$target" -detect_leaks="$leaks" -timeout=10 -rss_limit_mb=1500 "$@"
}

# usage: told WORD LOG   A number that the fuzzer says at its end.
told() { sed -n "s/^stat::.*$1: *//p" "$2" | tail -n 1; }

show_crash() {
  grep -E 'promise is broken|ERROR:|runtime error:' "$1" | head -n 3 || true
  sed -n 's/.*Test unit written to /  the input is kept in /p' "$1"
  say "  all that was said is in $1"
}

# A file's name is its contents' hash, so nothing is kept twice.
keep_inputs() {
  local target
  for target; do
    mkdir -p "$fuzz_folder/found/$target"
    stage "keep-$target" with_sanitizers "$target" -set_cover_merge=1 -use_counters=0 \
      -artifact_prefix="$fuzz_folder/crashes/$target-" "$fuzz_corpus/$target" \
      "$fuzz_folder/found/$target"
  done
}
