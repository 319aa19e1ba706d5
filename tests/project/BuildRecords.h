#pragma once

#include <map>
#include <string>
#include <vector>

/// What the build recorded about itself, and the files of the project.

/// The files that each object file was compiled from, by the object's name. Files of the project are relative
/// to its root, system headers absolute.
std::map<std::string, std::vector<std::string>> dependenciesOfObjects();

/// The compiler's command line for each source, by the source's name from the project's root.
std::map<std::string, std::string> compileCommands();

/// The files below a folder of the project whose names have this ending, relative to its root, sorted.
std::vector<std::string> filesBelow(const std::string& folder, const std::string& ending);

/// The headers that users include, relative to the project's root.
std::vector<std::string> publicHeaders();

/// `include/A/B.h` and `platform/X/include/A/B.h` as users write them: `A/B.h`.
std::string includedName(const std::string& header);

/// The first code block in that language of a Markdown document; empty if there is none.
std::string codeBlock(const std::string& markdown, const std::string& language);

/// The whole content of a file of the project.
std::string readProjectFile(const std::string& name);
