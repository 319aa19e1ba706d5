#include <AppKit/AppKit.h>
#include <KorvidAppKit/KorvidAppKit.h>

/// The program ends with its window.
class FirstProgram : public NSObject, public NSWindowDelegate {
public:
    void windowWillClose(NSWindow*) override { NSApp->stop(); }
};

int main()
{
    NSApplication::sharedApplication();

    auto code = make<ZRQRView>(NSMakeRect(0, 0, 240, 240));
    code->setInset(20);
    code->setFgColor(ZRGraphics::sharedGraphics()->platformColorFromHex("02021D"));
    code->setString("Hello from KorvidAppKit");

    auto program = make<FirstProgram>();
    auto window = make<NSWindow>(
        code->frame(), NSWindowStyleMaskTitled | NSWindowStyleMaskClosable, NSBackingStoreBuffered, false);
    window->setTitle("A first program");
    window->setContentView(code);
    window->setDelegate(program);
    window->center();
    window->makeKeyAndOrderFront();
    NSApp->run();
}
