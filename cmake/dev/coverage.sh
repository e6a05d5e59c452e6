# Part of ./dev: which lines and branches of the product the tests run. How to read it stands in
# docs/checks.md.

coverage_counts=$PWD/build/coverage/counts
coverage_page=$PWD/build/coverage/index.html
gcov=i686-w64-mingw32-gcov-win32 gcov_tool=i686-w64-mingw32-gcov-tool-win32

# usage: coverage [--again]   The end is 0 when every line is run or has a reason. --again makes the
#                             page of what was counted last, after a reason was written.
coverage() {
  local failed=0
  case ${1:-} in
    '') count_what_runs || failed=1 ;;
    --again) ;;
    *) die "coverage knows no other word than --again." ;;
  esac
  [[ -d $coverage_counts/all ]] || die "coverage: nothing has been counted."
  cmake/dev/coverage page "$coverage_counts/all" "$coverage_page" "$gcov" || failed=1
  return "$failed"
}

# Programs write their counts where these variables say, those of each prefix into a folder of its own
# (0 for what runs without one).
count_what_runs() {
  local failed=0 strip=${PWD//[^\/]/}//
  preset=coverage
  export GCOV_PREFIX="Z:$coverage_counts" GCOV_PREFIX_STRIP=${#strip}
  # Those of the programs that the build asks for their tests do not count; those of an earlier build
  # would be complained of among the names of the tests.
  rm -rf "$coverage_counts"
  build
  rm -rf "$coverage_counts"
  test_what_is_built || failed=1
  unset GCOV_PREFIX GCOV_PREFIX_STRIP # the tools take them for their own
  stage merge merge_counts
  return "$failed"
}

# All prefixes together, each file beside the one that says what its counts mean.
merge_counts() (
  cd "$coverage_counts"
  whole=0
  mkdir -p 0
  for slot in [1-9]; do
    mkdir -p "to-$slot"
    (cd "$whole" && find . -type d && cd "../$slot" && find . -type d) | (cd "to-$slot" && xargs mkdir -p)
    if [[ -z $(find "$whole" -name '*.gcda' -print -quit) ]]; then
      cp -r "$slot/." "to-$slot/"
    else
      "$gcov_tool" merge "$whole" "$slot" -o "to-$slot" || exit 1
    fi
    whole=to-$slot
  done
  mv "$whole" all
  cd .. && find . -path ./counts -prune -o -name '*.gcno' -print0 |
    xargs -0 cp -l --parents -t "$coverage_counts/all"
)
