# SPDX-License-Identifier: MIT
# Adds to the files of the package what Debian wants of each: licence, changelog, packed manuals.

set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share)
set(documents ${root}/doc/velmora)
set(here ${CPACK_VELMORA_SOURCE}/packaging/debian)

file(MAKE_DIRECTORY ${documents})
file(COPY_FILE ${here}/copyright ${documents}/copyright)
execute_process(COMMAND_ERROR_IS_FATAL ANY
    COMMAND python3 ${here}/make_changelog.py ${CPACK_VELMORA_SOURCE} ${CPACK_PACKAGE_VERSION}
        ${documents}/changelog)

file(GLOB_RECURSE packed ${root}/man/*.[1-9] ${documents}/changelog)
execute_process(COMMAND_ERROR_IS_FATAL ANY COMMAND gzip --best --no-name ${packed})
