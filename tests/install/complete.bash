# Completes one command line with kro's bash completion as bash does on a Tab, and prints the candidates.
# usage: bash complete.bash COMPLETION_FILE WORD...   (the last word is the one being completed; "" for none)
source "$1"
shift
COMP_WORDS=("$@")
COMP_CWORD=$(($# - 1))
COMP_LINE="$*"
COMP_POINT=${#COMP_LINE}
_kro
printf '%s\n' "${COMPREPLY[@]}"
