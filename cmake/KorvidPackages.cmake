# `cpack` makes Debian packages: the shared libraries, named after the programs that they run, what programs are compiled
# with, the same of KorvidQt, and the gallery. dpkg-shlibdeps finds what libraries and programs depend on.
set(exactly "(= ${PROJECT_VERSION})")
set(runtime libkorvidappkit${KORVID_SOVERSION})
set(development libkorvidappkit-dev)

# korvid_package(<component> <package> <section> <title> <description>)
macro(korvid_package component package section title description)
    list(APPEND CPACK_COMPONENTS_ALL ${component})
    string(TOUPPER ${component} COMPONENT)
    set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME ${package})
    set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_SECTION ${section})
    set(CPACK_COMPONENT_${COMPONENT}_DESCRIPTION "${title}\n${PROJECT_DESCRIPTION}.\n${description}")
    # Debian looks for the licence here.
    install(FILES LICENSE RENAME copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package}
        COMPONENT ${component} EXCLUDE_FROM_ALL)
endmacro()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "KorvidAppKit developers <korvidappkit@example.org>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # the first line of each description below
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}) # ours among each other
# Packages of programs depend on this version or a later one of the same name.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

korvid_package(Runtime ${runtime} libs "dark-themed views and controls, shared libraries"
    "This package contains the libraries that programs are run with.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS fonts-liberation) # stands in for Helvetica

korvid_package(Development ${development} libdevel "dark-themed views and controls, development files"
    "This package contains the headers that programs are compiled with, and what
tells CMake and pkg-config of the libraries.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${runtime} ${exactly}")

if(TARGET KorvidQt)
    korvid_package(QtRuntime libkorvidqt${KORVID_SOVERSION} libs "views for Qt programs, shared library"
        "This package contains the library that Qt programs with such views are run with.")
    set(CPACK_DEBIAN_QTRUNTIME_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_QTRUNTIME_PACKAGE_DEPENDS "${runtime} ${exactly}")

    korvid_package(QtDevelopment libkorvidqt-dev libdevel "views for Qt programs, development files"
        "This package contains the header that Qt programs with such views are compiled
with, and what tells CMake and pkg-config of the library.")
    set(CPACK_DEBIAN_QTDEVELOPMENT_PACKAGE_DEPENDS
        "libkorvidqt${KORVID_SOVERSION} ${exactly}, ${development} ${exactly}, qt6-base-dev")
endif()

if(TARGET gallery)
    korvid_package(Gallery korvid-gallery devel "shows all views of KorvidAppKit"
        "This package contains a program that shows each view with the code that makes
it, or writes pictures of them.")
    set(CPACK_DEBIAN_GALLERY_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_GALLERY_PACKAGE_DEPENDS "${runtime} ${exactly}")
    set(CPACK_DEBIAN_GALLERY_PACKAGE_RECOMMENDS fonts-liberation)
endif()

include(CPack)
