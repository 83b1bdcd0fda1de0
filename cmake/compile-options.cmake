# How every target of this project is compiled and linked: link to `velmo_options`.
add_library(velmo_options INTERFACE)
target_include_directories(velmo_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(velmo_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-unused-parameter -Werror)

if(WIN32)
    # The universal C runtime that Windows ships; but GCC's coverage counters are written by a library that was built for
    # the older one, and cannot open its files with this one.
    if(NOT VELMO_COVERAGE)
        add_compile_definitions(_UCRT)
        set(CMAKE_CXX_STANDARD_LIBRARIES "-lucrt ${CMAKE_CXX_STANDARD_LIBRARIES}")
    endif()
    # 0x0A000006 is Windows 10 1809, the oldest system served.
    target_compile_definitions(velmo_options INTERFACE
        UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0A00 NTDDI_VERSION=0x0A000006)
    target_compile_options(velmo_options INTERFACE -ffunction-sections -fdata-sections)
    # windowsapp comes first, so that imports go to the API sets and not to the classic libraries.
    target_link_libraries(velmo_options INTERFACE windowsapp)
    target_link_options(velmo_options INTERFACE -static -Wl,--gc-sections)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        # Stripped: symbols are in a .pdb, where there is one.
        target_link_options(velmo_options INTERFACE -s)
        # The same sources give the same bytes, wherever and whenever they are built: no folder of this machine in a
        # file, and a hash in the place of the time (symbol servers tell builds apart by it).
        target_compile_options(velmo_options INTERFACE
            -ffile-compilation-dir=.
            -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}=./build)
        target_link_options(velmo_options INTERFACE -Wl,-Xlink=-Brepro)
    endif()
    # The runtime's set-jump stub names a function that the universal C runtime exports under another name.
    target_link_options(velmo_options INTERFACE -Wl,-Xlink=-alternatename:_setjmp=__intrinsic_setjmp)
    set(CMAKE_CXX_STANDARD_LIBRARIES "-lwinpthread ${CMAKE_CXX_STANDARD_LIBRARIES}")
endif()

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC 12 guesses which class a released object is of, and then warns of what such an object would do.
    target_compile_options(velmo_options INTERFACE -Wno-free-nonheap-object)
    # Where sources are compiled as one, each but the main file counts as a header.
    target_compile_options(velmo_options INTERFACE -Wno-subobject-linkage)
    if(WIN32)
        # A section for each function of each template: more than the 65,279 of an ordinary object file.
        target_compile_options(velmo_options INTERFACE -Wa,-mbig-obj)
        # GNU's linker takes minutes for programs that are not optimised, and Debian's GCC for Windows starts no other.
        set(CMAKE_CXX_LINK_EXECUTABLE "clang++-19 --target=x86_64-w64-windows-gnu -fuse-ld=lld <LINK_FLAGS> <OBJECTS> \
-o <TARGET> <LINK_LIBRARIES>")
        set(CMAKE_CXX_CREATE_SHARED_LIBRARY "clang++-19 --target=x86_64-w64-windows-gnu -fuse-ld=lld -shared \
<LINK_FLAGS> <OBJECTS> -o <TARGET> -Wl,--out-implib,<TARGET_IMPLIB> <LINK_LIBRARIES>")
    endif()
endif()

# What ships has debug information, CodeView in a .pdb beside the executable, which Windows debuggers read; in tests and
# tools it would only cost time to build. Sources link velmo_shipped, programs velmo_pdb.
add_library(velmo_shipped INTERFACE)
add_library(velmo_pdb INTERFACE)
if(WIN32 AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    target_compile_options(velmo_shipped INTERFACE -g -gcodeview -gno-codeview-command-line)
    target_link_options(velmo_pdb INTERFACE -Wl,--pdb= -Wl,-Xlink=-pdbaltpath:%_PDB% -Wl,-Xlink=-pdbsourcepath:.)
endif()

# What only the executable of a package is: it runs in an app container, on Windows 10.
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    set(packaged_app_options -Wl,--appcontainer -Wl,--major-subsystem-version=10,--minor-subsystem-version=0)
    # Sections that begin on pages are mapped by Wine, as they are by Windows in any case; others it copies into memory of
    # the process. That of the build's id would be a page for 28 bytes.
    list(APPEND packaged_app_options -Wl,--file-alignment,4096 -Wl,-Xlink=-merge:.buildid=.rdata)
endif()

if(VELMO_COVERAGE)
    # Only what ships is counted, wherever it is compiled.
    string(REGEX REPLACE "([][+.*()^$?|{}\\\\])" "\\\\\\1" root "${PROJECT_SOURCE_DIR}")
    target_compile_options(velmo_options INTERFACE --coverage -O0
        "-fprofile-filter-files=^${root}/(app|service|logging|utils)/")
    string(APPEND CMAKE_CXX_LINK_EXECUTABLE " -lgcov")
endif()
if(VELMO_NATIVE_SANITIZERS)
    target_compile_options(velmo_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all -g)
    target_link_options(velmo_options INTERFACE -fsanitize=address,undefined)
endif()
