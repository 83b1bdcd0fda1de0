# GoogleTest from Debian's sources (built with our own flags, for Wine as for Linux) and how a test program is declared.
add_library(googletest STATIC EXCLUDE_FROM_ALL /usr/src/googletest/googletest/src/gtest-all.cc)
target_include_directories(googletest SYSTEM PUBLIC /usr/src/googletest/googletest/include)
target_include_directories(googletest PRIVATE /usr/src/googletest/googletest)
target_compile_options(googletest PRIVATE -O0)
if(WIN32)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        # A failure names its file as the person's shell does: with this machine's slashes, not with those of Windows.
        target_compile_options(googletest PUBLIC -fno-file-reproducible)
    endif()
    # Started by ctest, and by hand from the build folder, through Wine with this build's own prefix. A test passes only
    # with the closing line of its kind.
    set(wine_run ${PROJECT_SOURCE_DIR}/cmake/wine-run)
    set(wine_prefix ${PROJECT_BINARY_DIR}/prefix)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${wine_run} --demand test ${wine_prefix})
endif()
if(NOT WIN32)
    # On Linux a test needs no more support than a main.
    add_library(test_support STATIC EXCLUDE_FROM_ALL /usr/src/googletest/googletest/src/gtest_main.cc)
    target_link_libraries(test_support PUBLIC googletest)
endif()
if(VELMO_NATIVE_SANITIZERS)
    target_compile_options(googletest PUBLIC -fsanitize=address,undefined)
endif()

# velmo_test(NAME sources... LIBRARIES libs... [WRAP functions...] [LABELS labels...] [COST seconds])
#   LIBRARIES  what is tested
#   WRAP       imported functions that this program replaces: define __wrap___imp_X, call __real___imp_X
#   LABELS     unit, flow, e2e, native
#   COST       what takes long starts first
# The program is one test of ctest: a process for each of its tests would take longer to start than the test. It prints
# what fails, and ends a test that hangs (tests/support/Main.cpp). `./dev test NAME` runs those of its tests that match.
function(velmo_test name)
    cmake_parse_arguments(arg "" "COST" "LIBRARIES;WRAP;LABELS" ${ARGN})
    add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} test_support googletest velmo_options)
    foreach(function ${arg_WRAP})
        target_link_options(${name} PRIVATE -Wl,--wrap=__imp_${function})
    endforeach()
    add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
    set_tests_properties(${name} PROPERTIES LABELS "${arg_LABELS}" TIMEOUT 900)
    if(arg_COST)
        set_tests_properties(${name} PROPERTIES COST ${arg_COST})
    endif()
    # For tools/select_tests.py.
    set(sources)
    foreach(source ${arg_UNPARSED_ARGUMENTS})
        get_filename_component(source ${source} ABSOLUTE)
        list(APPEND sources ${source})
    endforeach()
    list(JOIN sources "\n" sources)
    file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/test-programs/${name} CONTENT "$<TARGET_FILE:${name}>\n${sources}\n")
endfunction()
