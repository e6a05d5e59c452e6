# Part of ./dev: small changes to the code of what ships, and whether the tests notice them. How it works
# is told in docs/mutation.md.

# The unversioned packages are the release's own clang: its library for Python, and its headers.
packages_to_mutate=(python3-clang clang)

# usage: mutate [--all | --again] [ROOM]...
mutate() {
  local count=30 again=() rooms
  case ${1:-} in
    --all) count=all; shift ;;
    --again) again=(--again); shift ;;
  esac
  rooms=("$@")
  cmake/dev/mutation/mutate check "${rooms[@]}" || return 2
  start_wine
  stage configure cmake --preset release
  stage changes cmake/dev/mutation/mutate prepare "$count"
  stage mutants build_mutants
  make_test_prefixes
  cmake/dev/mutation/mutate try "${again[@]}" "${rooms[@]}" 2>build/log/mutate.txt
}

# Its own build files would find no prefix of Wine beside them.
build_mutants() (
  export QUILLET_PREFIX=$WINEPREFIX
  mapfile -t targets < <(cmake/dev/mutation/mutate targets)
  cd build/mutate/sources && cmake --preset release && cmake --build --preset release --target "${targets[@]}"
)
