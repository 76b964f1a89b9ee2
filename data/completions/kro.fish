# fish completion for kro. Format names and palette formats come from the program itself.

set -l kro_commands open format formats name contrast simulate scan convert inspect palette-formats import export snapshot sync account help

function __kro_format_names
    kro formats 2>/dev/null | string replace -r '^[* ] ' ''
end

function __kro_palette_formats
    kro palette-formats 2>/dev/null | awk 'NF >= 4 && $1 != "FORMAT" && $1 !~ /:$/ && !seen[$1]++ { print $1 }'
end

complete -c kro -f
complete -c kro -n "not __fish_seen_subcommand_from $kro_commands" -l version -d 'Print the version'
complete -c kro -s h -l help -d 'Print the usage'

complete -c kro -n "not __fish_seen_subcommand_from $kro_commands" -a open -d 'Hand kro:// links and files to the agent'
complete -c kro -n "not __fish_seen_subcommand_from $kro_commands" -a format -d 'A color as text in a format or template'
complete -c kro -n "not __fish_seen_subcommand_from $kro_commands" -a formats -d 'The format catalogue'
complete -c kro -n "not __fish_seen_subcommand_from $kro_commands" -a name -d 'The nearest color name'
complete -c kro -n "not __fish_seen_subcommand_from $kro_commands" -a contrast -d 'The contrast ratio of two colors'
complete -c kro -n "not __fish_seen_subcommand_from $kro_commands" -a simulate -d 'A color as a color vision deficiency shows it'
complete -c kro -n "not __fish_seen_subcommand_from $kro_commands" -a scan -d 'The colors found in a text'
complete -c kro -n "not __fish_seen_subcommand_from $kro_commands" -a convert -d 'Convert a palette or gradient file'
complete -c kro -n "not __fish_seen_subcommand_from $kro_commands" -a inspect -d "A palette file's name, groups and colors"
complete -c kro -n "not __fish_seen_subcommand_from $kro_commands" -a palette-formats -d 'Every palette and gradient format'
complete -c kro -n "not __fish_seen_subcommand_from $kro_commands" -a import -d 'Import files into the library'
complete -c kro -n "not __fish_seen_subcommand_from $kro_commands" -a export -d 'Write a palette of the library to a file'
complete -c kro -n "not __fish_seen_subcommand_from $kro_commands" -a snapshot -d 'List, create or restore snapshots'
complete -c kro -n "not __fish_seen_subcommand_from $kro_commands" -a sync -d 'Synchronize the library once'
complete -c kro -n "not __fish_seen_subcommand_from $kro_commands" -a account -d 'Show, set or remove the sync account'
complete -c kro -n "not __fish_seen_subcommand_from $kro_commands" -a help -d 'The usage of a command'

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
