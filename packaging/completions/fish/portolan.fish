# SPDX-License-Identifier: MIT
complete -c portolan -f
complete -c portolan -l background -d 'Start silently, as at login'
complete -c portolan -l window -d 'Open the list in a window'
complete -c portolan -l version -d 'Print the version'
complete -c portolan -s h -l help -d 'Print a summary of the options'
