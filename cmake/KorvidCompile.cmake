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

# Calls within a library are direct and may be inlined: no program replaces our functions by its own.
add_compile_options(-fno-semantic-interposition)
# So are the functions in virtual tables, which the dynamic linker would look up by their names at each start.
add_link_options(-Wl,-Bsymbolic-functions)

# No fused multiply-adds: a result has the same bits on every machine. Warnings are errors only where
# CMAKE_COMPILE_WARNING_AS_ERROR says so, as our own presets do.
add_compile_options(-Wall -Wextra -Wpedantic -ffp-contract=off)

# Where several sources are compiled as one, g++ takes them for headers, and classes in their unnamed namespaces for a
# mistake.
if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-Wno-subobject-linkage)
endif()

# g++ 12 wrongly reports overlapping copies inside its own std::string when it optimises (GCC bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict>)
endif()

# ccache, where installed, compiles a source only once for all build folders with the same options. It looks up sources with
# precompiled headers only if told that macros of date, time and definitions do not matter to those.
if(PROJECT_IS_TOP_LEVEL AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER AND NOT KORVID_TIDY_ONLY)
    find_program(KORVID_CCACHE ccache)
    if(KORVID_CCACHE)
        set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${KORVID_CCACHE})
    endif()
endif()

if(KORVID_SANITIZE)
    add_compile_options(-fsanitize=${KORVID_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${KORVID_SANITIZE})
    # The checks that g++ adds make it report initialised variables as uninitialised, even in its own <regex>.
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    # Vectors of 16 bytes without a unit, of 32 and of 64: those of the 16-byte units access memory as those without
    # one, and would take a third of the time to compile.
    add_compile_definitions("HWY_DISABLED_TARGETS=(HWY_SSSE3|HWY_SSE4)")
endif()

if(KORVID_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# clang-tidy replaces the compiler. The compiler then only lists the headers of each source, from which the build
# knows which sources to check again. Libraries and programs are empty files.
if(KORVID_TIDY_ONLY)
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

# Joined sources include others on purpose.
if(KORVID_TIDY_ONLY AND CMAKE_UNITY_BUILD)
    list(APPEND CMAKE_CXX_CLANG_TIDY --checks=-bugprone-suspicious-include)
endif()
