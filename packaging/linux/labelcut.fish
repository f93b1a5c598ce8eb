# Completion of labelcut for fish.

set -l commands dialog options panel-script plan presets print snapshot
set -l actions list remove rename save show

function __labelcut_queues
    command -q lpstat; and timeout 2 lpstat -e 2>/dev/null
end

# The printer that was named, as arguments, one a line; the default one is named by none.
function __labelcut_printer
    set -l words (commandline -opc)
    printf '%s\n' --timeout 2
    for i in (seq 2 (count $words))
        set -l value $words[(math "min($i + 1, "(count $words)")")]
        switch $words[$i]
            case -p --printer
                printf '%s\n' --printer $value
            case '--printer=*'
                printf '%s\n' (string split -m 1 = -- $words[$i])
            case --ppd
                printf '%s\n' --ppd $value
            case '--ppd=*'
                printf '%s\n' (string split -m 1 = -- $words[$i])
        end
    end
end

# KEYWORD=CHOICE a line, for the printer that was named.
function __labelcut_settings
    set -l printer (__labelcut_printer)
    set -l inside 0
    set -l found
    for line in (labelcut options --json $printer 2>/dev/null)
        switch $line
            case '*"choices": *'
                set inside 1
                set found
            case '*"keyword": "*'
                set -l keyword (string replace -r '.*: "(.*)".*' '$1' -- $line)
                if test $inside = 1
                    set -a found $keyword
                else
                    test (count $found) -gt 0; and printf '%s\n' $keyword=$found
                    set found
                end
            case '*": "*'
            case '*]*'
                set inside 0
        end
    end
end

function __labelcut_presets
    set -l printer (__labelcut_printer)
    labelcut presets list $printer 2>/dev/null
end

function __labelcut_papers
    set -l printer (__labelcut_printer)
    test "$printer[3]" = --ppd; and test -r "$printer[4]"; or return
    sed -n 's/^\*PageSize \([^\/:]*\).*/\1/p' -- $printer[4]
end

complete -c labelcut -f
complete -c labelcut -s h -l help -d 'Print a help text and leave'
complete -c labelcut -n "not __fish_seen_subcommand_from $commands" -l version -d 'Print the version and leave'

complete -c labelcut -n "not __fish_seen_subcommand_from $commands" -a dialog -d 'Open the print dialog'
complete -c labelcut -n "not __fish_seen_subcommand_from $commands" -a options -d 'List the options of a printer'
complete -c labelcut -n "not __fish_seen_subcommand_from $commands" -a panel-script -d 'Drive the panels by lines of JSON'
complete -c labelcut -n "not __fish_seen_subcommand_from $commands" -a plan -d 'Tell what would be printed and cut'
complete -c labelcut -n "not __fish_seen_subcommand_from $commands" -a presets -d 'Keep choices under a name'
complete -c labelcut -n "not __fish_seen_subcommand_from $commands" -a print -d 'Print files'
complete -c labelcut -n "not __fish_seen_subcommand_from $commands" -a snapshot -d 'Picture the panels as a PNG file'

set -l choosing "__fish_seen_subcommand_from presets; and not __fish_seen_subcommand_from $actions"
complete -c labelcut -n $choosing -a list -d 'List the names of a printer\'s presets'
complete -c labelcut -n $choosing -a remove -d 'Remove a preset'
complete -c labelcut -n $choosing -a rename -d 'Give a preset another name'
complete -c labelcut -n $choosing -a save -d 'Keep choices as a preset'
complete -c labelcut -n $choosing -a show -d 'Show what is in a preset'
set -l acting "__fish_seen_subcommand_from presets; and __fish_seen_subcommand_from $actions"
set -l saving "__fish_seen_subcommand_from presets; and __fish_seen_subcommand_from save"
set -l naming "__fish_seen_subcommand_from presets; and __fish_seen_subcommand_from save rename"
complete -c labelcut -n "$acting; and not __fish_seen_subcommand_from list" -a '(__labelcut_presets)'

