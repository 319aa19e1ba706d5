#include "AlertDialog.h"

#include "AlertLook.h"
#include "Conversions.h"
#include "QtWindow.h"
#include "WindowWidget.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCloseEvent>
#include <QEventLoop>
#include <QPushButton>
#include <QScreen>
#include <QTextDocument>
#include <QTextEdit>
#include <QWindow>

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace {

constexpr int kMargin = 20;
constexpr int kGap = 10;
constexpr int kTextWidth = 380;
/// A row of buttons that is wider becomes a column.
constexpr int kWidestRow = 520;
/// Room for the title bar and borders of the dialog.
constexpr int kFrameRoom = 60;

/// The height of a text that is broken into lines of that width; 0 for null.
int heightOf(const QTextEdit* text, int width)
{
    if (!text)
        return 0;
    // In a document of its own, since the text's own one follows the size of its widget.
    const std::unique_ptr<QTextDocument> document(text->document()->clone());
    document->setDefaultFont(text->font());
    document->setTextWidth(width);
    return int(std::ceil(document->size().height()));
}

} // namespace

AlertDialog::AlertDialog(const HostAlert& alert)
    : _alert(alert)
    , _parent(QApplication::activeWindow())
{
    setWindowModality(Qt::ApplicationModal);
    Qt::WindowFlags flags = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint;
    if (alert.cancelButton)
        flags |= Qt::WindowCloseButtonHint;
    setWindowFlags(flags);
    setWindowTitle(QGuiApplication::applicationDisplayName());
    setAccessibleName(toQt(alert.message));
    setAccessibleDescription(toQt(alert.informativeText));
    setPalette(alertPalette(alert.isDark));
    setStyleSheet(alertStyleSheet(alert.isDark));

    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    column->setSpacing(kGap);
    column->setSizeConstraint(QLayout::SetFixedSize);
    _message = addText(alert.message, "alertMessage", true);
    _informativeText = addText(alert.informativeText, "alertInformativeText", false);
    addAccessory();
    addButtons();

    const QScreen* const screen = _parent ? _parent->screen() : QGuiApplication::primaryScreen();
    const QRect available = screen ? screen->availableGeometry() : QRect(0, 0, 640, 480);
    fitScreen(available.size());
    place(available);
}

AlertDialog::~AlertDialog()
{
    if (!_accessory)
        return;
    // It belongs to its own window, which may outlive the alert.
    _accessory->hide();
    _accessory->removeEventFilter(this);
    _accessory->setParent(nullptr);
}

QTextEdit* AlertDialog::addText(const NSString& text, const char* name, bool isBold)
{
    if (text.length() == 0)
        return nullptr;
    auto* const edit = new QTextEdit(this);
    edit->setObjectName(QLatin1String(name));
    edit->setReadOnly(true);
    edit->setFocusPolicy(Qt::NoFocus);
    edit->setFrameShape(QFrame::NoFrame);
    edit->setContextMenuPolicy(Qt::NoContextMenu);
    edit->viewport()->setAutoFillBackground(false);
    edit->document()->setDocumentMargin(0);
    edit->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    edit->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    QFont font = edit->font();
    font.setBold(isBold);
    edit->setFont(font);
    edit->document()->setDefaultFont(font);
    edit->setPlainText(toQt(text));
    edit->setAccessibleName(toQt(text));
    layout()->addWidget(edit);
    return edit;
}

void AlertDialog::addAccessory()
{
    if (!_alert.accessory)
        return;
    _accessory = static_cast<QtWindow*>(_alert.accessory)->widget();
    _accessory->setParent(this, Qt::Widget);
    _accessory->installEventFilter(this);
    static_cast<QBoxLayout*>(layout())->addWidget(_accessory, 0, Qt::AlignHCenter);
}

void AlertDialog::addButtons()
{
    const QScreen* const screen = QGuiApplication::primaryScreen();
    const int widest = std::max(100, (screen ? screen->availableSize().width() : 640) - 4 * kMargin);
    std::vector<QPushButton*> buttons;
    int width = 0;
    for (std::size_t i = 0; i < _alert.buttons.size(); ++i) {
        buttons.push_back(makeButton(i, widest));
        width += buttons.back()->sizeHint().width() + kGap;
    }
    const bool isRow = width - kGap <= kWidestRow;
    // The first button is at the right end, or on top.
    auto* const box = new QBoxLayout(isRow ? QBoxLayout::RightToLeft : QBoxLayout::TopToBottom);
    box->setSpacing(kGap);
    for (QPushButton* button : buttons)
        box->addWidget(button);
    if (isRow)
        box->addStretch();
    auto* const column = static_cast<QBoxLayout*>(layout());
    column->addSpacing(kGap);
    column->addLayout(box);
    buttons.front()->setFocus();
}

