// SPDX-License-Identifier: MIT
#include "command/usage.h"

const char *const usageText =
    R"(Usage: velmora-name [OPTION]... FILE-OR-FOLDER...
       velmora-name --undo
       velmora-name --find WORD...

Reads the text in screenshots, on this machine, and makes file names of it.
Prints one line a picture, OLD<TAB>NEW, and touches nothing. Of a folder it
takes the pictures in it, without the folders below. "-" stands for names on
standard input.

Only files that still have the name that a screenshot tool gave them are named.

  --app NAME    the application that the screenshots show; its name comes first
  --all         name files too that have a name of their own
  --rename      give the files their names; nothing is ever overwritten
  --undo        take back what --rename did last
  --text        print the text of all pictures in place of names
  --find        print the paths of the screenshots that hold all the words, best
                first; Velmora must have been allowed to remember their text
  --json        print one JSON object a line
  -0, --null    names end with a zero byte, on standard input and output
  --help        print this and end
  --version     print the version and end

Exit status: 0 when all is done, 1 when some pictures could not be read or
renamed or none was found, 2 for a wrong command line.
)";
