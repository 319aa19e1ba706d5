# Which releases may replace each other without compiling programs again: before 1.0 those that differ in the last
# number only, later those with the same first number. The libraries' names and the CMake package both follow this.
if(PROJECT_VERSION_MAJOR EQUAL 0)
    set(KORVID_SOVERSION 0.${PROJECT_VERSION_MINOR})
    set(KORVID_COMPATIBILITY SameMinorVersion)
else()
    set(KORVID_SOVERSION ${PROJECT_VERSION_MAJOR})
    set(KORVID_COMPATIBILITY SameMajorVersion)
endif()
