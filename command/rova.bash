# Completion of rova for bash: rova itself says what a word may become.

_rova() {
  local words=() rest=${COMP_LINE:0:COMP_POINT} word start
  # Bash parts words at ":" and "=" too, which stand inside of addresses: what no blank parts is one.
  for word in "${COMP_WORDS[@]:0:COMP_CWORD+1}"; do
    start=${rest%%[![:blank:]]*}
    rest=${rest#"$start"}
    word=${rest:0:${#word}}
    rest=${rest:${#word}}
    if [[ -n $start || ${#words[@]} -eq 0 ]]; then
      words+=("$word")
    else
      words[-1]+=$word
    fi
  done

  local begun=${words[-1]}
  words=("${words[@]//[\\\"\']/}")
  mapfile -t COMPREPLY < <("${words[0]}" complete -- "${words[@]:1}" 2>/dev/null)
  # What stands up to the last ":" is on the line already.
  if [[ $begun == *:* && $COMP_WORDBREAKS == *:* ]]; then
    COMPREPLY=("${COMPREPLY[@]#"${begun%"${begun##*:}"}"}")
  fi
  # A name that a device has may mean something to bash.
  local at
  for at in "${!COMPREPLY[@]}"; do
    printf -v "COMPREPLY[at]" %q "${COMPREPLY[at]}"
  done
  [[ ${#COMPREPLY[@]} -ne 1 || ${COMPREPLY[0]} != */ ]] || compopt -o nospace
}

complete -F _rova rova
