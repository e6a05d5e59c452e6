# Part of ./dev: what the sources are checked with. Each file is checked again only when it, what it
# includes or a rule has changed since it was found clean.

# The formatter lays out some lines differently from version to version: 14 and 15 lay out these
# sources alike, 19 does not. Where the system has another one, an npm package brings the program.
formatter_package=clang-format@1.8.0
formatter_version='clang-format version 15.0.0'
formatter_folder=$PWD/build/third-party/formatter

formatter() {
  case $(clang-format --version 2>/dev/null) in
    *'version 14.'* | *'version 15.'*) command -v clang-format ;;
    *) say "$formatter_folder/node_modules/clang-format/bin/linux_x64/clang-format" ;;
  esac
}

our_sources() {
  find . -path ./build -prune -o '(' -name '*.cpp' -o -name '*.h' ')' -print | sort
}

get_formatter() {
  local program
  program=$(formatter)
  [[ ! -x $program ]] || return 0
  npm install --silent --ignore-scripts --prefix "$formatter_folder" "$formatter_package" &&
    [[ $("$program" --version) == "$formatter_version"* ]]
}

check_format() {
  our_sources | xargs "$(formatter)" --dry-run -Werror && return
  say "" "To put this right: $(formatter) -i FILE..."
  return 1
}

# usage: lint [--all]
lint() {
  case ${1:-} in
    '') ;;
    --all) rm -rf build/lint ;;
    *) die "lint knows no other word than --all." ;;
  esac
  mkdir -p build/lint
  stage formatter get_formatter
  stage format check_format
  stage floors cmake/dev/includes check
  stage tidy tidy
  stage cppcheck check_with_cppcheck
}

tidy() {
  # clang does not know where this compiler keeps its C++ headers, and takes the nothrow mark of
  # COM's methods for a part of their type.
  local include extra=(--extra-arg=-Wno-missing-exception-spec)
  while read -r include; do
    extra+=(--extra-arg=-isystem "--extra-arg=$include")
  done < <(i686-w64-mingw32-g++-win32 -E -v -x c++ /dev/null 2>&1 | sed -n 's/^ \(.*c++.*\)$/\1/p')
  # An option of the compiler that ships would be an error to clang.
  mkdir -p build/tidy
  sed -E 's/ -(fno-ipa-sra|malign-data=abi|mpreferred-stack-boundary=2)\b//g' \
    build/release/compile_commands.json >build/tidy/compile_commands.json
  # What every file's verdict depends on, beside the file and what it includes.
  clang-tidy --version | cat - .clang-tidy cmake/flags.cmake >build/lint/rules
  cmake/dev/includes stale build/lint/tidy build/lint/rules | that_are_built |
    xargs -r -P "$(nproc)" -n 1 cmake/dev/tidy-one "${extra[@]}"
}

# Of what another compiler or another set of options builds, clang-tidy could only guess the options.
that_are_built() {
  local each
  while IFS= read -r each; do
    if grep -qF "\"file\": \"$PWD/${each%%:*}\"" build/tidy/compile_commands.json; then
      say "$each"
    fi
  done
}

# Warnings that are off, each with its reason, stand in cppcheck-suppressions.txt.
check_with_cppcheck() {
  mkdir -p build/lint/cppcheck
  cppcheck --project=build/release/compile_commands.json --platform=win32W --library=windows \
    --enable=warning,performance,portability --inline-suppr --error-exitcode=1 --quiet \
    --cppcheck-build-dir=build/lint/cppcheck \
    -j "$(nproc)" --suppressions-list=cmake/dev/cppcheck-suppressions.txt
}
