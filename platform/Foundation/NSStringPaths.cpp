#include <Foundation/NSString.h>

#include <string>

namespace {

constexpr auto npos = std::u16string_view::npos;

/// The path without trailing slashes; "/" for a path of slashes only.
std::u16string_view withoutTrailingSlashes(std::u16string_view path)
{
    while (path.size() > 1 && path.back() == u'/')
        path.remove_suffix(1);
    return path;
}

/// The path with single slashes, and none at the end.
std::u16string normalized(std::u16string_view path)
{
    std::u16string result;
    for (const char16_t unit : path) {
        if (unit != u'/' || result.empty() || result.back() != u'/')
            result += unit;
    }
    if (result.size() > 1 && result.back() == u'/')
        result.pop_back();
    return result;
}

std::u16string_view lastComponent(std::u16string_view path)
{
    path = withoutTrailingSlashes(path);
    const auto slash = path.rfind(u'/');
    return slash == npos || path.size() == 1 ? path : path.substr(slash + 1);
}

/// The index of the dot before the component's extension; npos for none. A dot at either end starts none.
std::size_t extensionDot(std::u16string_view component)
{
    const auto dot = component.rfind(u'.');
    return dot == npos || dot == 0 || dot + 1 == component.size() ? npos : dot;
}

} // namespace

NSString NSString::lastPathComponent() const
{
    return isNull() ? NSString() : NSString(lastComponent(view()));
}

NSString NSString::pathExtension() const
{
    if (isNull())
        return {};
    const auto component = lastComponent(view());
    const auto dot = extensionDot(component);
    return dot == npos ? NSString("") : NSString(component.substr(dot + 1));
}

NSString NSString::stringByAppendingPathComponent(const NSString& component) const
{
    if (isNull())
        return {};
    std::u16string joined(view());
    if (!joined.empty() && component.length() > 0)
        joined += u'/';
    joined += component.view();
    return NSString(std::u16string_view(normalized(joined)));
}

NSString NSString::stringByAppendingPathExtension(const NSString& extension) const
{
    if (isNull())
        return {};
    std::u16string path = normalized(view());
    // These have no name that an extension could belong to.
    if (path.empty() || path == u"/" || extension.length() == 0)
        return *this;
    path += u'.';
    path += extension.view();
    return NSString(std::u16string_view(path));
}

NSString NSString::stringByDeletingLastPathComponent() const
{
    if (isNull())
        return {};
    const std::u16string path = normalized(view());
    const auto slash = path.rfind(u'/');
    if (slash == npos)
        return "";
    return NSString(std::u16string_view(path).substr(0, slash == 0 ? 1 : slash));
}

NSString NSString::stringByDeletingPathExtension() const
{
    if (isNull())
        return {};
    const auto path = withoutTrailingSlashes(view());
    const auto component = lastComponent(path);
    const auto dot = extensionDot(component);
    return NSString(dot == npos ? path : path.substr(0, path.size() - (component.size() - dot)));
}
