#!/usr/bin/env bash
# Builds the consumer from the installed library, runs it without a display, and compares its picture with picture.txt:
#   check.sh FOLDER cmake|pkg-config [--static]
# FOLDER becomes the build folder. CXX names the compiler; CMAKE_PREFIX_PATH and PKG_CONFIG_PATH tell where the library is,
# if it is not where CMake and pkg-config look by themselves. With --static pkg-config also lists what static libraries need.
set -euo pipefail

source=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd -P)
folder=$1 tool=$2
shift 2
unset DISPLAY WAYLAND_DISPLAY LD_LIBRARY_PATH

mkdir -p -- "$folder"
case $tool in
    cmake)
        cmake -S "$source" -B "$folder" -DCMAKE_BUILD_TYPE=Release
        cmake --build "$folder"
        ;;
    pkg-config)
        read -ra options <<<"$(pkg-config --cflags --libs "$@" korvidappkit)"
        # Where the system's linker does not look by itself, the program has to know.
        "${CXX:-c++}" -std=c++20 -Wall -Wextra -Wpedantic -Werror "$source/main.cpp" "${options[@]}" \
            -Wl,-rpath,"$(pkg-config --variable=libdir korvidappkit)" -o "$folder/consumer"
        ;;
esac

"$folder/consumer" "$source/icon.pdf" "$folder/picture.png" >"$folder/picture.txt"
diff -- "$source/picture.txt" "$folder/picture.txt"
