# `cmake --install` puts the libraries, their headers, a CMake package and a pkg-config file in place.
include(CMakePackageConfigHelpers)
set(KORVID_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/KorvidAppKit)

# korvid_install_libraries(<export> <target>...): installs the libraries and <export>.cmake, which tells CMake of them.
function(korvid_install_libraries export)
    # The one library finds the other beside it, wherever both are put.
    set_target_properties(${ARGN} PROPERTIES INSTALL_RPATH "$ORIGIN")
    install(TARGETS ${ARGN} EXPORT ${export}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime NAMELINK_COMPONENT Development
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Development
    )
    install(EXPORT ${export} NAMESPACE Korvid:: DESTINATION ${KORVID_CMAKE_DIR} COMPONENT Development)
endfunction()

# korvid_install_headers(<folder> <where>): installs the headers in a folder below that of all headers.
function(korvid_install_headers folder where)
    install(DIRECTORY ${folder}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${where} COMPONENT Development)
endfunction()

# korvid_install_component(<name> <target> <argument of find_package>...): installs a library that programs find with
# find_package(KorvidAppKit COMPONENTS <name>), and another library that its headers include, found with these arguments.
function(korvid_install_component name target)
    korvid_install_libraries(KorvidAppKit${name}Targets ${target})
    list(JOIN ARGN " " dependency)
    file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/KorvidAppKit${name}.cmake @ONLY CONTENT [[
find_dependency(@dependency@)
include("${CMAKE_CURRENT_LIST_DIR}/KorvidAppKit@name@Targets.cmake")
]])
    install(FILES ${PROJECT_BINARY_DIR}/KorvidAppKit${name}.cmake DESTINATION ${KORVID_CMAKE_DIR} COMPONENT Development)
endfunction()

korvid_install_libraries(KorvidAppKitTargets KorvidPlatform KorvidAppKit)
korvid_install_headers(${PROJECT_SOURCE_DIR}/include .)
foreach(framework Foundation CoreGraphics CoreText QuartzCore AppKit)
    korvid_install_headers(${PROJECT_SOURCE_DIR}/platform/${framework}/include KorvidPlatform)
endforeach()
if(KORVID_QT)
    korvid_install_component(Qt KorvidQt Qt6 COMPONENTS Widgets)
    korvid_install_headers(${PROJECT_SOURCE_DIR}/qt/include .)
endif()

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
    list(APPEND libraries -l${CMAKE_DL_LIBS})
    list(REMOVE_DUPLICATES libraries)
    list(JOIN libraries " " KORVID_LIBS_PRIVATE)
endif()
file(RELATIVE_PATH KORVID_INCLUDE_FROM_PC ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_FULL_INCLUDEDIR})
configure_file(cmake/korvidappkit.pc.in korvidappkit.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/korvidappkit.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Development)

install(FILES LICENSE THIRD-PARTY.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT Development)