QPushButton* AlertDialog::makeButton(std::size_t number, int widest)
{
    const QString title = toQt(_alert.buttons[number]);
    auto* const button = new QPushButton(this);
    button->setObjectName(QStringLiteral("alertButton%1").arg(number));
    // An ampersand is no sign of a keyboard shortcut here.
    button->setText(button->fontMetrics()
                        .elidedText(title, Qt::ElideMiddle, widest)
                        .replace(QLatin1Char('&'), QLatin1String("&&")));
    button->setAccessibleName(title);
    button->installEventFilter(this);
    button->setAutoDefault(false);
    button->setDefault(number == 0);
    connect(button, &QPushButton::clicked, this, [this, number] {
        if (!_answer)
            _answer = number;
        if (_loop)
            _loop->exit();
    });
    return button;
}

/// Gives the texts the height that they need, or what the screen has; what does not fit scrolls.
void AlertDialog::fitScreen(const QSize& available)
{
    const int width = std::max(kTextWidth, _accessory ? _accessory->width() : 0);
    int room = available.height() - kFrameRoom - 2 * kMargin;
    ensurePolished();
    // What the rest of the dialog takes.
    const auto setHeights = [&](int message, int informative) {
        if (_message)
            _message->setFixedSize(width, message);
        if (_informativeText)
            _informativeText->setFixedSize(width, informative);
    };
    setHeights(0, 0);
    layout()->activate();
    room = std::max(room - (layout()->sizeHint().height() - 2 * kMargin), 2 * fontMetrics().height());

    const int message = heightOf(_message, width);
    const int informative = heightOf(_informativeText, width);
    // The explanation scrolls before the message does, which gets at least half.
    const int messageRoom = std::min(message, std::max(room / 2, room - informative));
    setHeights(messageRoom, std::min(informative, room - messageRoom));
    layout()->activate();
}

/// Over the middle of the active window or the screen, a little higher, and wholly on the screen.
void AlertDialog::place(const QRect& available)
{
    const QRect around = _parent ? _parent->frameGeometry() : available;
    const QSize size = sizeHint();
    const int x = around.center().x() - size.width() / 2;
    const int y = around.top() + (around.height() - size.height()) / 3;
    const auto within = [](int value, int least, int greatest) {
        return std::max(std::min(value, greatest), least);
    };
    move(within(x, available.left(), available.right() - size.width()),
        within(y, available.top(), available.bottom() - size.height() - kFrameRoom / 2));
}

std::optional<std::size_t> AlertDialog::run(QEventLoop& loop)
{
    _loop = &loop;
    winId(); // makes the window
    // No more than a hint to the window manager: as a child, the dialog would be destroyed with its parent.
    if (_parent && windowHandle())
        windowHandle()->setTransientParent(_parent->window()->windowHandle());
    show();
    raise();
    activateWindow();
    if (_accessory)
        _accessory->placeMayHaveChanged();
    loop.exec(QEventLoop::DialogExec);
    _loop = nullptr;
    hide();
    return _answer;
}

void AlertDialog::reject()
{
    if (!_alert.cancelButton)
        return;
    if (auto* const button =
            findChild<QPushButton*>(QStringLiteral("alertButton%1").arg(*_alert.cancelButton)))
        button->click();
}

void AlertDialog::closeEvent(QCloseEvent* event)
{
    event->ignore();
    reject();
}

void AlertDialog::moveEvent(QMoveEvent* event)
{
    QDialog::moveEvent(event);
    if (_accessory)
        _accessory->placeMayHaveChanged();
}

/// Return and Escape, which answer the alert wherever the focus is.
bool AlertDialog::isAnswerKey(QEvent& event) const
{
    if (event.type() != QEvent::KeyPress)
        return false;
    const int key = static_cast<QKeyEvent&>(event).key();
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape;
}

/// Filters the events of the buttons and the accessory view.
bool AlertDialog::eventFilter(QObject* object, QEvent* event)
{
    if (!isAnswerKey(*event))
        return QDialog::eventFilter(object, event);
    // A key that was held before the alert appeared must not answer it.
    if (static_cast<QKeyEvent*>(event)->isAutoRepeat())
        return true;
    if (object != _accessory)
        return QDialog::eventFilter(object, event);
    QCoreApplication::sendEvent(this, event);
    return true;
}
