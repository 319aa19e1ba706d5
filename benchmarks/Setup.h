#pragma once

#include <string>
#include <utility>
#include <vector>

/// What the results depend on, as names and values.
using Setup = std::vector<std::pair<std::string, std::string>>;

/// This machine and its load at present, the system, the compiler, and the libraries' versions.
Setup currentSetup();
