// SPDX-License-Identifier: MIT
#include "command/usage.h"

const char *const usageText =
    R"(Usage: velmora-name [OPTION]... FILE-OR-FOLDER...
       velmora-name --undo
       velmora-name --find WORD...

Gives screenshots file names made from the text in them. The text is read on
this machine. Without --rename it only prints the names, one line per picture:
OLD<TAB>NEW. For a folder it takes the pictures in it, but not those in folders
below. "-" reads names from standard input.

Only files that still have the name a screenshot tool gave them get a new one.

  --app NAME    the application in the screenshots; its name comes first
  --all         also files that a person has named
  --rename      rename the files; never overwrites a file
  --undo        undo the last run of --rename
  --text        print the text of the pictures instead of names
  --find        print the paths of screenshots that contain all the words, best
                first; needs Velmora's permission to remember text
  --json        print one JSON object per line
  -0, --null    names end with a zero byte, on standard input and output
  --help        print this help and exit
  --version     print the version and exit

Exit status: 0 on success, 1 if some pictures could not be read or renamed or
none was found, 2 if the command line is wrong.
)";
