#pragma once

#include <Foundation/NSObject.h>

#include <memory>

class NSURL;

/// The application's resources: files in a folder, and strings in the user's language.
///
/// The folder is the first of these that exists, relative to the executable's folder:
/// `Resources` beside it, `../Resources`, `../share/<executable>`. The environment variable
/// `KORVID_RESOURCES` overrides them. Without any of them no resource is found.
///
/// Strings and localised files are in `<language>.lproj` folders below it. The languages are those of the
/// environment (`LC_ALL`, `LC_MESSAGES`, `LANG`, whichever is set first; if that is not "C" or "POSIX",
/// `LANGUAGE` may put a list before it). A language is tried as `de-AT`, `de_AT`, `de` (Chinese also as
/// `zh-Hans` or `zh-Hant`); then the development region, "en" unless the Info.plist says otherwise; then
/// `Base.lproj`.
///
/// Folder and languages are read once, at the first call. Safe on any thread.
class KORVID_EXPORT NSBundle : public NSObject {
public:
    /// The application's bundle. Never null, never destroyed.
    static NSBundle* mainBundle();

    /// The value of "CFBundleIdentifier" in the resource folder's `Info.plist`; where there is none, the
    /// name of the executable.
    NSString bundleIdentifier() const;

    /// The file URL of resource `name` with `extension`: a file or folder at the root of the resource
    /// folder, else in the folder of the best language that has it. A null or empty extension means that
    /// `name` is complete. Null when there is none, when the name is null or empty, and for anything that
    /// could lead out of the folder: absolute paths, "..", NUL characters.
    RetainPtr<NSURL> URLForResource(NSString name, NSString extension) const;
    /// The same in a subdirectory of the resource folder, and in the languages' folders within that; null or
    /// empty means the root.
    RetainPtr<NSURL> URLForResource(NSString name, NSString extension, NSString subdirectory) const;

    /// Like `URLForResource`, as a path.
    NSString pathForResource(NSString name, NSString extension) const;
    /// Like `URLForResource` with a subdirectory, as a path.
    NSString pathForResource(NSString name, NSString extension, NSString subdirectory) const;

    /// The string for `key` in the user's language.
    ///
    /// It is read from `<table>.strings`, or from `Localizable.strings` for a null or empty table, in the
    /// folder of the first language that has this file. Returns `value` for a missing key, or the key itself
    /// when `value` is null or empty; for a null key `value`, or the empty string. A file that cannot be
    /// parsed is logged once and counts as empty.
    NSString localizedStringForKey(NSString key, NSString value, NSString table) const;

protected:
    ~NSBundle() override;

private:
    friend class MainBundleFolder;
    struct State;

    NSBundle();

    std::unique_ptr<State> _state;
};
