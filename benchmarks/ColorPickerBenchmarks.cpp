// The field of a colour picker, built and drawn, and its knob in motion.

#include "Benchmarks.h"
#include "CurrentContext.h"
#include "QtCanvas.h"
#include "Table.h"

#include <KorvidAppKit/ZR2DColorPicker.h>

#include <QColorDialog>
#include <QCoreApplication>
#include <QResizeEvent>

namespace {

constexpr const char* kFields = "picker field";
constexpr const char* kKnobs = "picker knob";
constexpr int kSide = 512;
constexpr int kMargin = 6; ///< around the field of a picker with the default knob
constexpr Size kView{kSide + 2 * kMargin, kSide + 2 * kMargin};
constexpr double kBrightness = 0.8;

RetainPtr<ZR2DColorPicker> makePicker(ZR2DColorPickerAxes axes)
{
    auto picker = make<ZR2DColorPicker>(whole(kView));
    picker->setAxes(axes);
    picker->setThirdComponent(kBrightness);
    return picker;
}

/// The whole view with a new field.
void buildKorvidField(benchmark::State& state, ZR2DColorPickerAxes axes)
{
    const KorvidCanvas canvas(kView);
    const CurrentContext current(canvas);
    const auto picker = makePicker(axes);
    for (auto _ : state) {
        picker->setThirdComponent(kBrightness);
        picker->drawRect(picker->bounds());
    }
}

QImage makeQtField()
{
    QImage image(kSide, kSide, QImage::Format_RGB32);
    constexpr float kLast = kSide - 1;
    for (int y = 0; y < kSide; ++y) {
        auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < kSide; ++x)
            row[x] =
                QColor::fromHsvF(float(x) / kLast, float(kSide - 1 - y) / kLast, float(kBrightness)).rgb();
    }
    return image;
}

/// The pixels alone, which are not drawn.
void buildQtField(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(makeQtField());
}

/// The field of Qt's own dialog, which it builds when it is resized.
void buildDialogField(benchmark::State& state)
{
    QColorDialog dialog;
    dialog.setOption(QColorDialog::DontUseNativeDialog);
    QWidget* field = nullptr;
    for (QWidget* widget : dialog.findChildren<QWidget*>()) {
        if (QByteArray(widget->metaObject()->className()).endsWith("QColorPicker"))
            field = widget;
    }
    if (!field)
        return state.SkipWithError("QColorDialog has no field");
    field->setFixedSize(kSide, kSide);
    field->resize(kSide, kSide);
    for (auto _ : state) {
        QResizeEvent event(field->size(), field->size());
        QCoreApplication::sendEvent(field, &event);
    }
}

void moveKorvidKnob(benchmark::State& state)
{
    const KorvidCanvas canvas(kView);
    const CurrentContext current(canvas);
    const auto picker = makePicker(kZR2DColorPickerAxesHueSaturation);
    Motion motion(true);
    for (auto _ : state) {
        const double component = motion.next();
        picker->setComps({component, component});
        picker->drawRect(picker->bounds());
    }
}

/// The same without the knob's soft shadow, which QPainter lacks.
void moveQtKnob(benchmark::State& state)
{
    QtCanvas canvas(kView);
    QPainter& painter = canvas.painter();
    const QImage field = makeQtField();
    const QPen frame(Qt::black, 1), shadow(QColor(0, 0, 0, 0x99), 2), ring(Qt::white, 2);
    Motion motion(true);
    for (auto _ : state) {
        const double component = motion.next();
        painter.drawImage(kMargin, kMargin, field);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(frame);
        painter.drawRect(QRectF(kMargin - 0.5, kMargin - 0.5, kSide + 1, kSide + 1));
        const QPointF centre(kMargin + component * kSide, kMargin + (1 - component) * kSide);
        painter.setPen(shadow);
        painter.drawEllipse(centre + QPointF(0, 1), 4, 4);
        painter.setPen(ring);
        painter.setBrush(QColor::fromHsvF(float(component), float(component), float(kBrightness)));
        painter.drawEllipse(centre, 4, 4);
    }
}

} // namespace

void addColorPickerBenchmarks()
{
    addTable({kFields, "Fields of colour pickers",
        "512 x 512 colours. Ours is the whole ZR2DColorPicker, which builds the field and draws it, with its "
        "knob. QColor::fromHsvF is called for each pixel of an image that is not drawn. QColorDialog builds "
        "the "
        "field of its own dialog, of 8-bit components, without drawing it."});
    const std::string hsb = "hue and saturation", rgb = "red and green";
    addBenchmark(kFields, hsb, KorvidCanvas::kLibrary,
        [](benchmark::State& state) { buildKorvidField(state, kZR2DColorPickerAxesHueSaturation); });
    addBenchmark(kFields, hsb, "QColor::fromHsvF", buildQtField);
    addBenchmark(kFields, hsb, "QColorDialog", buildDialogField);
    addBenchmark(kFields, rgb, KorvidCanvas::kLibrary,
        [](benchmark::State& state) { buildKorvidField(state, kZR2DColorPickerAxesRedGreen); });

    addTable({kKnobs, "Colour pickers whose knob moves",
        "The whole view with a cached field of 512 x 512 colours and the knob at another place each time. "
        "QPainter's knob has no soft shadow."});
    addBenchmark(kKnobs, "moving", KorvidCanvas::kLibrary, moveKorvidKnob);
    addBenchmark(kKnobs, "moving", QtCanvas::kLibrary, moveQtKnob);
}
