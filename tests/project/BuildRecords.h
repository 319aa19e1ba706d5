#pragma once

#include <map>
#include <string>
#include <vector>

/// What the build system knows about this very build.

/// The files that each object file was made from, by the object's name. Files of the project are named from
/// its root, and system headers in full.
std::map<std::string, std::vector<std::string>> dependenciesOfObjects();

/// The compiler's command line for each source, by the source's name from the project's root.
std::map<std::string, std::string> compileCommands();

/// The files below a folder of the project whose names end so, named from its root, sorted.
std::vector<std::string> filesBelow(const std::string& folder, const std::string& ending);

/// The whole content of a file of the project.
std::string readProjectFile(const std::string& name);
