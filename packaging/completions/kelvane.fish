# fish completion for kelvane
set -l commands scan inspect checks explain

complete -c kelvane -f
complete -c kelvane -n "not __fish_seen_subcommand_from $commands" -l help -s h -d 'Print help and exit'
complete -c kelvane -n "not __fish_seen_subcommand_from $commands" -l version -d 'Print the version and exit'
complete -c kelvane -n "not __fish_seen_subcommand_from $commands" -a scan -d 'Run every check over a project and report'
complete -c kelvane -n "not __fish_seen_subcommand_from $commands" -a inspect -d "Print a project's targets and settings"
complete -c kelvane -n "not __fish_seen_subcommand_from $commands" -a checks -d 'List the checks a scan runs'
complete -c kelvane -n "not __fish_seen_subcommand_from $commands" -a explain -d "Print a check's documentation"

complete -c kelvane -n '__fish_seen_subcommand_from scan inspect' -F
complete -c kelvane -n '__fish_seen_subcommand_from scan' -l format -x -a 'text json sarif junit github xcode' -d 'Report format'
complete -c kelvane -n '__fish_seen_subcommand_from scan' -l fail-on -x -a 'error warning never' -d 'Least severe finding that fails'
complete -c kelvane -n '__fish_seen_subcommand_from scan' -l output -r -F -d 'Write the report to FILE'
complete -c kelvane -n '__fish_seen_subcommand_from scan' -l color -x -a 'auto always never' -d 'Colour the text report'
complete -c kelvane -n '__fish_seen_subcommand_from scan' -l no-pace -d 'Do not pause between checks'
complete -c kelvane -n '__fish_seen_subcommand_from inspect checks' -l format -x -a 'text json' -d 'Output format'
complete -c kelvane -n '__fish_seen_subcommand_from scan inspect' -l as-built -d 'Read the project as Xcode builds it'
complete -c kelvane -n '__fish_seen_subcommand_from scan inspect' -l configuration -x -a 'Debug Release' -d 'With --as-built, the configuration to resolve'
complete -c kelvane -n '__fish_seen_subcommand_from explain' -x -a '(kelvane checks 2>/dev/null | string replace -r " .*" "")'
complete -c kelvane -n '__fish_seen_subcommand_from scan' -l all -d 'Scan every top-level project beneath the folder'
complete -c kelvane -n '__fish_seen_subcommand_from scan' -l skip -x -a '(kelvane checks | cut -d" " -f1)' -d 'Do not run this check'
complete -c kelvane -n '__fish_seen_subcommand_from scan' -l only -x -a '(kelvane checks | cut -d" " -f1)' -d 'Run only this check'
complete -c kelvane -n '__fish_seen_subcommand_from scan' -l baseline -r -F -d 'Report only findings FILE does not hold'
complete -c kelvane -n '__fish_seen_subcommand_from scan' -l write-baseline -r -F -d 'Record the findings in FILE'
