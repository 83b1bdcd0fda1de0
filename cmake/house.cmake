# How every target of this project is compiled and linked: link to `house`.
add_library(house INTERFACE)
target_include_directories(house INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(house INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-unused-parameter -Werror)
# Debug sections and private data of headers that are not ours are not ours to mend.
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

if(WIN32)
    # _UCRT: the universal C runtime that Windows ships. 0x0A000006 is Windows 10 1809, the oldest system served.
    target_compile_definitions(house INTERFACE
        _UCRT UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0A00 NTDDI_VERSION=0x0A000006)
    target_compile_options(house INTERFACE -ffunction-sections -fdata-sections)
    # windowsapp comes first, so that imports go to the API sets and not to the classic libraries.
    target_link_libraries(house INTERFACE windowsapp)
    target_link_options(house INTERFACE -static -Wl,--gc-sections)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        # CodeView in a .pdb beside the executable is what Windows debuggers read; the executable itself is stripped.
        target_compile_options(house INTERFACE -gcodeview)
        target_link_options(house INTERFACE -Wl,--pdb= -s)
    endif()
    # The runtime's set-jump stub names a function that the universal C runtime exports under another name.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        target_link_options(house INTERFACE -Wl,-Xlink=-alternatename:_setjmp=__intrinsic_setjmp)
    endif()
    set(CMAKE_CXX_STANDARD_LIBRARIES "-lwinpthread -lucrt ${CMAKE_CXX_STANDARD_LIBRARIES}")
endif()

# What only the executable of a package is: it runs in an app container, on Windows 10.
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    set(packaged_app_options -Wl,--appcontainer -Wl,--major-subsystem-version=10,--minor-subsystem-version=0)
endif()

if(HOUSE_COVERAGE)
    target_compile_options(house INTERFACE --coverage -O0)
    target_link_options(house INTERFACE --coverage)
endif()
if(HOUSE_UBSAN_TRAP)
    target_compile_options(house INTERFACE -fsanitize=undefined -fsanitize-trap=all)
endif()
if(HOUSE_NATIVE_SANITIZERS)
    target_compile_options(house INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all -g)
    target_link_options(house INTERFACE -fsanitize=address,undefined)
endif()
