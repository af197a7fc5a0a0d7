# Completes the options of the hosts from their --help: source this file in bash. It needs the package bash-completion.
if declare -F _longopt >/dev/null; then
  complete -o default -F _longopt align convert_frame count_parts find_lines gauge segment threshold
fi
