# The libraries below ours, and the kind of library that ours are.

# Shared libraries unless the user, or a project that includes this one, wants static ones. Not an option: that would
# decide for all of the including project.
if(NOT DEFINED BUILD_SHARED_LIBS)
    set(BUILD_SHARED_LIBS ON)
endif()

set(KORVID_QT_PACKAGE 6.4 COMPONENTS Core Gui Widgets DBus)
find_package(Qt6 ${KORVID_QT_PACKAGE} REQUIRED)
find_package(PkgConfig REQUIRED)

# korvid_find_library(<name> <module>...): finds modules of pkg-config, as the target PkgConfig::<name>. Programs that use
# our static libraries are linked with them too: their CMake package finds them in the same way.
function(korvid_find_library name)
    pkg_check_modules(${name} REQUIRED IMPORTED_TARGET GLOBAL ${ARGN})
    list(JOIN ARGN " " modules)
    set_property(GLOBAL APPEND_STRING PROPERTY KORVID_FIND_LIBRARIES "    korvid_find_library(${name} ${modules})\n")
    set_property(GLOBAL APPEND PROPERTY KORVID_LINK_OPTIONS ${${name}_LDFLAGS})
endfunction()
