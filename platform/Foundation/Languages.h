#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The names of `.lproj` folders to try, best first: the user's languages from the environment (see
/// NSBundle), `developmentLanguage`, which may be empty, and "Base".
std::vector<std::string> localizationNames(std::string_view developmentLanguage);
