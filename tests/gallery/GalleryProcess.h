#pragma once

#include "support/Process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

// Runs the gallery as a program, as users do.

/// The environment of a machine without a display and without a runtime folder.
inline EnvironmentChanges bareEnvironment()
{
    return {
        {"DISPLAY", std::nullopt}, {"WAYLAND_DISPLAY", std::nullopt}, {"QT_QPA_PLATFORM", std::nullopt},
        {"XDG_RUNTIME_DIR", std::nullopt},
        {"TMPDIR", std::getenv("KORVID_TEST_HOME")}, // where Qt makes a runtime folder
    };
}

/// Runs the gallery in the bare environment.
inline ProcessResult runGalleryProgram(
    std::vector<std::string> arguments, const EnvironmentChanges& changes = {})
{
    arguments.insert(arguments.begin(), KORVID_GALLERY);
    EnvironmentChanges environment = changes;
    environment.merge(bareEnvironment());
    return runProcess(arguments, environment);
}

/// Runs a line of bash in the bare environment; "$gallery" is the program's path.
inline ProcessResult runShell(const std::string& line)
{
    EnvironmentChanges environment = bareEnvironment();
    environment["gallery"] = KORVID_GALLERY;
    return runProcess({"bash", "-c", line}, environment);
}

/// The names of the files in a folder, sorted.
inline std::vector<std::string> filesIn(const std::filesystem::path& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

/// The bytes of a file. Throws when it cannot be read.
inline std::string contentOf(const std::string& path)
{
    std::ifstream stream(path, std::ios::binary);
    if (!stream)
        throw std::runtime_error("cannot read " + path);
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

/// Expects exit code 2, no output, and one line on standard error that contains `words`.
inline void expectRefusal(const ProcessResult& result, const std::string& words)
{
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_TRUE(result.error.starts_with("gallery: ")) << result.error;
    EXPECT_EQ(result.error.find('\n'), result.error.size() - 1) << result.error;
    EXPECT_NE(result.error.find(words), std::string::npos) << result.error;
}

/// The names of all pictures, sorted.
inline const std::vector<std::string> kPictures{"alerts.png", "alerts@2x.png", "angles.png", "angles@2x.png",
    "badges.png", "badges@2x.png", "blending.png", "blending@2x.png", "blur.png", "blur@2x.png",
    "buttons.png", "buttons@2x.png", "capsules.png", "capsules@2x.png", "colors.png", "colors@2x.png",
    "fields.png", "fields@2x.png", "gallery.png", "gallery@2x.png", "images.png", "images@2x.png",
    "languages.png", "languages@2x.png", "noise.png", "noise@2x.png", "outline.png", "outline@2x.png",
    "panels.png", "panels@2x.png", "paths.png", "paths@2x.png", "pdf.png", "pdf@2x.png", "picker.png",
    "picker@2x.png", "pinned.png", "pinned@2x.png", "qr.png", "qr@2x.png", "scrolling.png",
    "scrolling@2x.png", "settings.png", "settings@2x.png", "strokes.png", "strokes@2x.png", "switches.png",
    "switches@2x.png", "text.png", "text@2x.png", "tinted.png", "tinted@2x.png"};
