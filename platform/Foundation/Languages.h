#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The names under which `.lproj` folders are looked for, best first: the user's languages as the environment
/// tells them (see NSBundle), `developmentLanguage`, which may be empty, and "Base".
std::vector<std::string> localizationNames(std::string_view developmentLanguage);
