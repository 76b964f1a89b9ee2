#!/usr/bin/env bash
# `cmake --install` into a temporary prefix, then what a Debian desktop checks of an installed program: the
# desktop entry, AppStream data, the MIME types, the manual page and the completions; and the program's own
# answers a script relies on (its version, its help, the message without an X display).
# usage: install_files_test.sh BUILD_DIR
set -euo pipefail
BUILD=${1:?usage: $0 BUILD_DIR}
WORK=$(mktemp -d /tmp/kro-install-XXXXXX)
trap 'rm -rf "$WORK"' EXIT
fail() { echo "FAIL: $*" >&2; exit 1; }

PREFIX=$WORK/prefix
export XDG_DATA_HOME=$WORK/data XDG_CONFIG_HOME=$WORK/config XDG_CACHE_HOME=$WORK/cache HOME=$WORK/home
export XDG_DATA_DIRS=$PREFIX/share:/usr/share PATH=$PREFIX/bin:$PATH
mkdir -p "$XDG_DATA_HOME" "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME" "$HOME"
cmake --install "$BUILD" --prefix "$PREFIX" >/dev/null
SHARE=$PREFIX/share
[[ $(command -v kro) == "$PREFIX/bin/kro" ]] || fail "kro is not installed in the prefix"
# The agent is a private program that `kro` becomes; the command line itself loads no Qt.
[[ -x $PREFIX/libexec/kro/kro-agent ]] || fail "the agent's program is not in libexec/kro"
! command -v kro-agent >/dev/null || fail "kro-agent is on the PATH"
! ldd "$PREFIX/bin/kro" | grep -q libQt || fail "the command line loads Qt: $(ldd "$PREFIX/bin/kro" | grep libQt)"

desktop-file-validate "$SHARE/applications/kroapp.Kro.desktop" || fail "desktop-file-validate"
# The component id is the program's identifier, kroapp.Kro, used for its folders, socket and desktop entry
# alike; AppStream would rather see a reverse domain name, which is advice, not an error.
appstreamcli validate --no-net --override=cid-desktopapp-is-not-rdns=info "$SHARE/metainfo/kroapp.Kro.metainfo.xml" \
    >"$WORK/appstream.log" || fail "appstreamcli validate: $(cat "$WORK/appstream.log")"
xmllint --noout "$SHARE/mime/packages/kroapp.Kro.xml" || fail "xmllint of the MIME types"

# The manual page renders without a warning and covers every command the program lists.
MANWIDTH=100 man --warnings -E UTF-8 -l "$SHARE/man/man1/kro.1.gz" >"$WORK/kro.1.txt" 2>"$WORK/man-warnings" \
    || fail "man -l kro.1"
[[ ! -s $WORK/man-warnings ]] || fail "man warns: $(cat "$WORK/man-warnings")"
# Every line of the usage after the first names a command: "       kro NAME ...".
commands=$(kro help | sed 1d | awk '$1 == "kro" && $2 ~ /^[a-z][a-z-]*$/ { print $2 }' | sort)
[[ $(wc -l <<<"$commands") -ge 15 ]] || fail "kro help lists too few commands: $commands"
for command in $commands; do
    grep -q "^       $command\b" "$WORK/kro.1.txt" || fail "the manual page does not describe kro $command"
done
grep -q "FORMAT TEMPLATES" "$WORK/kro.1.txt" || fail "the manual page lacks the template language"
tail -1 "$WORK/kro.1.txt" | grep -q "^Kro $(kro --version | cut -d' ' -f2) " \
    || fail "the manual page's version is not the program's: $(tail -1 "$WORK/kro.1.txt")"

# Palette files are known by their types, by name and by content.
printf 'GIMP Palette\nName: Sunset\n255 128 0 Orange\n' >"$WORK/sunset.gpl"
printf 'ASEF\0\1\0\0\0\0\0\0' >"$WORK/empty.ase"
printf 'KDE RGB Palette\n255 0 0 Red\n' >"$WORK/red.colors"
for pair in sunset.gpl=application/x-gimp-palette empty.ase=application/x-adobe-swatch-exchange \
            red.colors=application/x-kde-color-palette; do
    type=$(xdg-mime query filetype "$WORK/${pair%%=*}")
    [[ $type == "${pair#*=}" ]] || fail "${pair%%=*} is $type, not ${pair#*=}"
done
[[ $(xdg-mime query default x-scheme-handler/kro) == kroapp.Kro.desktop ]] || fail "kro:// is not handled by Kro"
[[ $(xdg-mime query default application/x-gimp-palette) == kroapp.Kro.desktop ]] || fail "GIMP palettes do not open in Kro"

