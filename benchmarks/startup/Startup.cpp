// A small program, from its start to its first picture: `Startup picture FILE` writes a text field into a PNG
// file, `Startup window` shows it in a window and ends when it has been drawn.

#include <AppKit/AppKit.h>
#include <Foundation/Foundation.h>

#include <fstream>
#include <string_view>

namespace {

/// Ends the application once it has been drawn.
class ShownField : public NSTextField {
public:
    using NSTextField::NSTextField;

    void drawRect(NSRect rect) override
    {
        NSTextField::drawRect(rect);
        NSApp->stop();
    }
};

template <class Field> RetainPtr<Field> makeField()
{
    auto field = make<Field>(NSMakeRect(0, 0, 240, 60));
    field->setStringValue("The first text");
    return field;
}

void showWindow()
{
    NSApplication::sharedApplication();
    const auto field = makeField<ShownField>();
    const auto window =
        make<NSWindow>(field->frame(), NSWindowStyleMaskTitled, NSBackingStoreBuffered, false);
    window->setContentView(field);
    window->makeKeyAndOrderFront();
    NSApp->run();
}

bool writePicture(const char* file)
{
    const auto field = makeField<NSTextField>();
    const auto bitmap = field->bitmapImageRepForCachingDisplayInRect(field->bounds());
    field->cacheDisplayInRect(field->bounds(), bitmap);
    const auto png = bitmap->representationUsingType(NSBitmapImageFileTypePNG, nullptr);
    std::ofstream stream(file, std::ios::binary);
    stream.write(static_cast<const char*>(png->bytes()), std::streamsize(png->length()));
    return stream.good();
}

} // namespace

int main(int count, char** arguments)
{
    if (count == 2 && std::string_view(arguments[1]) == "window")
        showWindow();
    else if (count != 3 || std::string_view(arguments[1]) != "picture" || !writePicture(arguments[2]))
        return 1;
    return 0;
}
