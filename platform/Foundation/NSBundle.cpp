#include <Foundation/NSBundle.h>

#include "Foundation/ExecutablePath.h"
#include "Foundation/Languages.h"
#include "Foundation/PropertyList.h"
#include "Foundation/StringsFile.h"
#include "Foundation/testing/MainBundleFolder.h"

#include <Foundation/NSData.h>
#include <Foundation/NSDictionary.h>
#include <Foundation/NSLog.h>
#include <Foundation/NSURL.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <mutex>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;

/// The resource folder by the rule in NSBundle.h; empty when there is none.
fs::path standardFolder()
{
    std::error_code error;
    if (const char* given = std::getenv("KORVID_RESOURCES"); given && *given)
        return fs::absolute(given, error);
    const fs::path executable = executablePath();
    const fs::path folder = executable.parent_path();
    for (const fs::path& candidate : {folder / "Resources", folder.parent_path() / "Resources",
             folder.parent_path() / "share" / executable.filename()}) {
        if (!executable.empty() && fs::is_directory(candidate, error))
            return candidate;
    }
    return {};
}

/// True for a relative path that does not lead out of its folder.
bool isTame(const NSString& path)
{
    const auto units = path.view();
    if (units.starts_with(u'/') || units.find(u'\0') != std::u16string_view::npos)
        return false;
    const std::string utf8 = path.UTF8String();
    const fs::path components(utf8);
    return std::find(components.begin(), components.end(), "..") == components.end();
}

std::string_view viewOf(const NSData& data)
{
    return {static_cast<const char*>(data.bytes()), data.length()};
}

} // namespace

struct NSBundle::State {
    explicit State(fs::path resourceFolder);

    /// The path of a file below the resource folder; empty when there is none.
    std::string find(const NSString& file, const NSString& subdirectory) const;
    const StringsTable& table(const NSString& name);

    fs::path folder;
    NSString identifier;
    std::vector<std::string> localizations;
    std::mutex mutex;                        ///< guards `tables`
    std::map<NSString, StringsTable> tables; ///< those requested so far, also of missing files
};

NSBundle::State::State(fs::path resourceFolder)
    : folder(std::move(resourceFolder))
{
    NSString language;
    if (!folder.empty()) {
        const auto data = NSData::dataWithContentsOfFile(NSString((folder / "Info.plist").string()));
        const auto root = data ? readPropertyList(viewOf(*data)) : nullptr;
        if (const auto* info = dynamic_cast<const NSDictionary*>(root.get())) {
            identifier = info->stringForKey("CFBundleIdentifier");
            language = info->stringForKey("CFBundleDevelopmentRegion");
        }
    }
    if (identifier.length() == 0)
        identifier = NSString(executablePath().filename().string());
    localizations = localizationNames(language.length() ? language.UTF8String() : "en");
}

std::string NSBundle::State::find(const NSString& file, const NSString& subdirectory) const
{
    if (folder.empty() || !isTame(file) || !isTame(subdirectory))
        return {};
    const std::string name = file.UTF8String();
    const fs::path base = subdirectory.length() ? folder / subdirectory.UTF8String() : folder;
    const auto isThere = [](const fs::path& path) { return access(path.c_str(), F_OK) == 0; };
    if (isThere(base / name))
        return (base / name).string();
    for (const std::string& localization : localizations) {
        const fs::path path = base / (localization + ".lproj") / name;
        if (isThere(path))
            return path.string();
    }
    return {};
}

const StringsTable& NSBundle::State::table(const NSString& name)
{
    const auto [at, isNew] = tables.try_emplace(name);
    if (!isNew || folder.empty() || !isTame(name))
        return at->second;
    for (const std::string& localization : localizations) {
        const fs::path path = folder / (localization + ".lproj") / (name.UTF8String() + ".strings");
        const auto data = NSData::dataWithContentsOfFile(NSString(path.string()));
        if (!data)
            continue;
        int line = 0;
        if (auto table = parseStringsFile(viewOf(*data), &line))
            at->second = std::move(*table);
        else
            NSLog("%s:%d: not a table of strings; it counts as empty", path.c_str(), line);
        break;
    }
    return at->second;
}

NSBundle::NSBundle()
    : _state(std::make_unique<State>(standardFolder()))
{
}

NSBundle::~NSBundle() = default;

NSBundle* NSBundle::mainBundle()
{
    static NSBundle* const bundle = new NSBundle;
    return bundle;
}

NSString NSBundle::bundleIdentifier() const
{
    return _state->identifier;
}

NSString NSBundle::pathForResource(NSString name, NSString extension) const
{
    return pathForResource(std::move(name), std::move(extension), nullptr);
}

NSString NSBundle::pathForResource(NSString name, NSString extension, NSString subdirectory) const
{
    if (name.length() == 0)
        return nullptr;
    // Joined as strings: a name that ends in a slash must not hide its last component.
    const NSString file =
        extension.length() ? name.stringByAppendingString(".").stringByAppendingString(extension) : name;
    const std::string path = _state->find(file, subdirectory);
    return path.empty() ? NSString() : NSString(path);
}

RetainPtr<NSURL> NSBundle::URLForResource(NSString name, NSString extension) const
{
    return NSURL::fileURLWithPath(pathForResource(std::move(name), std::move(extension)));
}

RetainPtr<NSURL> NSBundle::URLForResource(NSString name, NSString extension, NSString subdirectory) const
{
    return NSURL::fileURLWithPath(
        pathForResource(std::move(name), std::move(extension), std::move(subdirectory)));
}

NSString NSBundle::localizedStringForKey(NSString key, NSString value, NSString table) const
{
    if (!key)
        return value ? value : NSString("");
    const std::lock_guard guard(_state->mutex);
    const StringsTable& texts = _state->table(table.length() ? table : NSString("Localizable"));
    const auto text = texts.find(key);
    if (text != texts.end())
        return text->second;
    return value.length() ? value : key;
}

MainBundleFolder::MainBundleFolder(const NSString& path)
{
    NSBundle::mainBundle()->_state = std::make_unique<NSBundle::State>(path.UTF8String());
}

MainBundleFolder::~MainBundleFolder()
{
    NSBundle::mainBundle()->_state = std::make_unique<NSBundle::State>(standardFolder());
}
