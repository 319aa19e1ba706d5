# `cmake --install` puts the libraries, their headers, a CMake package, pkg-config files and the gallery in place. Each
# belongs to a component, of which cpack makes a package: Runtime and Development, QtRuntime and QtDevelopment, Gallery.
include(CMakePackageConfigHelpers)
set(KORVID_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/KorvidAppKit)

# korvid_install_libraries(<export> <prefix> <target>...): installs the libraries and <export>.cmake, which tells CMake of
# them, as the components <prefix>Runtime and <prefix>Development.
function(korvid_install_libraries export prefix)
    # The one library finds the other beside it, wherever both are put.
    set_target_properties(${ARGN} PROPERTIES INSTALL_RPATH "$ORIGIN")
    install(TARGETS ${ARGN} EXPORT ${export}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${prefix}Runtime NAMELINK_COMPONENT ${prefix}Development
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${prefix}Development
    )
    install(EXPORT ${export} NAMESPACE Korvid:: DESTINATION ${KORVID_CMAKE_DIR} COMPONENT ${prefix}Development)
endfunction()

# korvid_install_headers(<folder> <where> <component>): installs the headers in a folder below that of all headers.
function(korvid_install_headers folder where component)
    install(DIRECTORY ${folder}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${where} COMPONENT ${component})
endfunction()

# korvid_install_pkg_config(<name> <component>): installs <name>.pc.
function(korvid_install_pkg_config name component)
    configure_file(cmake/${name}.pc.in ${name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT ${component})
endfunction()

# korvid_install_component(<name> <target> <argument of find_package>...): installs a library that programs find with
# find_package(KorvidAppKit COMPONENTS <name>), and another library that its headers include, found with these arguments.
function(korvid_install_component name target)
    korvid_install_libraries(KorvidAppKit${name}Targets ${name} ${target})
    list(JOIN ARGN " " dependency)
    file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/KorvidAppKit${name}.cmake @ONLY CONTENT [[
find_dependency(@dependency@)
include("${CMAKE_CURRENT_LIST_DIR}/KorvidAppKit@name@Targets.cmake")
]])
    install(FILES ${PROJECT_BINARY_DIR}/KorvidAppKit${name}.cmake
        DESTINATION ${KORVID_CMAKE_DIR} COMPONENT ${name}Development)
endfunction()

korvid_install_libraries(KorvidAppKitTargets "" KorvidPlatform KorvidAppKit)
korvid_install_headers(${PROJECT_SOURCE_DIR}/include . Development)
foreach(framework Foundation CoreGraphics CoreText QuartzCore AppKit)
    korvid_install_headers(${PROJECT_SOURCE_DIR}/platform/${framework}/include KorvidPlatform Development)
endforeach()

# What tells CMake and pkg-config of the libraries. Where these are static, also what programs are linked with besides.
get_property(KORVID_FIND_LIBRARIES GLOBAL PROPERTY KORVID_FIND_LIBRARIES)
list(JOIN KORVID_QT_PACKAGE " " KORVID_QT_PACKAGE)
configure_package_config_file(cmake/KorvidAppKitConfig.cmake.in ${PROJECT_BINARY_DIR}/KorvidAppKitConfig.cmake
    INSTALL_DESTINATION ${KORVID_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/KorvidAppKitConfigVersion.cmake
    COMPATIBILITY ${KORVID_COMPATIBILITY})
install(FILES ${PROJECT_BINARY_DIR}/KorvidAppKitConfig.cmake ${PROJECT_BINARY_DIR}/KorvidAppKitConfigVersion.cmake
    DESTINATION ${KORVID_CMAKE_DIR} COMPONENT Development)

if(NOT BUILD_SHARED_LIBS)
    get_property(libraries GLOBAL PROPERTY KORVID_LINK_OPTIONS)
    get_target_property(qt Qt6::Core LOCATION)
    cmake_path(GET qt PARENT_PATH qt)
    list(PREPEND libraries -L${qt} -lQt6Widgets -lQt6DBus -lQt6Gui -lQt6Core)
    list(APPEND libraries -l${CMAKE_DL_LIBS} -lstdc++) # the latter for programs in C
    list(REMOVE_DUPLICATES libraries)
    list(JOIN libraries " " KORVID_LIBS_PRIVATE)
endif()
file(RELATIVE_PATH KORVID_INCLUDE_FROM_PC ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_FULL_INCLUDEDIR})
korvid_install_pkg_config(korvidappkit Development)

if(TARGET KorvidQt)
    korvid_install_component(Qt KorvidQt Qt6 COMPONENTS Widgets)
    korvid_install_headers(${PROJECT_SOURCE_DIR}/qt/include . QtDevelopment)
    korvid_install_pkg_config(korvidqt QtDevelopment)
endif()

if(TARGET gallery)
    file(RELATIVE_PATH libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(gallery PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries}")
    install(TARGETS gallery DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Gallery)
    get_target_property(gallery gallery OUTPUT_NAME)
    install(DIRECTORY examples/gallery/Resources/ DESTINATION ${CMAKE_INSTALL_DATADIR}/${gallery} COMPONENT Gallery)
endif()

install(FILES LICENSE THIRD-PARTY.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT Development)
