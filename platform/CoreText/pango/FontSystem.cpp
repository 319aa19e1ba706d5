#include "CoreText/FontSystem.h"

#include "CoreText/LayoutCache.h"
#include "CoreText/pango/Shaper.h"

#include <Foundation/NSLog.h>

#include <atomic>
#include <mutex>
#include <utility>

namespace {

/// Programs use few names; one that generates them must not fill the memory.
constexpr std::size_t kMaximumNames = 1024;

using TypefacesByName = std::unordered_map<NSString, std::shared_ptr<const Typeface>>;

/// Instead of the system with the installed fonts.
std::atomic<FontSystem*> replacement{nullptr};

std::shared_ptr<const Typeface> withSerial(std::shared_ptr<PangoTypeface> typeface)
{
    static std::atomic<std::uint32_t> last{0};
    if (typeface)
        typeface->serial = ++last;
    return typeface;
}

/// The typeface cached under a name, created by `make` on the first call.
template <class Make>
std::shared_ptr<const Typeface> cached(TypefacesByName& typefaces, const NSString& name, Make make)
{
    const auto found = typefaces.find(name);
    if (found != typefaces.end())
        return found->second;
    if (typefaces.size() == kMaximumNames)
        typefaces.clear();
    return typefaces.emplace(name, withSerial(make())).first->second;
}

} // namespace

class FontSystem::Library {
public:
    explicit Library(const NSString& folder)
        : fonts(folder)
    {
    }

    std::mutex mutex; ///< guards all members
    FontLibrary fonts;
    TypefacesByName named; ///< null if not installed
    TypefacesByName nearest;
    LayoutCache lines;
    std::uint64_t layouts = 0;
    bool hasReportedNoFonts = false;
};

FontSystem& FontSystem::shared()
{
    if (FontSystem* system = replacement.load(std::memory_order_acquire))
        return *system;
    // Never destroyed: threads may still draw when the process ends.
    static auto* const system = new FontSystem();
    return *system;
}

void FontSystem::setShared(FontSystem* system)
{
    replacement.store(system, std::memory_order_release);
}

FontSystem::FontSystem()
    : FontSystem(NSString())
{
}

FontSystem::FontSystem(const NSString& folder)
    : _library(std::make_unique<Library>(folder))
{
}

FontSystem::~FontSystem() = default;

std::shared_ptr<const Typeface> FontSystem::typefaceNamed(const NSString& name)
{
    const std::lock_guard guard(_library->mutex);
    return cached(
        _library->named, name, [&] { return name.length() > 0 ? _library->fonts.find(name) : nullptr; });
}

std::shared_ptr<const Typeface> FontSystem::nearestTypeface(const NSString& name)
{
    if (auto exact = typefaceNamed(name))
        return exact;
    const std::lock_guard guard(_library->mutex);
    return cached(_library->nearest, name, [&] {
        auto typeface = _library->fonts.findNearest(parseFaceName(name));
        if (!typeface->face && !std::exchange(_library->hasReportedNoFonts, true))
            NSLog(
                "No usable font is installed: text is not drawn. Install TrueType or OpenType fonts, such as "
                "Debian's package fonts-liberation.");
        return typeface;
    });
}

std::shared_ptr<const ShapedText> FontSystem::shape(const NSString& text, std::span<const TextSpan> spans)
{
    const std::lock_guard guard(_library->mutex);
    return _library->lines.get(text, spans, [&] {
        ++_library->layouts;
        return shapeWithPango(_library->fonts, text, spans);
    });
}

FontWork FontSystem::work() const
{
    const std::lock_guard guard(_library->mutex);
    return {_library->fonts.queries(), _library->layouts};
}
