# Libraries of headers alone are Debian's, for Windows as for Linux. Of the folder that holds them nothing else may be
# seen. They need not be there when a build is configured: it finds them once they are installed.
set(DEBIAN_HEADERS /usr/include CACHE PATH "Where Debian's packages put their headers")

# debian_headers(TARGET FOLDERS...): an interface library for these folders of headers.
function(debian_headers target)
    set(links ${PROJECT_BINARY_DIR}/debian-headers/${target})
    file(MAKE_DIRECTORY ${links})
    foreach(folder ${ARGN})
        file(CREATE_LINK ${DEBIAN_HEADERS}/${folder} ${links}/${folder} SYMBOLIC)
    endforeach()
    add_library(${target} INTERFACE)
    target_include_directories(${target} SYSTEM INTERFACE ${links})
endfunction()

# nlohmann-json: the doctor's answers and the benches'.
debian_headers(json_headers nlohmann)
