# SPDX-License-Identifier: MIT
# What the build must know about the target operating system. A room's sources for that system are
# in the room's folder with its name.

if(APPLE)
    enable_language(OBJCXX)
    set(VELMORA_SYSTEM macos)
    set(VELMORA_SYSTEM_QT)
    # The system does it.
    set(VELMORA_READS_TEXT_ITSELF OFF)
else()
    set(VELMORA_SYSTEM linux)
    set(VELMORA_SYSTEM_QT DBus)
    set(VELMORA_READS_TEXT_ITSELF ON)
endif()
