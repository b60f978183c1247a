# SPDX-License-Identifier: MIT
# The three kinds of target in this project: a room (one static library per folder), a room's tests
# (one program, each class of which runs in a private world of its own) and any other program.

add_library(velmora_strict INTERFACE)
target_compile_features(velmora_strict INTERFACE cxx_std_20)
target_compile_options(velmora_strict INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
target_compile_definitions(velmora_strict INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
    QT_NO_KEYWORDS QT_NO_FOREACH QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_USE_QSTRINGBUILDER
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)
target_include_directories(velmora_strict INTERFACE ${PROJECT_SOURCE_DIR})

# Linking takes a third of the time with it.
include(CheckLinkerFlag)
check_linker_flag(CXX -fuse-ld=gold VELMORA_HAS_GOLD)
if(VELMORA_HAS_GOLD)
    target_link_options(velmora_strict INTERFACE $<$<CONFIG:RelWithDebInfo>:-fuse-ld=gold>)
endif()

# Parsing Qt's headers is most of the cost of a source: those that most sources need are precompiled
# once per kind of target. Sources still include what they use; nothing may rely on these lists.
set(velmora_core_headers
    <algorithm> <chrono> <functional> <memory> <optional> <vector>
    <QByteArray> <QDir> <QFile> <QFuture> <QHash> <QList> <QObject> <QSettings> <QString>
    <QStringList> <QTimer> <QUrl> <QUuid>)
set(velmora_widgets_headers ${velmora_core_headers}
    <QApplication> <QIcon> <QImage> <QLabel> <QPainter> <QPushButton> <QScreen> <QStyle> <QWidget>
    <QWindow>)
set(velmora_tests_headers ${velmora_core_headers}
    <QImage> <QProcess> <QSignalSpy> <QTemporaryDir> <QTest>)

# velmora_precompiled(core|widgets|tests LIBRARY...)
function(velmora_precompiled kind)
    add_library(velmora_precompiled_${kind} OBJECT ${PROJECT_SOURCE_DIR}/cmake/empty.cpp)
    target_link_libraries(velmora_precompiled_${kind} PRIVATE velmora_strict ${ARGN})
    target_precompile_headers(velmora_precompiled_${kind} PRIVATE ${velmora_${kind}_headers})
endfunction()

# velmora_room(NAME [MOC] [PRECOMPILED core|widgets] SOURCES file... LINKS library...)
# MOC if a class has Q_OBJECT: searching for those costs seconds per target.
function(velmora_room name)
    cmake_parse_arguments(room "MOC" "PRECOMPILED" "SOURCES;LINKS" ${ARGN})
    if(NOT room_PRECOMPILED)
        set(room_PRECOMPILED core)
    endif()
    add_library(velmora_${name} STATIC ${room_SOURCES})
    set_target_properties(velmora_${name} PROPERTIES AUTOMOC ${room_MOC})
    target_link_libraries(velmora_${name} PUBLIC velmora_strict ${room_LINKS})
    target_precompile_headers(velmora_${name} REUSE_FROM velmora_precompiled_${room_PRECOMPILED})
endfunction()

# velmora_program(NAME [PRECOMPILED core|widgets|tests] SOURCES file... LINKS library...)
# A benchmark, or a program that tests or the build itself start.
function(velmora_program name)
    cmake_parse_arguments(program "" "PRECOMPILED" "SOURCES;LINKS" ${ARGN})
    if(NOT program_PRECOMPILED)
        set(program_PRECOMPILED core)
    endif()
    add_executable(${name} ${program_SOURCES})
    target_link_libraries(${name} PRIVATE velmora_strict ${program_LINKS})
    target_precompile_headers(${name} REUSE_FROM velmora_precompiled_${program_PRECOMPILED})
endfunction()

# What every test program is compiled and linked with. Qt would give each test its own folders as
# definitions, which no test uses and which keep programs from sharing a precompiled header.
add_library(velmora_test_library INTERFACE)
target_link_libraries(velmora_test_library INTERFACE Qt6::Network Qt6::Test Qt6::Widgets)
target_compile_options(velmora_test_library INTERFACE
    -UQT_TESTCASE_BUILDDIR -UQT_TESTCASE_SOURCEDIR
    # Half of the compiler's time. What is tested is optimised as ever, except for those inline
    # functions of libraries that the tests use, too: the linker takes one of the copies.
    $<$<CONFIG:RelWithDebInfo>:-O0>)

# velmora_tests(NAME [NEUTRAL class...] [CLASSES class...] [LINKS library...]
#                             [WORLD_LINKS library...])
# The program NAME_tests of a room, which contains these classes (tests/world/TestProgram.h), and a
# test NAME.CLASS for each. NEUTRAL are those that don't need the test world; without a test world,
# the program contains only these. Only the others need WORLD_LINKS.
function(velmora_tests name)
    cmake_parse_arguments(tests "" "" "NEUTRAL;CLASSES;LINKS;WORLD_LINKS" ${ARGN})
    set(world run-in-world)
    if(APPLE)
        set(world run-in-home)
        unset(tests_CLASSES)
        unset(tests_WORLD_LINKS)
        if(NOT tests_NEUTRAL)
            return()
        endif()
        add_dependencies(neutral_tests ${name}_tests)
    endif()
    set(classes ${tests_NEUTRAL} ${tests_CLASSES})
    list(TRANSFORM classes APPEND .cpp OUTPUT_VARIABLE sources)
    add_executable(${name}_tests ${sources})
    set_target_properties(${name}_tests PROPERTIES AUTOMOC ON)
    target_link_libraries(${name}_tests PRIVATE velmora_strict ${tests_LINKS}
         ${tests_WORLD_LINKS} velmora_test_program velmora_test_library)
    target_precompile_headers(${name}_tests REUSE_FROM velmora_precompiled_tests)
    # Each test includes its own; this file is empty.
    set_source_files_properties(
        ${CMAKE_CURRENT_BINARY_DIR}/${name}_tests_autogen/mocs_compilation.cpp
        PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
    foreach(class IN LISTS classes)
        add_test(NAME ${name}.${class}
            COMMAND ${PROJECT_SOURCE_DIR}/tests/world/${world} $<TARGET_FILE:${name}_tests> ${class})
        set_tests_properties(${name}.${class} PROPERTIES TIMEOUT 300)
    endforeach()
    foreach(class IN LISTS tests_NEUTRAL)
        set_tests_properties(${name}.${class} PROPERTIES LABELS neutral)
    endforeach()
endfunction()

# velmora_test_in(NAME CLASS SUFFIX VARIABLE=VALUE): runs a class again, in another world than the
# usual one (tests/world/run-in-world lists the variables).
function(velmora_test_in name class suffix variable)
    add_test(NAME ${name}.${class}.${suffix}
        COMMAND ${PROJECT_SOURCE_DIR}/tests/world/run-in-world $<TARGET_FILE:${name}_tests> ${class})
    set_tests_properties(${name}.${class}.${suffix} PROPERTIES TIMEOUT 300 ENVIRONMENT "${variable}")
endfunction()
