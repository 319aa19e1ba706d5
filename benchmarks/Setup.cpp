#include "Setup.h"

#include <QtGlobal>

#include <boost/version.hpp>
#include <cairo.h>
#include <cstdlib>
#include <fstream>
#include <geos_c.h>
#include <opencv2/core/version.hpp>
#include <pango/pango.h>
#include <thread>

namespace {

/// What follows `key` and a separator on a line of the file; "unknown" without such a line.
std::string valueIn(const char* file, const std::string& key, char separator)
{
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line);) {
        const auto at = line.find(separator);
        if (at == std::string::npos || line.compare(0, key.size(), key) != 0)
            continue;
        const auto first = line.find_first_not_of(" \t\"", at + 1);
        const auto last = line.find_last_not_of(" \"");
        if (first != std::string::npos)
            return line.substr(first, last + 1 - first);
    }
    return "unknown";
}

/// Processes that ran or waited to run during the last minute, on average.
std::string load()
{
    double minute = 0;
    return getloadavg(&minute, 1) == 1 ? std::to_string(minute).substr(0, 4) : "unknown";
}

} // namespace

Setup currentSetup()
{
    return {
        {"Processor",
            valueIn("/proc/cpuinfo", "model name", ':') + ", "
                + std::to_string(std::thread::hardware_concurrency()) + " cores"},
        {"Load at the start", load()},
        {"System", valueIn("/etc/os-release", "PRETTY_NAME", '=')},
        {"Compiler", "g++ " __VERSION__},
        {"cairo", cairo_version_string()},
        {"Pango", pango_version_string()},
        {"Qt", qVersion()},
        {"OpenCV", CV_VERSION},
        {"Boost", BOOST_LIB_VERSION},
        {"GEOS", GEOSversion()},
    };
}
