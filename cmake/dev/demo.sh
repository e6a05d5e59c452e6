# Part of ./dev: the add-in at work in the stand-in host.

# The demo plays in build/demo, which Windows programs see as C:\Demo.
demo_folder=$PWD/build/demo
demo_prefix=$demo_folder/wine
# In which nothing of ours is installed at first.
setup_prefix=$demo_folder/wine-setup
programs=build/release/bin
demo_web='C:\Demo\web'

# usage: demo [--tour]; without a display it is always the tour
demo() {
  case ${1:-} in
    '')
      if [[ -z ${DISPLAY:-} ]]; then
        say "There is no display here, so the demo takes the tour by itself."
        set -- --tour
      fi
      ;;
    --tour) ;;
    *) die "The demo knows no other word than --tour." ;;
  esac
  lay_out_demo
  if [[ -z ${1:-} ]]; then
    export QUILLET_DISPLAY=$DISPLAY
    start_catalogue
    stage register register_add_in
    say "The menu that holds the add-in's two entries is under Format."
    run_host --show-pages
  else
    start_display
    start_catalogue archives/tide-tables.zip "$demo_folder/online-06-downloading.png"
    stage register register_add_in
    show_tree "The web before:"
    tour
    show_tree "The web after:"
    check_copies
    tour_of_setup
    tour_of_looks
    stage pictures show_off
    say "" "The pictures are in build/demo:" "$(cd "$demo_folder" && ls -- *.png *.gif)" "" "demo: ok"
  fi
}

# A copy of everything, so that nothing done in the demo changes the samples. The prefix is a copy
# too: what is registered and set in the demo stays out of the tests' way.
lay_out_demo() {
  QUILLET_PREFIX=$demo_prefix
  export QUILLET_PREFIX
  rm -rf "$demo_folder"
  mkdir -p "$demo_folder/shared" "$demo_folder/downloads"
  cp -r samples/templates samples/web "$demo_folder/"
  cp -r samples/themes "$demo_folder/shared/Themes11"
  cp -r build/release/samples/catalogue/site "$demo_folder/catalogue"
  cp build/release/samples/catalogue/shelf/*.zip "$demo_folder/catalogue/archives/"
  # What the host keeps for itself in a folder that it has opened, and what no copy takes along.
  mkdir "$demo_folder/templates/Night Ferry/_vti_cnf"
  say 'vti_encoding:SR|utf8-nl' >"$demo_folder/templates/Night Ferry/_vti_cnf/ferry.dwt"
  clone_prefix "$demo_prefix"
  ln -s "$demo_folder" "$demo_prefix/drive_c/Demo"
}

# What an installation leaves in the registry, beside what the add-in registers by itself.
register_add_in() {
  local key='HKLM\Software\Korvel Software\Quillet Viewer'
  cmake/run-under-wine regsvr32 /s 'Z:'"$PWD/$programs/Quillet.dll" &&
    add_value "$key\DWT Folders" 'C:\Demo\templates' '' &&
    add_value "$key" DWTOnline "$catalogue_address/index.htm" &&
    tell_of_shared_files
}

tell_of_shared_files() {
  add_value 'HKLM\Software\Microsoft\Shared tools' SharedFilesDir 'C:\Demo\shared\'
}

add_value() { cmake/run-under-wine reg add "$1" /v "$2" /d "$3" /f /reg:32; }
add_number() { cmake/run-under-wine reg add "$1" /v "$2" /t REG_DWORD /d "$3" /f; }

run_host() { run_host_in cmake/run-under-wine "$@"; }

# usage: run_host_in "RUNNER..." [HOST OPTION]...
run_host_in() {
  local runner=$1
  shift
  $runner "$programs/quillet-host.exe" "$demo_web" \
    --themes 'C:\Demo\shared\Themes11' --pictures 'C:\Demo' "$@"
}

# usage: start_catalogue [SLOW_FILE UNTIL]   As samples/catalogue/serve takes them.
start_catalogue() {
  local file=$demo_folder/address
  samples/catalogue/serve "$demo_folder/catalogue" "$file" "$@" >build/log/catalogue.txt 2>&1 &
  wait_for_file "$file" || die "The sample catalogue is not served; see build/log/catalogue.txt."
  catalogue_address=$(<"$file")
  rm "$file"
}

# After the downloads the host is started anew, as the message about the theme asks for.
tour() {
  walk tour --show-pages && walk tour-messages && walk tour-no-menu --option templatesMenu=0 &&
    walk tour-online --show-pages && walk tour-restarted --show-pages
}

# usage: walk SCRIPT [HOST OPTION]...   Runs one of the samples' scripts.
walk() {
  local script=$1
  shift
  announce "$script"
  if run_host --script "Z:$PWD/samples/$script.txt" "$@" >"build/log/$script.txt" 2>&1; then
    report ok
  else
    report failed
    cat "build/log/$script.txt"
    return 1
  fi
}

# From the setup program to a template of one's own in a catalogue of one's own. The host is started anew
# to find what was installed.
tour_of_setup() {
  cp build/release/installer/QuilletSetup.exe build/release/tests/installer/OlderSetup.exe "$demo_folder/"
  cp -r samples/author "$demo_folder/"
  cp -r samples/web "$demo_folder/another-web"
  demo_web='C:\Demo\another-web'
  clone_prefix "$setup_prefix"
  ln -s "$demo_folder" "$setup_prefix/drive_c/Demo"
  export QUILLET_PREFIX=$setup_prefix
  export QUILLET_CATALOGUE=$catalogue_address/quay
  tell_of_shared_files && walk tour-setup && walk tour-publishing --show-pages && walk tour-help
}

# The windows on a screen with twice as many dots, and in colours of high contrast.
tour_of_looks() {
  export QUILLET_PREFIX=$demo_prefix
  demo_web='C:\Demo\web'
  WINEPREFIX=$demo_prefix wineserver -w  # until then its desktop is on the other display
  start_display 1920x1200
  add_number 'HKCU\Control Panel\Desktop' LogPixels 192
  walk_as 200-percent
  add_number 'HKCU\Control Panel\Desktop' LogPixels 96
  set_high_contrast
  walk_as high-contrast
}

# usage: walk_as NAME   Calls the pictures after what was set.
walk_as() {
  local picture
  walk tour-look || return 1
  for picture in "$demo_folder"/look-*; do mv "$picture" "${picture/look/$1}"; done
}

set_high_contrast() {
  local name
  for name in Window Background ButtonFace ButtonShadow Menu MenuBar InfoWindow Scrollbar ActiveTitle \
    InactiveTitle AppWorkspace; do
    add_value 'HKCU\Control Panel\Colors' "$name" '0 0 0'
  done
  for name in WindowText ButtonText MenuText InfoText TitleText WindowFrame ButtonHilight ButtonLight \
    ButtonDkShadow InactiveTitleText; do
    add_value 'HKCU\Control Panel\Colors' "$name" '255 255 255'
  done
  add_value 'HKCU\Control Panel\Colors' Hilight '26 235 255'
  add_value 'HKCU\Control Panel\Colors' HilightText '0 0 0'
  add_value 'HKCU\Control Panel\Colors' GrayText '63 242 63'
  add_value 'HKCU\Control Panel\Accessibility\HighContrast' Flags 127
  add_value 'HKCU\Software\Microsoft\Windows\CurrentVersion\ThemeManager' ThemeActive 0
}

# What README shows: the browser and the catalogue, and, in one small picture that moves, the way from the
# menu to a copied template and from the catalogue to a new one. All of the host's window alone.
show_off() (
  cd "$demo_folder"
  host=892x637+24+24
  convert 04-browser.png -crop $host +repage +dither -colors 255 browser.png
  convert online-01-catalogue.png -crop $host +repage +dither -colors 255 online.png
  convert -loop 0 -delay 200 02-menu.png 04-browser.png 12-destination-question.png 13-copying.png \
    14-copied.png online-01-catalogue.png online-06-downloading.png online-20-listed.png online-21-copied.png \
    -crop $host +repage +dither -colors 96 -layers optimize tour.gif
)

# usage: start_display [SIZE]   A display of the demo's own, with a window manager that draws the title bars.
start_display() {
  local file=$demo_folder/display size=${1:-1024x768}
  Xvfb -displayfd 1 -screen 0 "${size}x24" -nolisten tcp >"$file" 2>/dev/null &
  wait_for_file "$file" || die "Xvfb gave no display."
  QUILLET_DISPLAY=:$(<"$file")
  export QUILLET_DISPLAY
  rm "$file"
  DISPLAY=$QUILLET_DISPLAY openbox --sm-disable >/dev/null 2>&1 &
  display -display "$QUILLET_DISPLAY" -window root -size "$size" 'xc:#4a6b8a' || true
}

wait_for_file() {
  local tries
  for ((tries = 0; tries < 100; tries++)); do
    [[ ! -s $1 ]] || return 0
    sleep 0.1
  done
  return 1
}

show_tree() {
  say "" "$1"
  (cd "$demo_folder/web" && find . -mindepth 1 | sort | sed 's|[^/]*/|  |g')
}

