# SPDX-License-Identifier: MIT
# The three kinds of target that this project has: a room (one static library a folder), a test
# (one program, run in a private world of its own) and a benchmark.

add_library(velmora_strict INTERFACE)
target_compile_features(velmora_strict INTERFACE cxx_std_20)
target_compile_options(velmora_strict INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
target_compile_definitions(velmora_strict INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
    QT_NO_KEYWORDS QT_NO_FOREACH QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_USE_QSTRINGBUILDER
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)
target_include_directories(velmora_strict INTERFACE ${PROJECT_SOURCE_DIR})

# What a program of the tsan preset needs to know of Qt; nothing elsewhere.
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize=thread")
    add_library(velmora_hand_overs OBJECT ${PROJECT_SOURCE_DIR}/tests/world/HandOvers.cpp)
    target_compile_features(velmora_hand_overs PRIVATE cxx_std_20)
    # A member function stands at an even address.
    target_compile_options(velmora_hand_overs PRIVATE -fno-sanitize=thread -falign-functions=16)
else()
    add_library(velmora_hand_overs INTERFACE)
endif()

# Parsing Qt's headers is most of what a source costs: those that most sources need are compiled
# once a kind of target. Sources still include what they use; nothing may rely on these lists.
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
    set_target_properties(velmora_precompiled_${kind} PROPERTIES AUTOMOC OFF AUTORCC OFF)
    target_link_libraries(velmora_precompiled_${kind} PRIVATE velmora_strict ${ARGN})
    target_precompile_headers(velmora_precompiled_${kind} PRIVATE ${velmora_${kind}_headers})
endfunction()

# velmora_room(NAME [PRECOMPILED core|widgets] SOURCES file... LINKS library...)
function(velmora_room name)
    cmake_parse_arguments(room "" "PRECOMPILED" "SOURCES;LINKS" ${ARGN})
    if(NOT room_PRECOMPILED)
        set(room_PRECOMPILED core)
    endif()
    add_library(velmora_${name} STATIC ${room_SOURCES})
    target_link_libraries(velmora_${name} PUBLIC velmora_strict ${room_LINKS})
    target_precompile_headers(velmora_${name} REUSE_FROM velmora_precompiled_${room_PRECOMPILED})
endfunction()

# What every test program is compiled and linked with. Qt tells each test its folders, which none
# uses, and no two programs could share a precompiled header.
add_library(velmora_test_library INTERFACE)
target_link_libraries(velmora_test_library INTERFACE Qt6::Network Qt6::Test Qt6::Widgets)
target_compile_options(velmora_test_library INTERFACE
    -UQT_TESTCASE_BUILDDIR -UQT_TESTCASE_SOURCEDIR)

# velmora_test(NAME SOURCES file... LINKS library... [TIMEOUT seconds] [LABELS label...])
function(velmora_test name)
    cmake_parse_arguments(test "" "TIMEOUT" "SOURCES;LINKS;LABELS" ${ARGN})
    if(NOT test_TIMEOUT)
        set(test_TIMEOUT 120)
    endif()
    add_executable(${name} ${test_SOURCES})
    target_link_libraries(${name}
        PRIVATE velmora_strict velmora_hand_overs ${test_LINKS} velmora_test_library)
    target_precompile_headers(${name} REUSE_FROM velmora_precompiled_tests)
    set(world run-in-world)
    if(VELMORA_NEUTRAL_TESTS)
        if(NOT name IN_LIST VELMORA_NEUTRAL_TESTS)
            return()
        endif()
        set(world run-in-home)
        list(APPEND test_LABELS neutral)
        add_dependencies(neutral_tests ${name})
    endif()
    add_test(NAME ${name}
        COMMAND ${PROJECT_SOURCE_DIR}/tests/world/${world} $<TARGET_FILE:${name}>)
    set_tests_properties(${name} PROPERTIES TIMEOUT ${test_TIMEOUT} LABELS "${test_LABELS}")
endfunction()

# velmora_test_under(NAME SUFFIX MANAGER): runs a test once more, under another window manager than
# the usual one. MANAGER is its command line.
function(velmora_test_under name suffix manager)
    if(NOT TEST ${name})
        return()
    endif()
    add_test(NAME ${name}_${suffix}
        COMMAND ${PROJECT_SOURCE_DIR}/tests/world/run-in-world $<TARGET_FILE:${name}>)
    get_property(timeout TEST ${name} PROPERTY TIMEOUT)
    set_tests_properties(${name}_${suffix} PROPERTIES
        TIMEOUT ${timeout} ENVIRONMENT "VELMORA_WORLD_MANAGER=${manager}")
endfunction()

# velmora_bench(NAME SOURCES file... LINKS library...)
function(velmora_bench name)
    cmake_parse_arguments(bench "" "" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} ${bench_SOURCES})
    target_link_libraries(${name} PRIVATE velmora_strict ${bench_LINKS})
endfunction()
