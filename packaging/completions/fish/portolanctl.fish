# SPDX-License-Identifier: MIT
# The ports of the servers that run now, each with its server's name; with "names" those names too.
function __portolanctl_running
    contains -- --host (commandline -opc); and return
    set -l name
    for line in (portolanctl list --no-probe --json 2>/dev/null | grep -oE '"(port|displayName)": *("([^"\]|\\\\.)*"|[0-9]+)')
        set -l value (string replace -r '^"[a-zA-Z]+": *' '' -- $line | string trim -c '"')
        if string match -q '"displayName"*' -- $line
            set name $value
            continue
        end
        printf '%s\t%s\n' $value $name
        # Names that JSON had to escape are left out.
        if test "$argv[1]" = names; and not string match -qr '\\\\' -- $name
            printf '%s\tport %s\n' $name $value
        end
    end
end

set -l commands list watch stop open wait
set -l none "not __fish_seen_subcommand_from $commands"
set -l listing "not __fish_seen_subcommand_from stop open wait"

complete -c portolanctl -f
complete -c portolanctl -n $none -a list -d 'Print the servers of this machine, once'
complete -c portolanctl -n $none -a watch -d 'Keep the list up to date'
complete -c portolanctl -n $none -a stop -d 'Stop servers'
complete -c portolanctl -n $none -a open -d 'Open a server in the browser'
complete -c portolanctl -n $none -a wait -d 'Wait until servers answer'
complete -c portolanctl -n '__fish_seen_subcommand_from list stop' -a '(__portolanctl_running names)'
complete -c portolanctl -n '__fish_seen_subcommand_from open wait' -a '(__portolanctl_running)'
complete -c portolanctl -n $listing -l json -d 'Print JSON objects'
complete -c portolanctl -n $listing -l no-probe -d 'Do not ask the servers whether they answer'
complete -c portolanctl -n $listing -l search -x -d 'Only servers with this text'
complete -c portolanctl -n $listing -l sort -x -a 'port name status uptime' -d 'Sort by this instead of the stored order'
complete -c portolanctl -n '__fish_seen_subcommand_from wait' -l timeout -x -d 'Give up after as many seconds'
complete -c portolanctl -l host -x -a '(__fish_print_hostnames)' -d 'Ask portolanctl there, over SSH'
complete -c portolanctl -n $none -l version -d 'Print the version'
complete -c portolanctl -s h -l help -d 'Print a summary'
