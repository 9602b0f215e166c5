# Completion of the program ketra for bash.

_ketra() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]} words=
  if [[ $before == = ]]; then
    before=${COMP_WORDS[COMP_CWORD - 2]} # bash takes --color=WHEN for three words
  elif [[ $word == = ]]; then
    word=
  fi
  if ((COMP_CWORD == 1)); then
    words='show check --help --version'
  elif [[ $before == --color ]]; then
    words='auto always never'
  elif [[ $word == -* && $command == show ]]; then
    words='--json --jobs --max-object --color --help'
  elif [[ $word == -* && $command == check ]]; then
    words='--summary --jobs --max-object --color --help'
  fi
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}
complete -o bashdefault -o default -F _ketra ketra
