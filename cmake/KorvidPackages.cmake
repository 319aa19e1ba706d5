# `cpack` makes Debian packages: the shared libraries, named after the programs that they run, and what programs are
# compiled with. dpkg-shlibdeps finds what the libraries and the modules that they load depend on.
set(runtime libkorvidappkit${KORVID_SOVERSION})
set(development libkorvidappkit-dev)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "KorvidAppKit developers <korvidappkit@example.org>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # the first line of each description below
set(CPACK_COMPONENTS_ALL Runtime Development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS fonts-liberation) # stands in for Helvetica
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}) # ours among each other
# Packages of programs depend on this version or a later one of the same name.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "dark-themed views and controls, shared libraries
${PROJECT_DESCRIPTION}.
This package contains the libraries that programs are run with.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${development})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${runtime} (= ${PROJECT_VERSION})")
if(TARGET KorvidQt)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS qt6-base-dev) # for programs that include its headers
endif()
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "dark-themed views and controls, development files
${PROJECT_DESCRIPTION}.
This package contains the headers that programs are compiled with, and what
tells CMake and pkg-config of the libraries.")

# Debian looks for the licence here.
install(FILES LICENSE RENAME copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${runtime}
    COMPONENT Runtime EXCLUDE_FROM_ALL)
install(FILES LICENSE RENAME copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${development}
    COMPONENT Development EXCLUDE_FROM_ALL)

include(CPack)
