# SPDX-License-Identifier: MIT
# The tests that don't need the test world: no X server, no session bus, no Linux.

add_custom_target(neutral_tests)
foreach(room core filesystem imaging style detection naming search files tray app)
    add_subdirectory(${room} EXCLUDE_FROM_ALL)
endforeach()
