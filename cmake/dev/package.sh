# Part of ./dev: what is given to users, in build/package.

package_folder=$PWD/build/package

# usage: package [--twice|--tests]
package() {
  case ${1:-} in
    '') stage package make_package "$package_folder"; show_package ;;
    --twice) stage package make_package "$package_folder"; stage again package_again; compare_packages ;;
    --tests) die "not yet" ;;
    *) die "package knows no other words than --twice and --tests." ;;
  esac
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
  (cd "$1" && sha256sum -- * >SHA256SUMS.txt)
}

# An archive bears the times of its files in the time of the place where it is made.
zip_up() {
  (cd "$1" && find . -type f ! -name SHA256SUMS.txt -printf '%P\n' | sort | xargs -d '\n' sha256sum \
    >SHA256SUMS.txt && chmod 644 SHA256SUMS.txt && touch -r License.txt SHA256SUMS.txt &&
    find . -type f -printf '%P\n' | sort | TZ=UTC zip -q -X -D "$2" -@)
}

project_version() { sed -n 's/^project(Quillet VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt; }

# In another place, time zone and with other rights for new files.
package_again() (
  umask 077
  export TZ=Asia/Kolkata
  make_package "$package_folder.again"
)

compare_packages() {
  announce compare
  if diff -r "$package_folder" "$package_folder.again"; then
    report ok
    rm -r "$package_folder.again"
  else
    report failed
    return 1
  fi
  show_package
}

show_package() {
  say "In build/package:"
  (cd "$package_folder" && stat -c '  %n (%s bytes)' -- *)
}
