#pragma once

#include <Foundation/NSObject.h>
#include <Foundation/NSString.h>

/// The kind of what is on a pasteboard: a uniform type identifier.
using NSPasteboardType = NSString;

/// Plain text. "public.utf8-plain-text".
inline constexpr char NSPasteboardTypeString[] = "public.utf8-plain-text";

/// What the user has copied, for programs to exchange: the desktop's clipboard. Main thread only.
///
///     NSPasteboard* pasteboard = NSPasteboard::generalPasteboard();
///     pasteboard->clearContents();
///     pasteboard->setString("Text to copy", NSPasteboardTypeString);
///
/// Differs: the only pasteboard is the general one, and the only type is plain text. Under X11 and Wayland
/// the contents are lost when the program ends, unless the desktop runs a clipboard manager.
class KORVID_EXPORT NSPasteboard : public NSObject {
public:
    /// The desktop's clipboard; where there is no display, one within the process. Borrowed, never null,
    /// lives as long as the process. Makes the application object if there is none.
    static NSPasteboard* generalPasteboard();

    /// A number that grows whenever this or another program changes the contents.
    NSInteger changeCount() const;

    /// Removes the contents, other programs' too. Returns the new `changeCount()`.
    NSInteger clearContents();

    /// Puts a text in place of the contents; the empty one is a text, too. Returns false, and changes
    /// nothing, for a null string and for any type but NSPasteboardTypeString.
    ///
    /// Differs: `clearContents` need not be called before.
    bool setString(const NSString& string, const NSPasteboardType& dataType);

    /// The text in the contents; null when there is none, and for any type but NSPasteboardTypeString. Waits
    /// for the program that has it, some seconds at most.
    NSString stringForType(const NSPasteboardType& dataType) const;

protected:
    ~NSPasteboard() override;

private:
    NSPasteboard();
};
