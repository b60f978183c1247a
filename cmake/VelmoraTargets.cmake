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

# velmora_room(NAME SOURCES file... LINKS library...)
function(velmora_room name)
    cmake_parse_arguments(room "" "" "SOURCES;LINKS" ${ARGN})
    add_library(velmora_${name} STATIC ${room_SOURCES})
    target_link_libraries(velmora_${name} PUBLIC velmora_strict ${room_LINKS})
endfunction()

# velmora_test(NAME SOURCES file... LINKS library... [TIMEOUT seconds] [LABELS label...])
function(velmora_test name)
    cmake_parse_arguments(test "" "TIMEOUT" "SOURCES;LINKS;LABELS" ${ARGN})
    if(NOT test_TIMEOUT)
        set(test_TIMEOUT 120)
    endif()
    add_executable(${name} ${test_SOURCES})
    target_link_libraries(${name} PRIVATE velmora_strict velmora_hand_overs ${test_LINKS} Qt6::Test)
    add_test(NAME ${name}
        COMMAND ${PROJECT_SOURCE_DIR}/tests/world/run-in-world $<TARGET_FILE:${name}>)
    set_tests_properties(${name} PROPERTIES TIMEOUT ${test_TIMEOUT} LABELS "${test_LABELS}")
endfunction()

# velmora_bench(NAME SOURCES file... LINKS library...)
function(velmora_bench name)
    cmake_parse_arguments(bench "" "" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} ${bench_SOURCES})
    target_link_libraries(${name} PRIVATE velmora_strict ${bench_LINKS})
endfunction()
