# Part of ./dev: the project's own Wine prefix, and the order among commands that use it.

export WINEPREFIX=$PWD/build/wine WINEDEBUG=-all
export WINEDLLOVERRIDES='mscoree=;winemenubuilder.exe=d'
unset WINEARCH WINESERVER WINELOADER

# usage: alone_in_checkout COMMAND...   Runs a function of ours while no other ./dev works in this
# checkout, and ends whatever it started, also when interrupted.
alone_in_checkout() {
  mkdir -p build
  exec 9>build/lock
  flock --nonblock 9 || { say "waiting for another ./dev in this checkout"; flock 9; }

  # The command gets a process group of its own, so that it can be ended as a whole. What it starts
  # must not inherit the lock: Wine's services would keep it beyond their time.
  local group status=0
  set -m
  "$@" 9>&- </dev/null &
  group=$!
  set +m
  trap 'end_everything '"$group"'' EXIT
  trap 'exit 130' INT
  trap 'exit 143' TERM HUP
  wait "$group" || status=$?
  return "$status"
}

end_everything() {
  kill -TERM -- "-$1" 2>/dev/null || true
  local prefix
  for prefix in "$WINEPREFIX" "$WINEPREFIX"-[0-9]* "$WINEPREFIX-package" "$demo_prefix" "$setup_prefix" \
    "$bench_prefix"; do
    [[ ! -d $prefix ]] || WINEPREFIX=$prefix wineserver -k 2>/dev/null || true
  done
}

# With a server that stays, a program starts in hundredths of a second instead of seconds.
start_wine() {
  [[ -e $WINEPREFIX/system.reg ]] || stage prefix make_prefix
  [[ -O $WINEPREFIX ]] || die "build/wine belongs to another user: remove it, or be that user."
  wineserver -p >/dev/null 2>&1 </dev/null || true
  cmake/run-under-wine cmd /c exit || die "Wine cannot run 32-bit programs on this machine."
}

# Made beside its place and moved there when complete: a half-made prefix is never used.
make_prefix() (
  rm -rf "$WINEPREFIX.new"
  export WINEPREFIX=$WINEPREFIX.new
  unset DISPLAY
  wine wineboot -i &&
    wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d x11,null /f &&
    wine reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f &&
    wineserver -w && mv "$WINEPREFIX" "${WINEPREFIX%.new}"
)

# Files are linked, but for the registry, which is written in place.
clone_prefix() {
  rm -rf "$1"
  cp -al "$WINEPREFIX" "$1" && cp --remove-destination "$WINEPREFIX"/*.reg "$1/"
}

# The numbers of the processor cores that this process may run on, one a line.
usable_cores() {
  local range
  for range in $(taskset -cp $$ | sed 's/.*: //; s/,/ /g'); do
    seq "${range%-*}" "${range#*-}"
  done
}

# A program under Wine waits more than it works, so there are more prefixes for tests than cores. A
# prefix stays on one core: its programs and its server talk all the time, and across cores every
# word of theirs wakes a sleeping core, which takes three times as long. CTest hands the prefixes out
# as the resources that this file names: the prefix's number and its core.
make_test_prefixes() {
  local id core separator= cores
  mapfile -t cores < <(usable_cores)
  test_prefixes=$((2 * ${#cores[@]}))
  ((test_prefixes <= 8)) || test_prefixes=8
  {
    printf '{ "version": { "major": 1, "minor": 0 }, "local": [ { "wine": ['
    for ((id = 1; id <= test_prefixes; id++)); do
      core=${cores[id % ${#cores[@]}]}
      clone_prefix "$WINEPREFIX-$id"
      WINEPREFIX=$WINEPREFIX-$id taskset -c "$core" wineserver -p >/dev/null 2>&1 </dev/null || true
      printf '%s\n  { "id": "%d_%d" }' "$separator" "$id" "$core"
      separator=,
    done
    printf ' ] } ] }\n'
  } >build/test-prefixes.json
}
