#!/usr/bin/env bash
# Builds programs from the installed library, runs them without a display, and compares their pictures with picture.txt:
#   check.sh [--qt] FOLDER cmake|pkg-config [--static]
# FOLDER becomes the build folder. CXX and CC name the compilers; CMAKE_PREFIX_PATH and PKG_CONFIG_PATH tell where the library
# is, if it is not where CMake and pkg-config look by themselves. With --static pkg-config also lists what static libraries
# need. With --qt the program is one that puts a view into a layout of Qt, otherwise there is one in C, too.
set -euo pipefail

source=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd -P)
module=korvidappkit
if [[ $1 == --qt ]]; then
    source+=/qt
    module=korvidqt
    shift
fi
folder=$1 tool=$2
shift 2
unset DISPLAY WAYLAND_DISPLAY LD_LIBRARY_PATH
export QT_QPA_PLATFORM=offscreen

mkdir -p -- "$folder"
case $tool in
    cmake)
        cmake -S "$source" -B "$folder" -DCMAKE_BUILD_TYPE=Release
        cmake --build "$folder"
        ;;
    pkg-config)
        read -ra options <<<"$(pkg-config --cflags --libs "$@" "$module")"
        # Where the system's linker does not look by itself, the program has to know.
        where=-Wl,-rpath,$(pkg-config --variable=libdir "$module")
        options=(-Wall -Wextra -Wpedantic -Werror "${options[@]}" "$where")
        "${CXX:-c++}" -std=c++20 "$source/main.cpp" "${options[@]}" -o "$folder/consumer"
        if [[ -e $source/main.c ]]; then
            "${CC:-cc}" -std=c99 "$source/main.c" "${options[@]}" -o "$folder/consumer-in-c"
        fi
        ;;
esac

[[ $module == korvidqt ]] || "$folder/consumer-in-c"
"$folder/consumer" "$source/icon.pdf" "$folder/picture.png" >"$folder/picture.txt"
diff -- "$source/picture.txt" "$folder/picture.txt"
