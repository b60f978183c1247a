# SPDX-License-Identifier: MIT
# Completion of velmora-name for fish.

complete -c velmora-name -l app -x -d 'the application that the screenshots show'
complete -c velmora-name -l all -d 'name files too that have a name of their own'
complete -c velmora-name -l rename -d 'give the files their names'
complete -c velmora-name -l undo -d 'take back what --rename did last'
complete -c velmora-name -l text -d 'print the text of pictures'
complete -c velmora-name -l find -d 'print the screenshots that hold words'
complete -c velmora-name -l json -d 'print one JSON object a line'
complete -c velmora-name -s 0 -l null -d 'names end with a zero byte'
complete -c velmora-name -l help -d 'print a summary'
complete -c velmora-name -l version -d 'print the version'
