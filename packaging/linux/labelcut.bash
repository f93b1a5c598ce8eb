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

# The printer that was named, as arguments; the default one is named by none.
_labelcut_printer() {
  local i
  printer=(--timeout 2)
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
  while IFS= read -r line; do
    case $line in
      *'"choices": ['*) inside=1 found=() ;;
      *'"keyword": "'*)
        keyword=${line#*: \"}
        keyword=${keyword%\"*}
        if [[ $inside -eq 1 ]]; then
          found+=("$keyword")
        else
          [[ ${#found[@]} -eq 0 ]] || printf '%s\n' "${found[@]/#/"$keyword="}"
          found=()
        fi
        ;;
      *'": "'*) ;;
      *']'*) inside=0 ;;
    esac
  done < <("${typed[0]}" options --json "${printer[@]}" 2>/dev/null)
}

# The names of the printer's presets, a line each.
_labelcut_presets() {
  "${typed[0]}" presets list "${printer[@]}" 2>/dev/null
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

  local commands="dialog options panel-script plan presets print snapshot"
  for ((i = 1; i < ${#typed[@]} - 1; i++)); do
    [[ " $commands " == *" ${typed[i]} "* ]] || continue
    command+=${command:+ }${typed[i]}
    [[ $command == presets ]] || break
    commands="list remove rename save show"
  done
  local printers="-p --printer --ppd" choices="-s --set --page-size" languages="de en es fr ja zh_CN" options
  case $command in
    "") options="-h --help --version $printers" ;;
    dialog) options="-h --help $printers" ;;
    options) options="-h --help $printers --timeout --preset --json" ;;
    panel-script | presets) options="-h --help" ;;
    "presets list" | "presets show" | "presets remove") options="-h --help $printers --timeout" ;;
    "presets save") options="-h --help $printers --timeout $choices -n --copies --reverse --no-collate --fit --replace" ;;
    "presets rename") options="-h --help $printers --timeout --replace" ;;
    plan) options="-h --help $printers --timeout $choices --preset -n --copies --pages --reverse --no-collate --fit --json" ;;
    print) options="-h --help $printers --timeout $choices --preset -n --copies --pages --reverse --no-collate --fit -o --output -t --title" ;;
    snapshot) options="-h --help $printers --timeout $choices --what --scale --dark --language -o --output" ;;
  esac

  # What is offered, one a line; "names" may hold anything, and are quoted. So are "files", by bash
  # itself.
  local words="" kind="" plain=${cur//[\"\'\\]/}
  case $prev in
    -p | --printer) words=$(_labelcut_queues) kind=names ;;
    --what) words=$'panel\nstrip\ndialog' ;;
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
      words=$(_labelcut_papers) kind=names
      ;;
    --preset)
      _labelcut_printer
      words=$(_labelcut_presets) kind=names
      ;;
    --language) words=${languages// /$'\n'} ;;
    --fit) words=$'actual\nscale\nturn' ;;
    --timeout | -n | --copies | --pages | -t | --title | --scale) return ;;
    *)
      if [[ $cur == -* ]]; then
        words=${options// /$'\n'}
      elif [[ -z $command ]]; then
        words=${commands// /$'\n'}$'\n'$(compgen -f -- "$plain") kind=files
      elif [[ $command == presets ]]; then
        words=${commands// /$'\n'}
      elif [[ $command == presets\ s[ah]* || $command == presets\ re* ]]; then
        _labelcut_printer
        words=$(_labelcut_presets) kind=names
      elif [[ $command == dialog || $command == panel-script || $command == plan || $command == print || $command == snapshot ]]; then
        _labelcut_files "$cur"
        return
      else
        words=${options// /$'\n'}
      fi
      ;;
  esac

  # Word for word: compgen -W would carry out what stands in a PPD or a name.
  local word
  while IFS= read -r word; do
    [[ -n $word && $word == "$plain"* ]] || continue
    [[ $kind == names ]] && printf -v word %q "$word"
    COMPREPLY+=("$word")
  done <<<"$words"
  [[ $kind != files ]] || compopt -o filenames 2>/dev/null
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
