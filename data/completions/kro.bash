# bash completion for kro. Format names and palette formats come from the program itself, so they are
# always those of the installed version (and of the user's own catalogue).

_kro_commands="open pick format formats name contrast simulate scan convert inspect palette-formats import export
snapshot undo redo sync account get send krita-plugin help"

# Adds the words of the list (one per line) that start with the current word, quoted for the shell.
_kro_reply_lines() {
    local cur=$1 line
    while IFS= read -r line; do
        [[ -n $line && $line == "$cur"* ]] && COMPREPLY+=("$(printf '%q' "$line")")
    done
}

_kro_format_names() { "$1" formats 2>/dev/null | sed 's/^[* ] //'; }

# The first column of the rows of `kro palette-formats`, palette and gradient formats alike.
_kro_palette_formats() {
    "$1" palette-formats 2>/dev/null | awk 'NF >= 4 && $1 != "FORMAT" && $1 !~ /:$/ && !seen[$1]++ { print $1 }'
}

_kro() {
    local kro=${COMP_WORDS[0]} cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD-1]}
    local command=${COMP_WORDS[1]}
    COMPREPLY=()

    if ((COMP_CWORD == 1)); then
        COMPREPLY=($(compgen -W "$_kro_commands --help --version" -- "$cur"))
        return
    fi
    # Format names hold spaces: each is one word, quoted as the shell needs it.
    case $prev in
        --format) _kro_reply_lines "${cur//\\/}" < <(_kro_format_names "$kro"); return ;;
        --from|--to) COMPREPLY=($(compgen -W "$(_kro_palette_formats "$kro")" -- "$cur")); return ;;
        --fix) COMPREPLY=($(compgen -W "foreground background" -- "$cur")); return ;;
        --patterns)
            local done=${cur%"${cur##*,}"}
            COMPREPLY=($(compgen -P "$done" -W "html cssHEX cssRGB cssHSL appleHSB appleRGB" -- "${cur##*,}"))
            compopt -o nospace 2>/dev/null
            return ;;
        --template) return ;;
    esac
    if [[ $cur == -* ]]; then
        local options="--help"
        case $command in
            format) options+=" --format --template" ;;
            pick) options+=" --format --template --count" ;;
            get) options+=" --primary --secondary --app" ;;
            send) options+=" --primary --secondary --app" ;;
            contrast) options+=" --fix" ;;
            scan) options+=" --patterns" ;;
            convert) options+=" --from --to" ;;
        esac
        COMPREPLY=($(compgen -W "$options" -- "$cur"))
        return
    fi
    case $command in
        help) ((COMP_CWORD == 2)) && COMPREPLY=($(compgen -W "$_kro_commands" -- "$cur")) ;;
        simulate)
            ((COMP_CWORD == 2)) &&
                COMPREPLY=($(compgen -W "normal deuteranopia protanopia tritanopia achromatopsia" -- "$cur")) ;;
        snapshot) ((COMP_CWORD == 2)) && COMPREPLY=($(compgen -W "list create restore" -- "$cur")) ;;
        account) ((COMP_CWORD == 2)) && COMPREPLY=($(compgen -W "set remove" -- "$cur")) ;;
        open|import|convert|inspect|scan|export)
            compopt -o filenames 2>/dev/null
            COMPREPLY=($(compgen -f -- "$cur")) ;;
    esac
}

complete -F _kro kro
