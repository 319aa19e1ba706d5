#include "Foundation/Languages.h"

#include <algorithm>
#include <cstdlib>

namespace {

void addOnce(std::vector<std::string>& names, std::string name)
{
    if (!name.empty() && std::find(names.begin(), names.end(), name) == names.end())
        names.push_back(std::move(name));
}

/// The folder names for a locale such as "de_AT.UTF-8@euro".
void addNames(std::vector<std::string>& names, std::string_view locale)
{
    std::string tag(locale.substr(0, locale.find_first_of(".@")));
    if (tag.empty() || tag == "C" || tag == "POSIX" || tag.find('/') != std::string::npos)
        return;
    std::replace(tag.begin(), tag.end(), '-', '_');
    const auto parted = tag.find('_');
    const std::string language = tag.substr(0, parted);
    const std::string region = parted == std::string::npos ? "" : tag.substr(parted + 1);
    if (!region.empty()) {
        addOnce(names, language + "-" + region);
        addOnce(names, tag);
    }
    if (language == "zh") {
        const bool isTraditional = region == "TW" || region == "HK" || region == "MO";
        addOnce(names, isTraditional ? "zh-Hant" : "zh-Hans");
    }
    addOnce(names, language);
}

std::string_view variable(const char* name)
{
    const char* value = std::getenv(name);
    return value ? value : "";
}

} // namespace

std::vector<std::string> localizationNames(std::string_view developmentLanguage)
{
    std::vector<std::string> names;
    std::string_view locale;
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (locale.empty())
            locale = variable(name);
    }
    const std::string_view bare = locale.substr(0, locale.find('.'));
    if (!bare.empty() && bare != "C" && bare != "POSIX") {
        for (std::string_view list = variable("LANGUAGE"); !list.empty();) {
            const auto end = std::min(list.find(':'), list.size());
            addNames(names, list.substr(0, end));
            list.remove_prefix(std::min(end + 1, list.size()));
        }
        addNames(names, locale);
    }
    addNames(names, developmentLanguage);
    addOnce(names, "Base");
    return names;
}
