# share_headers(NAME FOLDERS folders... LIBRARIES libs... HEADERS headers...): compiles the headers once for all programs
# and libraries below the folders, which are declared and compiled with the options that hold at this place. LIBRARIES:
# where the headers are found.
function(share_headers name)
    cmake_parse_arguments(arg "" "" "FOLDERS;LIBRARIES;HEADERS" ${ARGN})
    set(source ${PROJECT_BINARY_DIR}/shared-headers.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT "")
    add_library(${name} OBJECT EXCLUDE_FROM_ALL ${source})
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES})
    target_precompile_headers(${name} PRIVATE ${arg_HEADERS})
    targets_below(targets ${arg_FOLDERS})
    foreach(target ${targets})
        target_precompile_headers(${target} REUSE_FROM ${name})
    endforeach()
endfunction()
