# Part of ./dev: one line per stage on the screen, the details in build/log.

say() { printf '%s\n' "$@"; }

die() {
  printf '%s\n' "$*" >&2
  exit 1
}

announce() {
  mkdir -p build/log
  stage_began=$SECONDS
  printf '%-14s ' "$1"
}

report() { printf '%s (%d s)\n' "$1" "$((SECONDS - stage_began))"; }

# usage: stage NAME COMMAND...   What the command says is shown only when it fails.
stage() {
  local name=$1
  shift
  announce "$name"
  if "$@" >"build/log/$name.txt" 2>&1 </dev/null; then
    report ok
  else
    report failed
    cat "build/log/$name.txt"
    exit 1
  fi
}