# What the tours left behind, against what it came from.
check_copies() {
  local wrong copies=$demo_folder/web/dwts online=samples/catalogue
  say "" "The themes in the copied templates:"
  grep -h '<meta name="Microsoft Theme"' "$copies"/*/*.dwt || true
  wrong=$(
    what_is_wrong 'samples/templates/Night Ferry' "$copies/Night Ferry" 'nightferry 1111'
    what_is_wrong "$online/templates/Tide Tables" "$copies/Tide Tables" 'seaglass 1011'
    what_differs "$online/templates/Tide Tables" "$demo_folder/templates/Tide Tables"
    what_differs "$online/templates/Paper Lanterns" "$demo_folder/downloads/Paper Lanterns"
    what_differs "$online/themes/seaglass" "$demo_folder/shared/Themes11/seaglass"
  )
  [[ -z $wrong ]] || die "demo: not everything is as it should be"$'\n'"$wrong"
}

what_differs() { diff -rq "$1" "$2" 2>&1 || true; }

# usage: what_is_wrong TEMPLATE COPY THEME   One line for each difference that should not be.
what_is_wrong() {
  local file mark="<meta name=\"Microsoft Theme\" content=\"$3\">"
  [[ -d $2 ]] || { say "has not come about: $2"; return; }
  while read -r file; do
    [[ -f $2/$file ]] || { say "missing: $file"; continue; }
    case $file in
      *.dwt)
        grep -qF "$mark" "$2/$file" || say "without its theme: $file"
        grep -vF "$mark" "$2/$file" | cmp -s - "$1/$file" || say "changed beyond its theme: $file"
        ;;
      *) cmp -s "$1/$file" "$2/$file" || say "not the same bytes: $file" ;;
    esac
  done < <(files_to_arrive "$1")
  comm -13 <(files_to_arrive "$1") <(cd "$2" && find . -type f | sort) |
    sed 's/^/should not be there: /'
}

files_to_arrive() {
  (cd "$1" && find . -name '_vti*' -prune -o -type f ! -iname quillet.ini -print | sort)
}
