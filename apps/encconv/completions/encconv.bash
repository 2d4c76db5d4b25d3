# Completion of encconv for bash.

_encconv_encodings() {
  encconv --list 2>/dev/null | awk '$1 ~ /^[0-9]+$/ { print $2; print $1 }'
}

_encconv() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} words=
  COMPREPLY=()
  case $previous in
    -f | --from) words="auto $(_encconv_encodings)" ;;
    -t | --to | --chart) words=$(_encconv_encodings) ;;
    --on-error) words="stop drop substitute substitute= hex alternate= raw" ;;
    --ebcdic-newline) words="lf nl keep" ;;
    -h | --help) words="errors files encodings mainframe detect charts status" ;;
    -j | --jobs | --record-length | --list) return ;;
    --output-dir)
      mapfile -t COMPREPLY < <(compgen -d -- "$current")
      return
      ;;
    *)
      if [[ $current == -* ]]; then
        words="-f --from -t --to -o --output --in-place --in-place= --output-dir -j --jobs
          --on-error --strict --bom --pdf-passthrough --ebcdic-newline --record-length --trim
          -q --quiet -v --verbose --detect --list --json --chart --html -h --help --version"
      else
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        return
      fi
      ;;
  esac
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}

complete -o filenames -F _encconv encconv
