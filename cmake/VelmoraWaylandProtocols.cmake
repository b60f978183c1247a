# SPDX-License-Identifier: MIT
# Include it in each folder of protocols.
enable_language(C)
pkg_check_modules(WAYLAND REQUIRED IMPORTED_TARGET wayland-client)
find_program(WAYLAND_SCANNER wayland-scanner REQUIRED)

# velmora_wayland_protocols(TARGET NAME...): a static library of what wayland-scanner makes of the
# protocols in this folder: NAME.xml becomes the header NAME-client.h.
function(velmora_wayland_protocols target)
    add_library(${target} STATIC)
    set_target_properties(${target} PROPERTIES AUTOMOC OFF AUTORCC OFF)
    target_link_libraries(${target} PUBLIC PkgConfig::WAYLAND)
    target_include_directories(${target} SYSTEM PUBLIC ${CMAKE_CURRENT_BINARY_DIR})
    foreach(name IN LISTS ARGN)
        set(protocol ${CMAKE_CURRENT_SOURCE_DIR}/${name}.xml)
        foreach(kind client-header private-code)
            if(kind STREQUAL client-header)
                set(output ${CMAKE_CURRENT_BINARY_DIR}/${name}-client.h)
            else()
                set(output ${CMAKE_CURRENT_BINARY_DIR}/${name}-client.c)
            endif()
            add_custom_command(OUTPUT ${output}
                COMMAND ${WAYLAND_SCANNER} ${kind} ${protocol} ${output} DEPENDS ${protocol})
            target_sources(${target} PRIVATE ${output})
        endforeach()
    endforeach()
endfunction()
