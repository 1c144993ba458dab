// The scripts by which shells complete command lines of the program. Each passes the words that are
// typed to `kelvarin complete` and shows what that answers.
#pragma once

namespace kelvarin {

inline constexpr const char* kBashScript = R"sh(# Completion of kelvarin for bash.
_kelvarin() {
  # Bash cuts words at = and :, which are put together again.
  local -a words=() lines=()
  local word glue= raw=${COMP_WORDS[COMP_CWORD]} i
  for ((i = 1; i <= COMP_CWORD; ++i)); do
    word=${COMP_WORDS[i]}
    if [[ -n $glue || $word == [=:]* ]] && ((${#words[@]} > 0)); then
      words[-1]+=$word
    else
      words+=("$word")
    fi
    glue=
    [[ $word == *[=:] && $word != [\'\"]* ]] && glue=1
  done
  ((${#words[@]} > 0)) || words=("")
  local typed=${words[-1]} program=${COMP_WORDS[0]/#\~/$HOME}
  # A line names its words as they are meant: 'late?' as late?.
  for ((i = 0; i + 1 < ${#words[@]}; ++i)); do
    word=${words[i]}
    if [[ $word == \'*\' || $word == \"*\" ]]; then
      words[i]=${word:1:-1}
    else
      words[i]=${word//\\/}
    fi
  done
  mapfile -t lines < <("$program" complete -- "${words[@]}" 2>/dev/null)

  COMPREPLY=()
  # What bash takes for the word, and replaces.
  local cut=
  if [[ $raw != [\'\"]* && $typed != [\'\"]* ]]; then
    cut=${typed%"$raw"}
    [[ $raw == [=:] ]] && cut=$typed raw=
  fi
  [[ $typed == -*=* ]] && cut=
  for word in "${lines[@]:1}"; do
    word=${word%%$'\t'*}
    word=${word#"$cut"}
    [[ $raw == [\'\"]* ]] || printf -v word %q "$word"
    case $word in
      *\\=) word=${word%\\=}= ;;
      *\\\() word=${word%\\\(} ;;
    esac
    COMPREPLY+=("$word")
  done
  ((${#COMPREPLY[@]} == 1)) && [[ ${COMPREPLY[0]} == *[=\(] ]] && compopt -o nospace 2>/dev/null

  local file
  case ${lines[0]-none} in
    none) return ;;
    folders) local -a files=(); mapfile -t files < <(compgen -d -- "$raw") ;;
    *) local -a files=(); mapfile -t files < <(compgen -f -- "$raw") ;;
  esac
  compopt -o filenames 2>/dev/null
  for file in "${files[@]}"; do
    [[ ${lines[0]} != graphs || -d $file || $file == *.kelvarin ]] && COMPREPLY+=("$file")
  done
}
complete -F _kelvarin kelvarin
)sh";

inline constexpr const char* kZshScript = R"sh(#compdef kelvarin
# Completion of kelvarin for zsh.
_kelvarin() {
  local -a lines candidates typed
  local line word
  typed=("${(@Q)words[2,CURRENT-1]}" "$PREFIX")
  lines=("${(@f)$("${(Q)words[1]}" complete -- "${typed[@]}" 2>/dev/null)}")
  [[ $PREFIX == -*=* ]] && compset -P 1 '*='
  for line in "${(@)lines[2,-1]}"; do
    word=${line%%$'\t'*}
    candidates+=("${word//:/\\:}:${line#*$'\t'}")
  done
  (( $#candidates )) && _describe -t values kelvarin candidates
  case $lines[1] in
    graphs) _files -g '*.kelvarin' ;;
    folders) _files -/ ;;
    all) _files ;;
  esac
}
_kelvarin "$@"
)sh";

inline constexpr const char* kFishScript = R"sh(# Completion of kelvarin for fish.
function __kelvarin_complete
    set -l words (commandline -opc)
    set -l typed (commandline -ct)
    set -l before (string match -r '^-[^=]*=' -- $typed)
    set -l lines ($words[1] complete -- $words[2..-1] $typed 2>/dev/null)
    for line in $lines[2..-1]
        echo "$before$line"
    end
    switch "$lines[1]"
        case graphs
            __fish_complete_suffix .kelvarin
        case folders
            __fish_complete_directories $typed
        case all
            __fish_complete_path $typed
    end
end
complete -c kelvarin -f -a '(__kelvarin_complete)'
)sh";

}  // namespace kelvarin
