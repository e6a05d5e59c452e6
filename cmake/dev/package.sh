# Part of ./dev: what is given to users, in build/package.

package_folder=$PWD/build/package

# usage: package [--tests] [--twice]
package() {
  local make=make_package twice= word
  for word in "$@"; do
    case $word in
      --tests) make=make_tests_package ;;
      --twice) twice=1 ;;
      *) die "package knows no other words than --twice and --tests." ;;
    esac
  done
  stage package "$make" "$package_folder"
  if [[ -n $twice ]]; then
    stage again package_again "$make"
    compare_packages
  fi
  show_package
}

# usage: make_package FOLDER
make_package() {
  rm -rf "$1"
  mkdir -p "$1"
  installer/collect build/release/bin "$(project_version)" "$1/Quillet"
  mkdir "$1/pictures"
  installer/draw-pictures "$1/pictures"
  installer/build-setup "$1/Quillet" "$(project_version)" "$1/pictures" "$1/QuilletSetup.exe"
  zip_up "$1/Quillet" "$1/Quillet.zip"
  rm -r "$1/Quillet" "$1/pictures"
  cp build/release/bin/Quillet.dll.debug "$1/"
  write_sums "$1"
}

# usage: make_tests_package FOLDER   Beside what else is there.
make_tests_package() {
  mkdir -p "$1"
  tests/runner/collect build/release/bin "$(project_version)" "$1/QuilletTests"
  rm -f "$1/QuilletTests.zip"
  zip_up "$1/QuilletTests" "$1/QuilletTests.zip"
  rm -r "$1/QuilletTests"
  write_sums "$1"
}

write_sums() { (cd "$1" && rm -f SHA256SUMS.txt && sha256sum -- * >SHA256SUMS.txt); }

# An archive bears the times of its files in the time of the place where it is made.
zip_up() {
  (cd "$1" && find . -type f ! -name SHA256SUMS.txt -printf '%P\n' | sort | xargs -d '\n' sha256sum \
    >SHA256SUMS.txt && chmod 644 SHA256SUMS.txt && touch -r License.txt SHA256SUMS.txt &&
    find . -type f -printf '%P\n' | sort | TZ=UTC zip -q -X -D "$2" -@)
}

project_version() { sed -n 's/^project(Quillet VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt; }

# usage: package_again FUNCTION   In another place, time zone and with other rights for new files.
package_again() (
  umask 077
  export TZ=Asia/Kolkata
  rm -rf "$package_folder.again"
  "$1" "$package_folder.again"
)

compare_packages() {
  announce compare
  local file same=1
  for file in "$package_folder.again"/*; do
    [[ $file == */SHA256SUMS.txt ]] || cmp "$package_folder/${file##*/}" "$file" || same=
  done
  if [[ -n $same ]]; then
    report ok
    rm -r "$package_folder.again"
  else
    report failed
    return 1
  fi
}

show_package() {
  say "In build/package:"
  (cd "$package_folder" && stat -c '  %n (%s bytes)' -- *)
}
