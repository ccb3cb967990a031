# SPDX-License-Identifier: MIT
# Options, warnings and sanitizers, in the interface target portolan_options.

set(PORTOLAN_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize= takes them (empty: none)")
option(PORTOLAN_ASSERTIONS "Keep Q_ASSERT and the library's own checks" OFF)
option(PORTOLAN_BENCHMARKS "Build benchmarks/" OFF)
# Not by default: newer compilers have new warnings, which must not break the build for users.
set(PORTOLAN_WERROR_DEFAULT OFF)
if(DEFINED ENV{CI})
    set(PORTOLAN_WERROR_DEFAULT ON)
endif()
option(PORTOLAN_PCH "Precompile the headers that most sources include" OFF)
option(PORTOLAN_WERROR "Treat warnings as errors (default: in CI)" ${PORTOLAN_WERROR_DEFAULT})

find_program(CCACHE ccache)
if(CCACHE)
    # It fails where it cannot write its cache, which nobody may have asked for.
    file(WRITE ${PROJECT_BINARY_DIR}/CMakeFiles/ccache.cpp "")
    execute_process(COMMAND ${CCACHE} ${CMAKE_CXX_COMPILER} -c ccache.cpp -o ccache.o
        WORKING_DIRECTORY ${PROJECT_BINARY_DIR}/CMakeFiles RESULT_VARIABLE CCACHE_FAILURE OUTPUT_QUIET ERROR_QUIET)
    if(NOT CCACHE_FAILURE)
        set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
    endif()
endif()

add_library(portolan_options INTERFACE)
target_compile_options(portolan_options INTERFACE
    -Wall -Wextra -Wno-missing-field-initializers -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Wcast-align -Woverloaded-virtual
    # g++ 16 warns about moving an absent std::optional as about an uninitialised value.
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_GREATER_EQUAL:$<CXX_COMPILER_VERSION>,15>>:-Wno-maybe-uninitialized>
    $<$<BOOL:${PORTOLAN_WERROR}>:-Werror>
    -fno-omit-frame-pointer
)
target_compile_definitions(portolan_options INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_KEYWORDS
    QT_NO_URL_CAST_FROM_STRING
    QT_STRICT_ITERATORS
    # Qt 6.4 must be supported, so functions that later versions deprecate are used.
    QT_DISABLE_DEPRECATED_BEFORE=0x060400
    QT_WARN_DEPRECATED_UP_TO=0x060400
)
if(PORTOLAN_PCH AND CCACHE)
    # ccache needs it to detect changes of precompiled headers.
    target_compile_options(portolan_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
endif()
# Unused libraries would increase the start-up time.
target_link_options(portolan_options INTERFACE -Wl,--as-needed)

if(PORTOLAN_ASSERTIONS)
    target_compile_definitions(portolan_options INTERFACE QT_FORCE_ASSERTS _GLIBCXX_ASSERTIONS)
endif()
if(PORTOLAN_SANITIZE)
    # The vptr check needs file descriptors, and some tests use up all of them.
    target_compile_options(portolan_options INTERFACE
        -fsanitize=${PORTOLAN_SANITIZE} -fno-sanitize=vptr -fno-sanitize-recover=all
        # For a fence in the standard library, which the thread sanitizer does not support.
        $<$<CXX_COMPILER_ID:GNU>:-Wno-tsan>
    )
    target_link_options(portolan_options INTERFACE -fsanitize=${PORTOLAN_SANITIZE})
endif()
