# Completion of labelcut for bash.

# The words that the user typed, up to the cursor, put together again where bash split them at one of
# COMP_WORDBREAKS (KEYWORD=CHOICE is three words for bash).
_labelcut_join() {
  local line=${COMP_LINE:0:COMP_POINT} word space i
  typed=()
  for ((i = 0; i <= COMP_CWORD; i++)); do
    word=${COMP_WORDS[i]}
    space=${line%%[![:space:]]*}
    line=${line#"$space"}
    line=${line#"$word"}
    if [[ $i -gt 0 && -z $space ]]; then
      typed[${#typed[@]} - 1]+=$word
    else
      typed+=("$word")
    fi
  done
}

# The queues of the print service, if there is a way to ask for them.
_labelcut_queues() {
  command -v lpstat >/dev/null && timeout 2 lpstat -e 2>/dev/null
}

# The printer that was named, as arguments.
_labelcut_printer() {
  local i
  printer=()
  for ((i = 1; i < ${#typed[@]} - 1; i++)); do
    case ${typed[i]} in
      -p | --printer) printer=(--timeout 2 --printer "${typed[i + 1]}") ;;
      --printer=*) printer=(--timeout 2 --printer "${typed[i]#*=}") ;;
      --ppd) printer=(--ppd "${typed[i + 1]}") ;;
      --ppd=*) printer=(--ppd "${typed[i]#*=}") ;;
      *) continue ;;
    esac
    # As the shell will read it: quotes and ~ are gone then.
    local path=${printer[-1]}
    path=${path//[\"\'\\]/}
    printer[-1]=${path/#\~\//$HOME/}
  done
}

# KEYWORD=CHOICE a line, for the printer that was named.
_labelcut_settings() {
  local line keyword inside=0 found=()
  [[ ${#printer[@]} -gt 0 ]] || return 0
  while IFS= read -r line; do
    case $line in
      *'"choices": ['*) inside=1 found=() ;;
      *'"keyword": "'*)
        keyword=${line#*: \"}
        keyword=${keyword%\"*}
        if [[ $inside -eq 1 ]]; then
          found+=("$keyword")
        else
          [[ ${#found[@]} -eq 0 ]] || printf "$keyword=%s\n" "${found[@]}"
          found=()
        fi
        ;;
      *'": "'*) ;;
      *']'*) inside=0 ;;
    esac
  done < <("${typed[0]}" options --json "${printer[@]}" 2>/dev/null)
}

# The papers of the PPD that was named.
_labelcut_papers() {
  [[ ${printer[0]:-} == --ppd && -r ${printer[1]} ]] || return 0
  sed -n 's/^\*PageSize \([^\/:]*\).*/\1/p' -- "${printer[1]}"
}

_labelcut_files() {
  compopt -o default 2>/dev/null || mapfile -t COMPREPLY < <(compgen -f -- "$1")
}

_labelcut() {
  local typed printer command="" cur prev i
  COMPREPLY=()
  _labelcut_join
  cur=${typed[-1]}
  prev=${typed[${#typed[@]} - 2]}
  if [[ $cur == --*=* ]]; then
    prev=${cur%%=*}
    cur=${cur#*=}
  fi

  local commands="dialog options panel-script print snapshot"
  for ((i = 1; i < ${#typed[@]} - 1; i++)); do
    [[ " $commands " == *" ${typed[i]} "* ]] && command=${typed[i]} && break
  done
  local printers="-p --printer --ppd" choices="-s --set --page-size" options
  case $command in
    "") options="-h --help --version" ;;
    dialog) options="-h --help $printers" ;;
    options) options="-h --help $printers --timeout --json" ;;
    panel-script) options="-h --help" ;;
    print) options="-h --help $printers --timeout $choices -n --copies --pages -o --output -t --title" ;;
    snapshot) options="-h --help $printers --timeout $choices --scale --dark --language -o --output" ;;
  esac

  local words=""
  case $prev in
    -p | --printer) words=$(_labelcut_queues) ;;
    --ppd | -o | --output)
      _labelcut_files "$cur"
      return
      ;;
    -s | --set)
      _labelcut_printer
      words=$(_labelcut_settings)
      ;;
    --page-size)
      _labelcut_printer
      words=$(_labelcut_papers)
      ;;
    --language) words="de en es fr ja zh_CN" ;;
    --timeout | -n | --copies | --pages | -t | --title | --scale) return ;;
    *)
      if [[ $cur == -* ]]; then
        words=$options
      elif [[ -z $command ]]; then
        words=$commands
      elif [[ $command != options && $command != snapshot ]]; then
        _labelcut_files "$cur"
        return
      else
        words=$options
      fi
      ;;
  esac

  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$cur")
  # Of KEYWORD=CHOICE first the keyword, and when that is clear its choices.
  if [[ $prev == -s || $prev == --set ]] && [[ $cur != *=* ]]; then
    mapfile -t COMPREPLY < <(printf '%s\n' "${COMPREPLY[@]%%=*}" | sed '/^$/d; s/$/=/' | sort -u)
    compopt -o nospace 2>/dev/null
  fi
  # Bash replaces only what stands behind the last of its word breaks.
  if [[ $cur == *=* && $COMP_WORDBREAKS == *=* ]]; then
    COMPREPLY=("${COMPREPLY[@]#*=}")
  fi
}

complete -F _labelcut labelcut
