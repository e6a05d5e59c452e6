# Part of ./dev: what the sources are checked with.

our_sources() {
  find . -path ./build -prune -o '(' -name '*.cpp' -o -name '*.h' ')' -print | sort
}

check_format() {
  our_sources | xargs clang-format --dry-run -Werror && return
  say "" "To put this right: clang-format -i FILE..."
  return 1
}

lint() {
  stage format check_format
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
  sed 's/ -fno-ipa-sra//g' build/release/compile_commands.json >build/tidy/compile_commands.json
  our_sources | grep '\.cpp$' | xargs -P "$(nproc)" -n 1 clang-tidy -p build/tidy --quiet "${extra[@]}"
}

# Warnings that are off, each with its reason, stand in cppcheck-suppressions.txt.
check_with_cppcheck() {
  cppcheck --project=build/release/compile_commands.json --platform=win32W --library=windows \
    --enable=warning,performance,portability --inline-suppr --error-exitcode=1 --quiet \
    -j "$(nproc)" --suppressions-list=cmake/dev/cppcheck-suppressions.txt
}
