# Completion of encconv for bash.

# The encodings that begin as the word does, whatever the case: small letters are answered by such.
_encconv_encodings() {
  { echo "0 auto"; encconv --list 2>/dev/null; } | awk -v word="$1" -v auto="$2" '
    $1 !~ /^[0-9]+$/ || ($2 == "auto" && !auto) { next }
    { name = word == tolower(word) ? tolower($2) : $2 }
    index(tolower(name), tolower(word)) == 1 { print name }
    $1 != 0 && index($1, word) == 1 { print $1 }'
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
    --ebcdic-newline) words="lf nl keep" ;;
    -h | --help) words="errors files encodings mainframe detect charts status" ;;
    -j | --jobs | --record-length | --list | --in-place | substitute) return ;;
    --output-dir)
      compopt -o filenames
      mapfile -t COMPREPLY < <(compgen -d -- "$current")
      return
      ;;
    *)
      if [[ $current == -* ]]; then
        words="-f --from -t --to -o --output --in-place --in-place= --output-dir -j --jobs
          --on-error --strict --bom --pdf-passthrough --ebcdic-newline --record-length --trim
          -q --quiet -v --verbose --detect --brief --guess --list --json --chart --html -h --help --version"
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
