# Part of ./dev: the add-in at work in the stand-in host.

# The demo plays in build/demo, which Windows programs see as C:\Demo.
demo_folder=$PWD/build/demo
demo_prefix=$demo_folder/wine
toured_template='Night Ferry'
theme_mark='<meta name="Microsoft Theme" content="nightferry 1111">'

# usage: demo [--tour]
demo() {
  case ${1:-} in
    '') [[ -n ${DISPLAY:-} ]] || die "There is no display here; ./dev demo --tour needs none." ;;
    --tour) ;;
    *) die "The demo knows no other word than --tour." ;;
  esac
  lay_out_demo
  if [[ -z ${1:-} ]]; then
    export QUILLET_DISPLAY=$DISPLAY
    stage register register_add_in
    say "The menu that holds the add-in's two entries is under Format."
    run_host
  else
    start_display
    stage register register_add_in
    show_tree "The web before:"
    tour
    show_tree "The web after:"
    check_copy
  fi
}

# A copy of everything, so that nothing done in the demo changes the samples. The prefix is a copy
# too: what is registered and set in the demo stays out of the tests' way.
lay_out_demo() {
  QUILLET_PREFIX=$demo_prefix
  export QUILLET_PREFIX
  rm -rf "$demo_folder"
  mkdir -p "$demo_folder"
  cp -r samples/templates samples/themes samples/web "$demo_folder/"
  clone_prefix "$demo_prefix"
  ln -s "$demo_folder" "$demo_prefix/drive_c/Demo"
}

register_add_in() {
  local key='HKLM\Software\Korvel Software\Quillet Viewer\DWT Folders'
  cmake/run-under-wine regsvr32 /s 'Z:'"$PWD/build/release/bin/Quillet.dll" &&
    cmake/run-under-wine reg add "$key" /v 'C:\Demo\templates' /d '' /f /reg:32
}

run_host() {
  cmake/run-under-wine build/release/bin/quillet-host.exe 'C:\Demo\web' --themes 'C:\Demo\themes' \
    --pictures 'C:\Demo' "$@"
}

tour() {
  walk tour && walk tour-messages && walk tour-no-menu --option templatesMenu=0
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

# A display of the demo's own, with a window manager that draws the title bars.
start_display() {
  local file=$demo_folder/display tries
  Xvfb -displayfd 1 -screen 0 1024x768x24 -nolisten tcp >"$file" 2>/dev/null &
  for ((tries = 0; tries < 100; tries++)); do
    [[ ! -s $file ]] || break
    sleep 0.1
  done
  [[ -s $file ]] || die "Xvfb gave no display."
  QUILLET_DISPLAY=:$(<"$file")
  export QUILLET_DISPLAY
  rm "$file"
  DISPLAY=$QUILLET_DISPLAY openbox --sm-disable >/dev/null 2>&1 &
  display -display "$QUILLET_DISPLAY" -window root -size 1024x768 'xc:#4a6b8a' || true
}

show_tree() {
  say "" "$1"
  (cd "$demo_folder/web" && find . -mindepth 1 | sort | sed 's|[^/]*/|  |g')
}

check_copy() {
  local wrong copy=$demo_folder/web/dwts/$toured_template
  [[ -d $copy ]] || die "demo: $copy has not come about"
  say "" "The theme in the copied template:"
  grep -h '<meta name="Microsoft Theme"' "$copy"/*.dwt || true
  say "" "The pictures are in build/demo:" "$(cd "$demo_folder" && ls -- *.png)" ""
  wrong=$(what_is_wrong "samples/templates/$toured_template" "$copy")
  [[ -z $wrong ]] || die "demo: the copy is not as it should be"$'\n'"$wrong"
  say "demo: ok"
}

# usage: what_is_wrong TEMPLATE COPY   One line for each difference that should not be.
what_is_wrong() {
  local file
  while read -r file; do
    [[ -f $2/$file ]] || { say "missing: $file"; continue; }
    case $file in
      *.dwt)
        grep -qF "$theme_mark" "$2/$file" || say "without its theme: $file"
        grep -vF "$theme_mark" "$2/$file" | cmp -s - "$1/$file" || say "changed beyond its theme: $file"
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
