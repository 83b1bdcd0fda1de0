# unite_sources(MOST_BYTES folders...): compiles the sources of each target below the folders in larger units, which read
# the headers they share once. To be called when all targets are declared. Sources whose names meet stay apart: see
# unity.py.
function(unite_sources most_bytes)
    targets_below(targets ${ARGN})
    set(sources)
    foreach(target ${targets})
        unite_target(${target})
    endforeach()
    set(list ${PROJECT_BINARY_DIR}/unity-sources.txt)
    file(WRITE ${list} "${sources}")
    execute_process(COMMAND ${Python3_EXECUTABLE} -B ${PROJECT_SOURCE_DIR}/cmake/unity.py ${most_bytes}
        INPUT_FILE ${list} OUTPUT_FILE ${PROJECT_BINARY_DIR}/unity-groups.cmake COMMAND_ERROR_IS_FATAL ANY)
    include(${PROJECT_BINARY_DIR}/unity-groups.cmake)
endfunction()

# Adds the target's own C++ sources to `sources`, one a line.
macro(unite_target target)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
    get_property(directory TARGET ${target} PROPERTY SOURCE_DIR)
    get_property(files TARGET ${target} PROPERTY SOURCES)
    list(FILTER files INCLUDE REGEX "\\.cpp$")
    foreach(file ${files})
        get_filename_component(file ${file} ABSOLUTE BASE_DIR ${directory})
        # What is generated stays by itself: the first configuration does not see it yet, and all are to be the same.
        get_property(is_generated SOURCE ${file} TARGET_DIRECTORY ${target} PROPERTY GENERATED)
        if(NOT is_generated)
            string(APPEND sources "${directory}\t${target}\t${file}\n")
            set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
        endif()
    endforeach()
endmacro()
