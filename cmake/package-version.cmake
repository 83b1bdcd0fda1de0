# The package's version, from its manifest, the only place where it stands: PACKAGE_VERSION (1.2.3.4) and, as version
# resources want it, PACKAGE_VERSION_COMMAS (1,2,3,4).
set(manifest ${PROJECT_SOURCE_DIR}/package/AppxManifest.xml)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${manifest})
file(READ ${manifest} text)
if(NOT text MATCHES "<Identity[^>]* Version=\"([0-9.]+)\"")
    message(FATAL_ERROR "${manifest}: no Version in <Identity>")
endif()
set(PACKAGE_VERSION ${CMAKE_MATCH_1})
string(REPLACE "." "," PACKAGE_VERSION_COMMAS ${PACKAGE_VERSION})
