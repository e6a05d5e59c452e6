# Part of ./dev: how long things take, held against bare loops of the same system calls. What is
# measured and how to read it is told in docs/performance.md.

bench_folder=$PWD/build/bench
bench_prefix=$PWD/build/wine-bench
bench_room=900       # megabytes: what is laid out, and what is copied, downloaded and unpacked of it
bench_patience=1800  # seconds for a row: one that takes longer hangs

# usage: bench [--port PORT] [ROW]...   The end is 0 when every row is within its limit, 3 when one
# is not, and 1 when one could not be run.
bench() {
  local port=0
  if [[ ${1:-} == --port ]]; then
    port=${2:-}
    [[ $port =~ ^[0-9]+$ ]] || die "bench: --port takes the number of a port."
    shift 2
  fi
  check_bench_tools
  check_bench_room
  stage lay-out bench/lay-out "$bench_folder/data"
  serve_downloads "$port"
  make_bench_prefix
  run_rows "$@"
}

check_bench_tools() {
  local tool
  for tool in wine wineserver taskset timeout python3 convert df; do
    command -v "$tool" >/dev/null || die "bench: $tool is missing; ./dev setup installs what it needs."
  done
}

check_bench_room() {
  mkdir -p "$bench_folder" || die "bench: $bench_folder cannot be made."
  local free taken=0
  free=$(df --output=avail -m "$bench_folder" | tail -n 1)
  [[ ! -e $bench_folder/data/complete ]] || taken=$(du -sm "$bench_folder/data" | cut -f 1)
  ((free + taken >= bench_room)) ||
    die "bench: the disk of $bench_folder is too full: $bench_room MB are needed, $((free + taken))" \
      "MB can be had."
}

# The server keeps off the core that is measured on, when there is another one.
serve_downloads() {
  local file=$bench_folder/address cores server
  mapfile -t cores < <(usable_cores)
  bench_core=${cores[0]}
  rm -f "$file"
  taskset -c "${cores[-1]}" bench/serve "$bench_folder/data" "$1" "$file" \
    >build/log/bench-server.txt 2>&1 &
  server=$!
  until [[ -s $file ]]; do
    kill -0 "$server" 2>/dev/null || die "$(tail -n 1 build/log/bench-server.txt)"
    sleep 0.05
  done
  bench_address=$(<"$file")
}

# A prefix of its own, like a test's: its programs and its server stay on one core.
make_bench_prefix() {
  WINEPREFIX=$bench_prefix wineserver -k 2>/dev/null || true
  clone_prefix "$bench_prefix" || die "bench: the prefix $bench_prefix cannot be made."
  ln -s "$bench_folder/data" "$bench_prefix/drive_c/Bench"
  WINEPREFIX=$bench_prefix taskset -c "$bench_core" wineserver -p >/dev/null 2>&1 </dev/null || true
}

# usage: on_one_core WORD...   As quillet-bench takes them. What Wine says to the side is not wanted.
on_one_core() {
  QUILLET_PREFIX=$bench_prefix taskset -c "$bench_core" timeout "$bench_patience" \
    cmake/run-under-wine build/release/bin/quillet-bench.exe 'C:\Bench' "$bench_address" "$@" |
    tr -d '\r'
}

run_rows() {
  local results=$bench_folder/results row failed=0 rows=("$@")
  ((${#rows[@]} > 0)) || mapfile -t rows < <(on_one_core rows)
  ((${#rows[@]} > 0)) || die "bench: quillet-bench does not start."
  : >"$results"
  for row in "${rows[@]}"; do
    announce "$row"
    if measure "$row" >>"$results"; then
      report ok
    else
      report "cannot be run: $(why_not "$row")"
      failed=1
    fi
  done
  say ""
  local status=0
  bench/report "$results" build/bench.json || status=$?
  ((failed == 0)) || die "bench: not every row could be run."
  return "$status"
}

# The one line that tells of the row; all that was said is in the row's log.
measure() { on_one_core row "$1" >"build/log/bench-$1.txt" && grep $'\t' "build/log/bench-$1.txt"; }

why_not() {
  local log=build/log/bench-$1.txt
  if [[ ! -s $log ]]; then
    say "it came to no end in $bench_patience seconds"
  elif grep -q '^Unhandled exception' "$log"; then
    say "it crashed, see $log"
  else
    grep -v Gecko "$log" | tail -n 1
  fi
}
