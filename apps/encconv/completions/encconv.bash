# Completion of encconv for bash.

# The names and numbers of the encodings that begin as the word does, whatever the case: small
# letters are answered by such. Aliases are offered once their first letter is written.
_encconv_encodings() {
  { [[ -n $2 ]] && echo "0 auto"; encconv --list 2>/dev/null; } | awk -v word="$1" '
    function offer(name) {
      if (index(tolower(name), tolower(word)) != 1) return
      print word == tolower(word) ? tolower(name) : name
    }
    $1 ~ /^[0-9]+$/ { offer($2); if ($1 != 0) offer($1) }
    /^        [^ ]/ && word != "" { for (i = 1; i <= NF; ++i) offer($i) }'
}

_encconv() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} words=
  # --from=utf-8 comes as three words.
  if [[ $current == = ]]; then
    current=
  elif [[ $previous == = ]]; then
    previous=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  COMPREPLY=()
  case $previous in
    -f | --from)
      mapfile -t COMPREPLY < <(_encconv_encodings "$current" 1)
      return
      ;;
    -t | --to | --chart | alternate)
      mapfile -t COMPREPLY < <(_encconv_encodings "$current")
      return
      ;;
    --on-error) words="stop drop substitute substitute= hex alternate= raw" ;;
    --newline) words="lf crlf cr keep" ;;
    --bom) words="keep add remove" ;;
    --ebcdic-newline) words="lf nl keep" ;;
    -h | --help) words="errors files encodings iconv mainframe fields detect charts status" ;;
    --records) words="fixed: rdw bdw" ;;
    --to-records) words="fixed: rdw bdw bdw:" ;;
    --as) words="csv json json-strings" ;;
    -j | --jobs | --record-length | --list | --include | --in-place | substitute) return ;;
    --output-dir)
      compopt -o filenames
      mapfile -t COMPREPLY < <(compgen -d -- "$current")
      return
      ;;
    *)
      if [[ $current == -* ]]; then
        words="-f --from -t --to -o --output --in-place --in-place= --output-dir
          --preserve-time -r --recursive --include -j --jobs
          --on-error -c --strict --report --bom --bom= --newline --pdf-passthrough --ebcdic-newline
          --records --record-length --to-records --fields --as --trim
          -q -s --quiet -v --verbose --detect --trace --brief --guess -l --list --json --chart --html -h --help --version"
      else
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        return
      fi
      ;;
  esac
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
  if [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == *= ]]; then compopt -o nospace; fi
}

complete -F _encconv encconv
