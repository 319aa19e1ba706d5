# How every target of the project is compiled.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Executables stand beside each other, the libraries beside them: nothing has to be installed to run.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

# Nobody replaces our functions from outside: calls within a library are direct, and may be inlined.
add_compile_options(-fno-semantic-interposition)

# No fused multiply-adds: a result has the same bits on every machine.
add_compile_options(-Wall -Wextra -Wpedantic -Werror -ffp-contract=off)

# g++ 12 takes the copying within its own std::string for overlapping when it optimises (GCC bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict>)
endif()

if(KORVID_SANITIZE)
    add_compile_options(-fsanitize=${KORVID_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${KORVID_SANITIZE})
    # g++ loses track of what is initialised in the checks that it adds, even in its own <regex>.
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endif()

if(KORVID_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# Only clang-tidy looks at what would be compiled, which nothing takes the place of; then the compiler tells which
# headers the source includes, from which the build knows what has to be looked at again. What would be linked is
# left empty.
if(KORVID_ONLY_LOOK)
    set(CMAKE_CXX_COMPILER_LAUNCHER true)
    list(APPEND CMAKE_CXX_COMPILE_OBJECT
        "<CMAKE_CXX_COMPILER> <DEFINES> <INCLUDES> <FLAGS> -M -o /dev/null -c <SOURCE>"
        "<CMAKE_COMMAND> -E touch <OBJECT>"
    )
    set(CMAKE_CXX_ARCHIVE_CREATE "<CMAKE_COMMAND> -E touch <TARGET>")
    set(CMAKE_CXX_ARCHIVE_FINISH "")
    set(CMAKE_CXX_CREATE_SHARED_LIBRARY "<CMAKE_COMMAND> -E touch <TARGET>")
    set(CMAKE_CXX_LINK_EXECUTABLE "<CMAKE_COMMAND> -E touch <TARGET>")
endif()

# Qt's code generator has a style of its own: what lies in the build folder gets the one check it passes.
if(CMAKE_CXX_CLANG_TIDY)
    file(WRITE ${PROJECT_BINARY_DIR}/.clang-tidy "InheritParentConfig: true\nChecks: '-*,misc-definitions-in-headers'\n")
endif()
