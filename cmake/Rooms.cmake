# SPDX-FileCopyrightText: 2026 The Dorvantel founders
# SPDX-License-Identifier: MIT

# One static library per folder, named dorvantel_<folder>: every *.cpp of the folder, and of those of its subfolders that
# FOLDERS names, but the entries of programs (main.cpp, *Main.cpp). Includes are written from the root of the repository.
function(dorvantel_room name)
    cmake_parse_arguments(ROOM "" "" "LINK;FOLDERS" ${ARGN})
    set(patterns "*.cpp" "*.h" "*.qrc")
    foreach(folder IN LISTS ROOM_FOLDERS)
        list(APPEND patterns "${folder}/*.cpp" "${folder}/*.h")
    endforeach()
    file(GLOB sources CONFIGURE_DEPENDS ${patterns})
    list(FILTER sources EXCLUDE REGEX "(/main|Main)\\.cpp$")
    add_library(dorvantel_${name} STATIC ${sources})
    target_include_directories(dorvantel_${name} PUBLIC "${PROJECT_SOURCE_DIR}")
    target_link_libraries(dorvantel_${name} PUBLIC ${ROOM_LINK})
    set_target_properties(dorvantel_${name} PROPERTIES LINKER_LANGUAGE CXX AUTORCC ON)
    dorvantel_renew_moc(dorvantel_${name} "${sources}")
endfunction()

# With Ninja, CMake 3.25 does not run moc again when a header is new to a target that was built before, and the link
# fails. Forgetting when moc ran last makes it look at the new list of files.
function(dorvantel_renew_moc target sources)
    if(NOT "${sources}" STREQUAL "${DORVANTEL_SOURCES_OF_${target}}")
        file(REMOVE "${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/timestamp")
        set(DORVANTEL_SOURCES_OF_${target} "${sources}" CACHE INTERNAL "Files of the target at the last configure")
    endif()
endfunction()

# Most of what a test costs to compile is what the headers of the test library expand to: unoptimised, and with those
# headers read once, it takes a quarter of the time. What is tested is optimised all the same. The plain build reads the
# headers as they stand, so that each file still has to include what it uses. What follows
# the target is for target_precompile_headers.
function(dorvantel_compile_quickly target)
    target_compile_options(${target} PRIVATE $<$<CONFIG:Debug>:-O0>)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        target_precompile_headers(${target} ${ARGN})
    endif()
endfunction()

# The tests of one folder: every *_test.cpp below tests/<folder>, one program, one ctest entry per test, labelled with
# the program's name.
function(dorvantel_tests name)
    cmake_parse_arguments(T "" "" "LINK;DEPENDS" ${ARGN})
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS
         "${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp" "${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.h")
    if(NOT sources)
        return()
    endif()
    add_executable(test_${name} ${sources})
    dorvantel_renew_moc(test_${name} "${sources}")
    target_link_libraries(test_${name} PRIVATE dorvantel_test_support ${T_LINK})
    dorvantel_compile_quickly(test_${name} REUSE_FROM dorvantel_test_support)
    target_compile_definitions(test_${name} PRIVATE
        DORVANTEL_SOURCE_DIR="${PROJECT_SOURCE_DIR}" DORVANTEL_BIN_DIR="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
    if(T_DEPENDS)
        add_dependencies(test_${name} ${T_DEPENDS})
    endif()
    gtest_discover_tests(test_${name}
        DISCOVERY_MODE PRE_TEST
        PROPERTIES TIMEOUT 120 LABELS test_${name} ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LANG=C.UTF-8;TZ=UTC")
endfunction()
