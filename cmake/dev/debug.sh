# Part of ./dev: the program under a debugger. How to go on there is told in docs/debugging.md.

# The debugger asks the person who started it, so this stays in the foreground. Its commands: help.
run_debug() {
  start_wine
  stage debug-build build_debug "${1:-all}"
  if [[ -n ${1:-} ]]; then
    local program=$1
    shift
    wine winedbg "build/debug/bin/$program.exe" "$@"
  else
    lay_out_demo
    programs=build/debug/bin
    stage register register_add_in
    WINEPREFIX=$demo_prefix run_host_in "wine winedbg" --show-pages
  fi
}

build_debug() { cmake --preset debug && cmake --build --preset debug --target "$1"; }
