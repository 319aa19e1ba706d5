#include <AppKit/AppKit.h>
#include <KorvidAppKit/KorvidAppKit.h>

/// Colours the star when the switch is operated, and ends the program with its window.
class Controller : public NSObject, public NSWindowDelegate {
public:
    void windowWillClose(NSWindow*) override { NSApp->stop(); }
    void toggled(ZRSwitchControl* sender)
    {
        star->setPdfColor(ZRGraphics::sharedGraphics()->CGColorFromHex(sender->isOn() ? "FF8A1E" : "5A5E82"));
    }
    RetainPtr<ZRPDFView> star = make<ZRPDFView>(NSMakeRect(32, 104, 88, 88));
};

int main()
{
    NSApplication::sharedApplication()->setAppearance(
        NSAppearance::appearanceNamed(NSAppearanceNameDarkAqua));
    auto controller = make<Controller>();
    controller->star->setPdf(ZRPDF::pdfNamed("star")); // Resources/star.pdf
    auto toggle = make<ZRSwitchControl>(NSMakeRect(32, 32, 88, 32));
    toggle->setTarget(controller);
    toggle->setAction(selector<&Controller::toggled>);
    toggle->setOn(true, false);
    controller->toggled(toggle);
    auto code = make<ZRQRView>(NSMakeRect(152, 12, 200, 200));
    code->setInset(25); // the light margin that readers need
    code->setString("Hello from KorvidAppKit");

    auto window = make<NSWindow>(NSMakeRect(0, 0, 364, 224),
        NSWindowStyleMaskTitled | NSWindowStyleMaskClosable, NSBackingStoreBuffered, false);
    window->setTitle("Getting started");
    window->contentView()->addSubview(controller->star);
    window->contentView()->addSubview(toggle);
    window->contentView()->addSubview(code);
    window->setDelegate(controller);
    window->makeKeyAndOrderFront();
    NSApp->run();
}
