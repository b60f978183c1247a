# SPDX-License-Identifier: MIT
# Completion of velmora-name for fish.

complete -c velmora-name -l app -x -d 'the application in the screenshots'
complete -c velmora-name -l all -d 'also name files that a person has named'
complete -c velmora-name -l rename -d 'rename the files'
complete -c velmora-name -l undo -d 'undo the last run of --rename'
complete -c velmora-name -l text -d 'print the text of pictures'
complete -c velmora-name -l find -d 'print the screenshots that contain all the words'
complete -c velmora-name -l json -d 'print one JSON object per line'
complete -c velmora-name -s 0 -l null -d 'names end with a zero byte'
complete -c velmora-name -l help -d 'print a summary'
complete -c velmora-name -l version -d 'print the version'
