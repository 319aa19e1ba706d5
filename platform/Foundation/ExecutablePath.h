#pragma once

#include <filesystem>

/// The absolute path of the running program, from the kernel's link to it. Where that is missing, as in a
/// chroot without /proc, the path that the program was started with, relative to the current directory. Empty
/// if neither is known.
std::filesystem::path executablePath(const std::filesystem::path& kernelLink = "/proc/self/exe");
