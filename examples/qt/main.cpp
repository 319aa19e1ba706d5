#include <KorvidAppKit/KorvidAppKit.h>
#include <KorvidQt/KorvidWidget.h>

#include <AppKit/AppKit.h>
#include <QApplication>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QStatusBar>

// A Qt program like any other, with views among its widgets. `embedded-views FILE.png` writes a picture of
// its window instead of showing it.

namespace {

/// The target of the switch.
class Lamp : public NSObject {
public:
    explicit Lamp(QStatusBar& bar)
        : _bar(bar)
    {
    }
    void toggled(ZRSwitchControl* sender)
    {
        _bar.showMessage(
            sender->isOn() ? QStringLiteral("The lamp is on") : QStringLiteral("The lamp is off"));
    }

private:
    QStatusBar& _bar;
};

class Window : public QMainWindow {
public:
    Window()
    {
        setWindowTitle(QStringLiteral("Views in a Qt program"));
        auto* const form = new QFormLayout;
        auto* const name = new QLineEdit(QStringLiteral("beta"));
        const auto tag = make<ZRCapsuleView>(NSZeroRect);
        const auto code = make<ZRQRView>(NSMakeRect(0, 0, 120, 120));
        const auto show = [tag, code](const QString& text) {
            const NSString string(text.left(100).toStdString());
            tag->setString(string); // grows and shrinks with its text
            code->setString(string);
        };
        tag->setFontSize(13);
        tag->setDrawType(kZRCapsuleDrawTypeFilled);
        tag->setColor(ZRGraphics::sharedGraphics()->platformColorFromHex("0072B5"));
        code->setInset(8);
        show(name->text());
        connect(name, &QLineEdit::textChanged, this, show);

        const auto toggle = make<ZRSwitchControl>(NSMakeRect(0, 0, 66, 24));
        toggle->setTarget(_lamp);
        toggle->setAction(selector<&Lamp::toggled>);
        toggle->setToolTip("Click, drag, or press the space bar");
        const auto icon = make<ZRPDFView>(NSMakeRect(0, 0, 32, 32));
        icon->setPdf(ZRPDF::initWithURL(NSURL::fileURLWithPath(ICON)));
        icon->setPdfColorPlatform(NSColor::labelColor());

        const auto panel = make<ZRGradientView>(NSMakeRect(0, 0, 0, 24)); // as wide as its column
        panel->setRoundedCorners(kZRCornerAll);
        panel->setCornerRadius(6);
        const auto picker = make<ZR2DColorPicker>(NSMakeRect(0, 0, 160, 120));
        picker->setThirdComponent(1);
        const auto mix = [panel, from = picker.get()](ZR2Components) { panel->setColor(from->color()); };
        picker->setComponentsChangedCB(mix);
        mix({});

        form->addRow(QStringLiteral("Text"), name);
        form->addRow(QStringLiteral("Tag"), new KorvidWidget(tag));
        form->addRow(QStringLiteral("Lamp"), new KorvidWidget(toggle));
        form->addRow(QStringLiteral("Icon"), new KorvidWidget(icon));
        form->addRow(QStringLiteral("Colour"), new KorvidWidget(picker));
        form->addRow(QStringLiteral("Panel"), new KorvidWidget(panel));
        form->addRow(QStringLiteral("Code"), new KorvidWidget(code));
        auto* const centre = new QWidget;
        centre->setLayout(form);
        setCentralWidget(centre);
        statusBar()->showMessage(QStringLiteral("Ready"));
    }

private:
    const RetainPtr<Lamp> _lamp = make<Lamp>(*statusBar());
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    Window window;
    window.show();
    if (argc > 1)
        return window.grab().save(QString::fromLocal8Bit(argv[1])) ? 0 : 1;
    return QApplication::exec();
}
