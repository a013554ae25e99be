# SPDX-FileCopyrightText: 2026 The Dorvantel founders
# SPDX-License-Identifier: MIT
find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Widgets Network Pdf Svg Concurrent)
find_package(ICU 70 REQUIRED COMPONENTS uc i18n)
find_package(Fontconfig REQUIRED)
find_package(SQLite3 3.38 REQUIRED)
find_package(nlohmann_json 3.11 REQUIRED)
find_package(simdjson 3 REQUIRED)
find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)
# The library's classes have other sizes with other definitions, so those it was built with come from its own file.
pkg_check_modules(HTTPLIB REQUIRED IMPORTED_TARGET cpp-httplib)
pkg_check_modules(SECCOMP REQUIRED libseccomp>=2.5)
# Only for programs that confine themselves: without this, every program that has the room platform in it would load it.
add_library(dorvantel_seccomp INTERFACE)
target_include_directories(dorvantel_seccomp SYSTEM INTERFACE ${SECCOMP_INCLUDE_DIRS})
target_link_libraries(dorvantel_seccomp INTERFACE "-Wl,--push-state,--as-needed,-lseccomp,--pop-state")

if(NOT TARGET httplib)
    add_library(httplib INTERFACE IMPORTED)
    target_link_libraries(httplib INTERFACE PkgConfig::HTTPLIB Threads::Threads)
endif()

if(DORVANTEL_BUILD_TESTS)
    find_package(GTest 1.12 REQUIRED)
    find_package(Qt6 6.4 REQUIRED COMPONENTS Test)
    include(GoogleTest)
endif()
if(DORVANTEL_BUILD_BENCH)
    find_package(benchmark REQUIRED)
endif()
