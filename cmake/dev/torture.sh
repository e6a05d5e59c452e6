# Part of ./dev: everything that can go wrong goes wrong, one thing after another. What is tried and how
# to read the table is told in docs/torture.md.

torture_folder=$PWD/build/torture
torture_kinds=(host cancel system endurance monkey)
torture_block=150    # runs of one process
torture_patience=900 # seconds for one process: one that takes longer hangs
torture_long=7200    # the same for endurance, whose runs all belong to one process

# usage: torture [KIND]...   The end is 0 when nothing is left wrong, 1 when something is.
torture() {
  local kind kinds=("$@") failed=0
  ((${#kinds[@]} > 0)) || kinds=("${torture_kinds[@]}")
  for kind in "${kinds[@]}"; do
    [[ " ${torture_kinds[*]} " == *" $kind "* ]] ||
      die "torture: there is no $kind; there are: ${torture_kinds[*]}."
  done
  rm -rf "$torture_folder"
  mkdir -p "$torture_folder"
  make_test_prefixes
  for kind in "${kinds[@]}"; do
    announce "$kind"
    if torture_kind "$kind"; then
      report ok
    else
      report "cannot be listed"
      failed=1
    fi
  done
  say ""
  tabulate_torture || failed=1
  return "$failed"
}

# Each list of runs goes to a process of its own, on as many prefixes as there are for tests.
torture_kind() {
  local list=$torture_folder/$1.list
  in_torture_prefix 0 list "$1" >"$list" || return 1
  [[ $(tail -n 1 "$list") == listed ]] || return 1
  sed -i '$d' "$list"
  [[ -s $list ]] || return 1
  export -f torture_runs in_torture_prefix
  export torture_folder torture_block torture_patience torture_long test_prefixes
  xargs -a "$list" -d '\n' -P "$test_prefixes" --process-slot-var=torture_slot -n 1 \
    bash -c 'torture_runs $0'
}

# usage: in_torture_prefix SLOT WORD...   As quillet-torture takes them.
in_torture_prefix() {
  local slot=$1 prefix patience=$torture_patience
  shift
  [[ $1 != endurance ]] || patience=$torture_long
  prefix=$PWD/build/wine-$((slot + 1))
  QUILLET_PREFIX=$prefix timeout "$patience" \
    cmake/run-under-wine build/release/bin/quillet-torture.exe "$@" | tr -d '\r'
}

# usage: torture_runs KIND JOURNEY WAY COUNT   A run that ends its process is a row too, and the next
# process goes on behind it. What grows is seen only in one process.
torture_runs() {
  local kind=$1 journey=$2 way=$3 count=$4 from=1 to last rows block=$torture_block
  [[ $kind != endurance ]] || block=$count
  rows=$torture_folder/$kind-$journey-$way.rows
  : >"$rows"
  while ((from <= count)); do
    to=$((from + block - 1 < count ? from + block - 1 : count))
    in_torture_prefix "${torture_slot:-0}" "$kind" "$journey" "$way" "$from" "$to" >"$rows.new"
    grep $'^row\t' "$rows.new" >>"$rows" || true
    last=$(tail -n 1 "$rows" | cut -f 5)
    if [[ ${last:-0} -lt $to ]]; then
      last=$((${last:-0} + 1))
      ((last >= from)) || last=$from
      local end=CRASHED
      grep -q 'the test hangs' "$rows.new" && end=HANGS
      printf 'row\t%s\t%s\t%s\t%d\t%s\t%s\t\t\n' "$kind" "$journey" "way $way" "$last" "?" "$end" >>"$rows"
      cat "$rows.new" >>"$torture_folder/said.txt"
    fi
    from=$((${last:-$to} + 1))
  done
  rm -f "$rows.new"
}

# Rows: kind, journey, what went wrong, its number, the call, the outcome, what was told, what is wrong.
tabulate_torture() {
  find "$torture_folder" -name '*.rows' | sort | xargs -r cat >"$torture_folder/all.txt"
  awk -F '\t' '
    { kind = sprintf("%-10s %-14s %-22s", $2, $3, $4)
      wrong = $7 ~ /^[A-Z]+$/
      outcome = wrong ? "wrong" : $7
      if (!(kind in runs)) order[++kinds] = kind
      if (outcome != "never came") { ++tried[kind]; ++all }
      ++runs[kind]; ++count[kind, outcome]; ++sum[outcome]
      if (wrong) bad[++bads] = $2 " " $3 ", " $4 ", " $5 " (" $6 "): " $7 " " $9 }
    function line(name, total, key,  i) {
      printf "%s %6d", name, total
      for (i = 1; i <= 6; ++i) printf " %10d", key == "" ? sum[columns[i]] : count[key, columns[i]]
      printf "\n" }
    END {
      split("as always;a line;a message;given up quietly;wrong;never came", columns, ";")
      printf "%-48s %6s %10s %10s %10s %10s %10s %10s\n", "", "tried", "as always", "a line", "a message", "quietly", "wrong", "never came"
      for (k = 1; k <= kinds; ++k) line(order[k], tried[order[k]], order[k])
      line(sprintf("%-48s", "all"), all, "")
      for (b = 1; b <= bads && b <= 40; ++b) print bad[b]
      if (bads > 40) print "and " bads - 40 " more, see build/torture/all.txt"
      exit bads > 0 || all == 0 }' "$torture_folder/all.txt"
}