# What scripts rely on.
[[ $(kro --version) =~ ^kro\ [0-9]+\.[0-9]+\.[0-9]+$ ]] || fail "kro --version: $(kro --version)"
[[ $(kro format --help) == "usage: kro format "* ]] || fail "kro format --help"
# Without any display, the agent and kro open say at once what is missing.
mkdir -m 700 "$WORK/runtime"
for command in "kro" "kro open kro://picker"; do
    status=0
    env -u DISPLAY -u WAYLAND_DISPLAY XDG_RUNTIME_DIR="$WORK/runtime" ASAN_OPTIONS=detect_leaks=0 \
        $command 2>"$WORK/nodisplay.err" || status=$?
    ((status == 1)) || fail "$command without a display exited $status"
    grep -q "neither WAYLAND_DISPLAY nor DISPLAY" "$WORK/nodisplay.err" \
        || fail "$command without a display said: $(cat "$WORK/nodisplay.err")"
done

# Completions. Bash's is driven as bash drives it on a Tab.
BASH_COMPLETION=$SHARE/bash-completion/completions/kro
complete_bash() { bash --norc "$(dirname "$0")/complete.bash" "$BASH_COMPLETION" "$@"; }
[[ $(bash --norc -c "source '$BASH_COMPLETION'; complete -p kro") == "complete -F _kro kro" ]] \
    || fail "bash has no completion for kro"
[[ $(complete_bash kro for) == $'format\nformats' ]] || fail "kro for<TAB> gives: $(complete_bash kro for)"
[[ $(complete_bash kro format --format 'CSS\ He') == $'CSS\\ Hex\nCSS\\ Hex\\ with\\ Alpha' ]] \
    || fail "kro format --format CSS\ He<TAB> gives: $(complete_bash kro format --format 'CSS\ He')"
[[ $(complete_bash kro convert a.gpl --to vga) == $'vga24bit\nvga18bit' ]] \
    || fail "kro convert a.gpl --to vga<TAB> gives: $(complete_bash kro convert a.gpl --to vga)"
[[ $(complete_bash kro '' | grep -v '^--' | sort) == "$commands" ]] \
    || fail "bash completes other commands than kro help lists: $(complete_bash kro '')"
fish_commands=$(fish --no-config -c "source $SHARE/fish/vendor_completions.d/kro.fish; complete -C'kro '" | cut -f1 | sort)
[[ $fish_commands == "$commands" ]] || fail "fish completes other commands: $fish_commands"
[[ $(fish --no-config -c "source $SHARE/fish/vendor_completions.d/kro.fish; complete -C'kro format --format CSS\ He'" | cut -f1) \
        == $'CSS Hex\nCSS Hex with Alpha' ]] || fail "fish does not complete format names"
# Zsh's completion runs only in an interactive shell: one runs in a private tmux server, is sent a line and a
# Tab, and the screen is read until the candidates show.
mkdir -p "$WORK/zsh"
cat >"$WORK/zsh/.zshrc" <<ZSHRC
fpath=($SHARE/zsh/vendor-completions \$fpath)
autoload -U compinit && compinit -u
unsetopt list_ambiguous
PS1='$ '
ZSHRC
zsh_completes() {  # LINE TEXT: TEXT shows on the screen after LINE and a Tab
    # A server of its own for each call: a server that is still going away after kill-server would take a
    # new session down with it.
    zsh_calls=$((${zsh_calls:-0} + 1))
    local tmux=(tmux -L "kro-install-$$-$zsh_calls" -f /dev/null)
    "${tmux[@]}" new-session -d -x 160 -y 30 "ZDOTDIR=$WORK/zsh zsh -i"
    "${tmux[@]}" send-keys "$1" Tab
    local shown=1
    for _ in $(seq 300); do
        "${tmux[@]}" capture-pane -p | grep -qF -- "$2" && { shown=0; break; }
        sleep 0.1
    done
    "${tmux[@]}" capture-pane -p >"$WORK/zsh/screen"
    "${tmux[@]}" kill-server
    return $shown
}
zsh_completes 'kro for' 'formats  -- the format catalogue' || fail "zsh: kro for<TAB> shows: $(cat "$WORK/zsh/screen")"
zsh_completes 'kro format --format CSS' 'CSS Hex with Alpha' \
    || fail "zsh: kro format --format CSS<TAB> shows: $(cat "$WORK/zsh/screen")"
echo "install files test passed"
