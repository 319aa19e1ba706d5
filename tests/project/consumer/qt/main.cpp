// A Qt program outside of the library's source tree: shows a QR code in a layout without a display, and
// prints a letter for each pixel of the window.
#include <KorvidAppKit/KorvidAppKit.h>
#include <KorvidQt/KorvidWidget.h>

#include <QApplication>
#include <QHBoxLayout>
#include <cstdio>

char letterOf(QRgb pixel)
{
    switch (pixel) {
    case 0xFF000000:
        return '#';
    case 0xFFFFFFFF:
        return ' ';
    case 0xFF0000FF:
        return 'o';
    default:
        return '?';
    }
}

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    auto code = make<ZRQRView>(NSMakeRect(0, 0, 21, 21));
    code->setString("KORVID");

    QWidget window;
    window.setPalette(QPalette(Qt::blue));
    auto* layout = new QHBoxLayout(&window);
    layout->setContentsMargins(2, 1, 3, 0);
    layout->addWidget(new KorvidWidget(code));
    window.resize(window.sizeHint());

    const QImage picture = window.grab().toImage();
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            std::putchar(letterOf(picture.pixel(x, y)));
        std::putchar('\n');
    }
    return 0;
}
