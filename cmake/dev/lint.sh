# Part of ./dev: what the sources are checked with.

our_sources() {
  find . -path ./build -prune -o '(' -name '*.cpp' -o -name '*.h' ')' -print | sort
}

check_format() {
  our_sources | xargs clang-format --dry-run -Werror && return
  say "" "To put this right: clang-format -i FILE..."
  return 1
}
