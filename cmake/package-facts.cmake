# What the package's manifest says, the only place where it stands: PACKAGE_VERSION (1.2.3.4), as version resources want
# it PACKAGE_VERSION_COMMAS (1,2,3,4), PACKAGE_FAMILY_NAME, APP_SERVICE_NAME and DESKTOP_COMPONENT (a path in
# the package).
set(manifest ${PROJECT_SOURCE_DIR}/package/AppxManifest.xml)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${manifest})
find_package(Python3 REQUIRED COMPONENTS Interpreter)
execute_process(
    COMMAND ${Python3_EXECUTABLE} ${CMAKE_CURRENT_LIST_DIR}/package_facts.py ${manifest}
    OUTPUT_VARIABLE facts OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
list(POP_FRONT facts PACKAGE_VERSION PACKAGE_FAMILY_NAME APP_SERVICE_NAME DESKTOP_COMPONENT)
string(REPLACE "." "," PACKAGE_VERSION_COMMAS ${PACKAGE_VERSION})
