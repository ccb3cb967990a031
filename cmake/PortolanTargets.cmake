# SPDX-License-Identifier: MIT
# Functions for the library of a folder of src/ and the test program of a folder of tests/.

# portolan_library(NAME SOURCES file... LINKS target... [PRIVATE_LINKS target...])
# A static library whose headers are included by file name. LINKS are the libraries that its headers use and
# PRIVATE_LINKS those that only its sources use; headers of other libraries are not in the include path.
function(portolan_library NAME)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
    add_library(${NAME} STATIC ${ARG_SOURCES})
    target_include_directories(${NAME} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${NAME} PUBLIC ${ARG_LINKS} PRIVATE ${ARG_PRIVATE_LINKS} portolan_options)
    if(PORTOLAN_PCH)
        target_precompile_headers(${NAME} REUSE_FROM portolan_pch)
    endif()
endfunction()

# portolan_tests(NAME [GUI] SOURCES file... LINKS target... [LABELS label...] [LOCKS resource...])
# One GoogleTest program for the tests of one folder, with a QGuiApplication if GUI is given and a
# QCoreApplication otherwise; every test case is one CTest test. Data files are in tests/FOLDER/data. Tests run
# in parallel, except those that name the same resource in LOCKS.
function(portolan_tests NAME)
    cmake_parse_arguments(ARG "GUI" "" "SOURCES;LINKS;LABELS;LOCKS" ${ARGN})
    add_executable(${NAME} ${ARG_SOURCES})
    set(MAIN portolan_test_core_main)
    if(ARG_GUI)
        set(MAIN portolan_test_gui_main)
    endif()
    target_link_libraries(${NAME} PRIVATE ${MAIN} ${ARG_LINKS} portolan_options)
    # Compiling takes longer than running the tests.
    target_compile_options(${NAME} PRIVATE -O0)
    if(PORTOLAN_PCH)
        target_precompile_headers(${NAME} REUSE_FROM portolan_test_pch)
    endif()
    target_compile_definitions(${NAME} PRIVATE
        PORTOLAN_TEST_DATA="${CMAKE_CURRENT_SOURCE_DIR}/data"
    )
    if(ARG_LABELS)
        set(LABELS LABELS "${ARG_LABELS}")
    endif()
    if(ARG_LOCKS)
        set(LOCKS RESOURCE_LOCK "${ARG_LOCKS}")
    endif()
    gtest_discover_tests(${NAME}
        DISCOVERY_MODE PRE_TEST
        NO_PRETTY_VALUES
        PROPERTIES
            ${LABELS}
            ${LOCKS}
            TIMEOUT 120
            ENVIRONMENT QT_QPA_PLATFORM=offscreen
    )
endfunction()
