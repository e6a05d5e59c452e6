# Part of ./dev: installs exactly what is missing. Tried on bare systems of Debian 12 and Debian 13; on
# others derived from Debian it may serve as it is.

packages_to_work=(
  wine wine32:i386 wine64 g++-mingw-w64-i686-win32 libz-mingw-w64-dev mingw-w64-tools doctest-dev
  cmake ninja-build dpkg-dev patch locales python3 python3-pyftpdlib zip 7zip libarchive-tools fastjar
  nsis xvfb openbox imagemagick x11-utils fonts-wine fonts-liberation)

# npm only where the system's own formatter is of another version, see lint.sh.
packages_to_lint() {
  say clang-tidy cppcheck
  case $(apt-cache policy clang-format 2>/dev/null) in
    *'Candidate: 1:14.'* | *'Candidate: 1:15.'*) say clang-format ;;
    *) say npm ;;
  esac
}

# usage: set_up [PACKAGE...]   The packages that are wanted beside those that every command needs.
set_up() {
  if command -v dpkg-query >/dev/null && command -v apt-get >/dev/null; then
    local missing
    mapfile -t missing < <(missing_packages "${packages_to_work[@]}" "$@")
    ((${#missing[@]} == 0)) || (install_packages "${missing[@]}")
  else
    check_tools_elsewhere
  fi
  cmake/unzip/build-unzip32
  make_locales
}

# Under which Windows programs have code page 932, and 65001.
make_locales() {
  local name
  for name in ja_JP hi_IN; do
    [[ -d build/locales/$name.UTF-8 ]] && continue
    mkdir -p build/locales
    localedef -i "$name" -f UTF-8 "build/locales/$name.UTF-8" ||
      die "The locale $name cannot be made: glibc's localedef and its sources of locales are needed."
  done
}

missing_packages() {
  local installed package
  installed=$(dpkg-query -W -f '${db:Status-Status} ${Package} ${Package}:${Architecture} \n' "$@" \
    2>/dev/null | sed -n 's/^installed//p') || true  # it also fails for a package not installed
  for package; do
    [[ $installed == *" $package "* ]] || say "$package"
  done
}

check_tools_elsewhere() {
  local tool
  for tool in wine wineserver i686-w64-mingw32-g++-win32 i686-w64-mingw32-windres \
    i686-w64-mingw32-widl cmake ninja python3 zip 7zz bsdtar fastjar makensis localedef Xvfb openbox import; do
    command -v "$tool" >/dev/null || missing_elsewhere "$tool"
  done
  # The compiler answers with a path when it finds the library.
  [[ $(i686-w64-mingw32-g++-win32 -print-file-name=libz.a) == */* ]] || missing_elsewhere libz.a
  [[ -r /usr/include/doctest/doctest.h ]] || missing_elsewhere /usr/include/doctest/doctest.h
}

missing_elsewhere() {
  die "$1 is missing, and only Debian is set up by itself. Needed here: Wine for" \
    "32-bit and 64-bit programs, mingw-w64's g++ for i686 with the win32 thread model, its windres" \
    "and widl, its zlib, doctest, CMake 3.25, Ninja, Python 3 with its pyftpdlib, zip, 7-Zip," \
    "bsdtar, fastjar, NSIS 3, localedef with its sources, Xvfb, openbox, ImageMagick, xdpyinfo, the Liberation fonts, and Info-ZIP's" \
    "unzip32.dll in build/third-party/unzip; clang-format 14 or 15, clang-tidy and cppcheck to lint."
}

# Runs in a subshell, whose end removes the temporary files however it comes.
install_packages() {
  local by_hand="apt-get install $*"
  as_root=()
  if ((EUID != 0)); then
    command -v sudo >/dev/null || die "Setting up needs root and there is no sudo: as root, $by_hand"
    as_root=(sudo)
    sudo true || die "Setting up needs root and sudo refused: as root, $by_hand"
  fi
  mkdir -p build/log
  setup_log=build/log/setup.txt
  : >"$setup_log"
  temporary=$(mktemp -d)
  trap 'rm -rf "$temporary"' EXIT
  trap 'exit 130' INT TERM HUP

  say "setup   installing $*"
  add_32_bit_architecture
  say "setup   updating the package lists"
  apt update || say "setup   some lists could not be updated; going on with those there are"
  if apt install --simulate "$@"; then
    apt install "$@" || setup_failed "$@"
  else
    # The security archive's 32-bit list can lag behind the 64-bit one. Both architectures of a
    # library must have one version, so for this once both are taken from the main archive.
    say "setup   the packages do not fit together; trying with the main archive before the security one"
    prefer_main_archive
    apt install "$@" || setup_failed "$@"
  fi
}

add_32_bit_architecture() {
  { dpkg --print-architecture && dpkg --print-foreign-architectures; } | grep -qx i386 && return
  say "setup   adding the architecture i386 to dpkg"
  "${as_root[@]}" dpkg --add-architecture i386 || die "dpkg could not add the architecture i386."
}

# The user's own preferences stay in force beside the one added.
prefer_main_archive() {
  mkdir "$temporary/preferences.d"
  cp -r /etc/apt/preferences.d/. "$temporary/preferences.d/" 2>/dev/null || true
  printf '%s\n' 'Package: *' 'Pin: release l=Debian-Security' 'Pin-Priority: 100' \
    >"$temporary/preferences.d/quillet-setup"
  apt_options=(-o "Dir::Etc::PreferencesParts=$temporary/preferences.d")
}

apt_options=()
apt() {
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -y --no-install-recommends \
    -o DPkg::Lock::Timeout=300 -o Dpkg::Use-Pty=0 "${apt_options[@]}" "$@" \
    >>"$setup_log" 2>&1 </dev/null
}

setup_failed() {
  grep -E '^(E|W):|Depends:' "$setup_log" | tail -n 15 >&2
  die "Setting up failed: apt-get could not install $* (all it said is in $setup_log)."
}
