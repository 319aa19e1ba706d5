# `cmake --install` puts the two libraries, their headers and a CMake package in place.
include(CMakePackageConfigHelpers)

# The one library finds the other beside it, wherever both are put.
set_target_properties(KorvidAppKit PROPERTIES INSTALL_RPATH "$ORIGIN")

install(TARGETS KorvidPlatform KorvidAppKit EXPORT KorvidAppKitTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
foreach(framework Foundation CoreGraphics CoreText QuartzCore AppKit)
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/platform/${framework}/include/
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/KorvidPlatform)
endforeach()
install(EXPORT KorvidAppKitTargets NAMESPACE Korvid:: FILE KorvidAppKitConfig.cmake
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/KorvidAppKit)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/KorvidAppKitConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/KorvidAppKitConfigVersion.cmake
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/KorvidAppKit)
