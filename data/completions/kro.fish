# fish completion for kro. Format names and palette formats come from the program itself.

# Each command, with what it does.
set -l kro_described \
    'open:Hand kro:// links and files to the agent' \
    'pick:Pick colors with the loupe and print them' \
    'format:A color as text in a format or template' \
    'formats:The format catalogue' \
    'name:The nearest color name' \
    'contrast:The contrast ratio of two colors' \
    'simulate:A color as a color vision deficiency shows it' \
    'scan:The colors found in a text' \
    'convert:Convert a palette or gradient file' \
    "inspect:A palette file's name, groups and colors" \
    'palette-formats:Every palette and gradient format' \
    'import:Import files into the library' \
    'export:Write a palette of the library to a file' \
    'snapshot:List, create or restore snapshots' \
    "undo:Undo the agent's last change to the library" \
    'redo:Make the last undone change again' \
    'sync:Synchronize the library once' \
    'account:Show, set or remove the sync account' \
    'get:Read the color of a design program' \
    'send:Set the color of a design program' \
    'krita-plugin:Install or remove the Krita plug-in' \
    'help:The usage of a command'
set -l kro_commands (string replace -r ':.*' '' -- $kro_described)

function __kro_format_names
    kro formats 2>/dev/null | string replace -r '^[* ] ' ''
end

function __kro_palette_formats
    kro palette-formats 2>/dev/null | awk 'NF >= 4 && $1 != "FORMAT" && $1 !~ /:$/ && !seen[$1]++ { print $1 }'
end

complete -c kro -f
complete -c kro -n "not __fish_seen_subcommand_from $kro_commands" -l version -d 'Print the version'
complete -c kro -s h -l help -d 'Print the usage'

for described in $kro_described
    set -l parts (string split -m 1 : -- $described)
    complete -c kro -n "not __fish_seen_subcommand_from $kro_commands" -a $parts[1] -d $parts[2]
end

complete -c kro -n '__fish_seen_subcommand_from format' -l format -x -a '(__kro_format_names)' -d 'Format of the catalogue'
complete -c kro -n '__fish_seen_subcommand_from format' -l template -x -d 'Template text'
complete -c kro -n '__fish_seen_subcommand_from contrast' -l fix -x -a 'foreground background' -d 'Color to fix'
complete -c kro -n '__fish_seen_subcommand_from simulate' -a 'normal deuteranopia protanopia tritanopia achromatopsia'
complete -c kro -n '__fish_seen_subcommand_from scan' -l patterns -x -a 'html cssHEX cssRGB cssHSL appleHSB appleRGB' -d 'Recognizers'
complete -c kro -n '__fish_seen_subcommand_from convert' -l from -x -a '(__kro_palette_formats)' -d 'Input format'
complete -c kro -n '__fish_seen_subcommand_from convert' -l to -x -a '(__kro_palette_formats)' -d 'Output format'
complete -c kro -n '__fish_seen_subcommand_from open import inspect convert scan export' -F
complete -c kro -n '__fish_seen_subcommand_from snapshot' -a 'list create restore'
complete -c kro -n '__fish_seen_subcommand_from account' -a 'set remove'
complete -c kro -n '__fish_seen_subcommand_from help' -a "$kro_commands"
