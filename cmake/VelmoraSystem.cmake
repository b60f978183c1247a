# SPDX-License-Identifier: MIT
# What the build must know of the operating system that it builds for. A room's sources of that system
# stand in its folder of this name.

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