# Documents and scripts.
set -l opening "not __fish_seen_subcommand_from $commands"
complete -c labelcut -n $opening -F
complete -c labelcut -n '__fish_seen_subcommand_from dialog panel-script plan print' -F

complete -c labelcut -n $opening -s p -l printer -x -a '(__labelcut_queues)' -d 'Queue of the print service'
complete -c labelcut -n '__fish_seen_subcommand_from dialog options plan print snapshot' -s p -l printer -x -a '(__labelcut_queues)' -d 'Queue of the print service'
complete -c labelcut -n $acting -s p -l printer -x -a '(__labelcut_queues)' -d 'Queue of the print service'
complete -c labelcut -n '__fish_seen_subcommand_from dialog options plan print snapshot' -l ppd -r -F -d 'PPD file of a printer'
complete -c labelcut -n $opening -l ppd -r -F -d 'PPD file of a printer'
complete -c labelcut -n $acting -l ppd -r -F -d 'PPD file of a printer'
complete -c labelcut -n '__fish_seen_subcommand_from options plan print snapshot' -l timeout -x -d 'Seconds to wait for each answer'
complete -c labelcut -n $acting -l timeout -x -d 'Seconds to wait for each answer'
complete -c labelcut -n '__fish_seen_subcommand_from options plan' -l json -d 'JSON instead of text'
complete -c labelcut -n '__fish_seen_subcommand_from options plan print' -l preset -x -a '(__labelcut_presets)' -d 'Choices kept under a name'
complete -c labelcut -n '__fish_seen_subcommand_from plan print snapshot' -s s -l set -x -a '(__labelcut_settings)' -d 'A choice of the printer'
complete -c labelcut -n $saving -s s -l set -x -a '(__labelcut_settings)' -d 'A choice of the printer'
complete -c labelcut -n '__fish_seen_subcommand_from plan print snapshot' -l page-size -x -a '(__labelcut_papers)' -d 'Paper by its name in the PPD'
complete -c labelcut -n $saving -l page-size -x -a '(__labelcut_papers)' -d 'Paper by its name in the PPD'
complete -c labelcut -n '__fish_seen_subcommand_from plan print' -s n -l copies -x -d 'How many of each'
complete -c labelcut -n $saving -s n -l copies -x -d 'How many of each'
complete -c labelcut -n $naming -l replace -d 'Replace the one of that name'
complete -c labelcut -n '__fish_seen_subcommand_from plan print' -l pages -x -d 'Pages counted through all files'
complete -c labelcut -n '__fish_seen_subcommand_from plan print' -l reverse -d 'The last page first'
complete -c labelcut -n $saving -l reverse -d 'The last page first'
complete -c labelcut -n '__fish_seen_subcommand_from plan print' -l no-collate -d 'Every copy of a page, then the next page'
complete -c labelcut -n $saving -l no-collate -d 'Every copy of a page, then the next page'
complete -c labelcut -n '__fish_seen_subcommand_from plan print' -l fit -x -a 'actual scale turn' -d 'What becomes of pages of other measures'
complete -c labelcut -n $saving -l fit -x -a 'actual scale turn' -d 'What becomes of pages of other measures'
complete -c labelcut -n '__fish_seen_subcommand_from print' -s t -l title -x -d 'Title of the job'
complete -c labelcut -n '__fish_seen_subcommand_from print snapshot' -s o -l output -r -F -d 'File to write'
complete -c labelcut -n '__fish_seen_subcommand_from snapshot' -l what -x -a 'panel strip dialog' -d 'What is pictured'
complete -c labelcut -n '__fish_seen_subcommand_from snapshot' -l scale -x -d 'Pixels per point'
complete -c labelcut -n '__fish_seen_subcommand_from snapshot' -l dark -d 'Dark instead of light'
complete -c labelcut -n '__fish_seen_subcommand_from snapshot' -l language -x -a 'de en es fr ja zh_CN' -d 'Language of the texts'
