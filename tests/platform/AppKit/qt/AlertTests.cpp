#include "AlertTestSupport.h"

#include "AppKit/testing/EffectiveAppearance.h"
#include "Foundation/testing/MainBundleFolder.h"
#include "support/TemporaryFolder.h"

#include <AppKit/NSAppearance.h>
#include <AppKit/NSApplication.h>
#include <QAccessible>
#include <QScreen>

namespace {

TEST(NSAlert, RunModalReturns1000PlusThePositionOfThePressedButton)
{
    const auto alert = makeAlert({"One", "Two", "Three", "Four"});
    for (int number = 0; number < 4; ++number)
        EXPECT_EQ(answer(*alert, [&] { pressAlertButton(number); }), 1000 + number);
    EXPECT_EQ(shownAlert(), nullptr);
}

TEST(NSAlert, ButtonsStandFromRightToLeft)
{
    const auto alert = makeAlert({"One", "Two", "Three"});
    answer(*alert, [] {
        EXPECT_EQ(alertButton(0)->text(), "One");
        EXPECT_GT(alertButton(0)->x(), alertButton(1)->geometry().right());
        EXPECT_GT(alertButton(1)->x(), alertButton(2)->geometry().right());
        EXPECT_EQ(alertButton(0)->y(), alertButton(2)->y());
        pressAlertButton(0);
    });
}

TEST(NSAlert, LongTitlesStandOneBelowTheOther)
{
    const std::string title(60, 'm');
    const auto alert = makeAlert({title.c_str(), title.c_str()});
    answer(*alert, [] {
        EXPECT_GT(alertButton(1)->y(), alertButton(0)->geometry().bottom());
        EXPECT_EQ(alertButton(0)->x(), alertButton(1)->x());
        pressAlertButton(0);
    });
}

TEST(NSAlert, AButtonWiderThanTheScreenIsShortened)
{
    const std::string title = "first" + std::string(5000, 'm') + "last";
    const auto alert = makeAlert({title.c_str()});
    answer(*alert, [&] {
        EXPECT_LE(shownAlert()->width(), shownAlert()->screen()->availableSize().width());
        EXPECT_TRUE(alertButton(0)->text().startsWith("first"));
        EXPECT_TRUE(alertButton(0)->text().endsWith("last"));
        EXPECT_EQ(alertButton(0)->accessibleName().toStdString(), title);
        pressAlertButton(0);
    });
}

TEST(NSAlert, ReturnPressesTheFirstButtonWhereverTheFocusIs)
{
    const auto alert = makeAlert({"One", "Two"});
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        EXPECT_EQ(answer(*alert,
                      [&] {
                          alertButton(1)->setFocus();
                          QTest::keyClick(alertButton(1), key);
                      }),
            1000);
    }
}

TEST(NSAlert, TheSpaceBarPressesTheButtonWithTheFocus)
{
    const auto alert = makeAlert({"One", "Two"});
    EXPECT_EQ(answer(*alert,
                  [] {
                      alertButton(1)->setFocus();
                      QTest::keyClick(alertButton(1), Qt::Key_Space);
                  }),
        1001);
}

TEST(NSAlert, EscapeAndClosePressTheButtonThatCancels)
{
    const auto escape = [] { QTest::keyClick(shownAlert(), Qt::Key_Escape); };
    const auto close = [] { shownAlert()->close(); };
    for (const std::function<void()>& user : {std::function<void()>(escape), std::function<void()>(close)}) {
        EXPECT_EQ(answer(*makeAlert({"One", "Cancel", "Three"}), user), 1001);
        EXPECT_EQ(answer(*makeAlert({"Only"}), user), 1000);
    }
}

TEST(NSAlert, EscapeAndCloseDoNothingWhenNoButtonCancels)
{
    EXPECT_EQ(answer(*makeAlert({"One", "Two"}),
                  [] {
                      QTest::keyClick(shownAlert(), Qt::Key_Escape);
                      shownAlert()->close();
                      EXPECT_TRUE(shownAlert()->isVisible());
                      EXPECT_FALSE(shownAlert()->windowFlags() & Qt::WindowCloseButtonHint);
                      pressAlertButton(1);
                  }),
        1001);
}

TEST(NSAlert, TitlesComeFromTheMainBundlesTranslation)
{
    const TemporaryFolder folder;
    folder.write("en.lproj/Localizable.strings", "\"Cancel\" = \"Abbrechen\";\n\"OK\" = \"Gut\";\n");
    const MainBundleFolder bundle(NSString(folder.path().string()));
    EXPECT_EQ(answer(*makeAlert({"One", "Abbrechen"}), [] { QTest::keyClick(shownAlert(), Qt::Key_Escape); }),
        1001);
    EXPECT_EQ(answer(*makeAlert({}),
                  [] {
                      EXPECT_EQ(alertButton(0)->text(), "Gut");
                      EXPECT_EQ(alertButton(1), nullptr);
                      pressAlertButton(0);
                  }),
        1000);
}

TEST(NSAlert, AHeldKeyDoesNotAnswer)
{
    EXPECT_EQ(answer(*makeAlert({"One", "Two"}),
                  [] {
                      for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
                          QKeyEvent repeated(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
                          QCoreApplication::sendEvent(alertButton(0), &repeated);
                      }
                      pressAlertButton(1);
                  }),
        1001);
}

TEST(NSAlert, NullTitlesAreIgnored)
{
    const auto alert = makeAlert({nullptr, "One"});
    EXPECT_EQ(alert->buttonTitles(), std::vector<NSString>{"One"});
}

TEST(NSAlert, TextsAndTitlesAreShownAsTheyAre)
{
    const auto alert = makeAlert({"Save & <i>quit</i>"});
    alert->setMessageText("<b>Message</b> & more");
    alert->setInformativeText("Line\n<u>line</u>");
    answer(*alert, [] {
        EXPECT_EQ(textOf("alertMessage"), "<b>Message</b> & more");
        EXPECT_EQ(textOf("alertInformativeText"), "Line\n<u>line</u>");
        EXPECT_EQ(alertButton(0)->text(), "Save && <i>quit</i>");
        pressAlertButton(0);
    });
}

TEST(NSAlert, MissingTextsTakeNoRoom)
{
    const auto height = [](NSString message, NSString informative) {
        const auto alert = makeAlert({"OK"});
        alert->setMessageText(std::move(message));
        alert->setInformativeText(std::move(informative));
        int result = 0;
        answer(*alert, [&] {
            result = shownAlert()->height();
            pressAlertButton(0);
        });
        return result;
    };
    const int none = height(nullptr, nullptr);
    EXPECT_EQ(height("", ""), none);
    EXPECT_GT(height("Message", nullptr), none);
    EXPECT_GT(height("Message", "More"), height("Message", ""));
}

TEST(NSAlert, LongTextsStayOnTheScreen)
{
    std::string lines;
    for (int i = 0; i < 500; ++i)
        lines += "A line of text.\n";
    const std::string unbroken(20000, 'm');
    for (const std::string& text : {lines, unbroken}) {
        const auto alert = makeAlert({"One", "Two"});
        alert->setMessageText(NSString(text));
        alert->setInformativeText(NSString(text));
        answer(*alert, [&] {
            const QRect screen = shownAlert()->screen()->availableGeometry();
            EXPECT_TRUE(screen.contains(shownAlert()->frameGeometry()));
            EXPECT_EQ(textOf("alertMessage"), text);
            // All buttons are visible below the texts.
            EXPECT_TRUE(shownAlert()->rect().contains(alertButton(1)->geometry()));
            EXPECT_GT(alertButton(1)->y(),
                shownAlert()->findChild<QTextEdit*>("alertInformativeText")->geometry().bottom());
            pressAlertButton(1);
        });
    }
}

TEST(NSAlert, ItIsCenteredOverTheActiveWindow)
{
    const auto window = shownWindow(NSMakeRect(100, 200, 600, 500), make<NSView>().get());
    activate(*window);
    const int middle = widgetOf(*window)->frameGeometry().center().x();
    answer(*makeAlert({"OK"}), [&] {
        EXPECT_NEAR(shownAlert()->geometry().center().x(), middle, 1);
        pressAlertButton(0);
    });
}

TEST(NSAlert, ItIsDarkOrLightByTheEffectiveAppearance)
{
    const auto brightness = [](const NSAppearanceName& name) {
        const EffectiveAppearance appearance(name);
        int corner = 0;
        answer(*makeAlert({"OK"}), [&] {
            corner = shownAlert()->grab().toImage().pixelColor(2, 2).lightness();
            pressAlertButton(0);
        });
        return corner;
    };
    EXPECT_EQ(brightness(NSAppearanceNameDarkAqua), 30);
    EXPECT_EQ(brightness(NSAppearanceNameAqua), 236);
}

TEST(NSAlert, AssistiveTechnologyReadsItsTexts)
{
    const auto alert = makeAlert({"One", "Two"});
    alert->setInformativeText("More");
    answer(*alert, [] {
        QAccessibleInterface* const dialog = QAccessible::queryAccessibleInterface(shownAlert());
        EXPECT_EQ(dialog->role(), QAccessible::Dialog);
        EXPECT_EQ(dialog->text(QAccessible::Name), "Message");
        EXPECT_EQ(dialog->text(QAccessible::Description), "More");
        EXPECT_EQ(QAccessible::queryAccessibleInterface(alertButton(1))->text(QAccessible::Name), "Two");
        pressAlertButton(0);
    });
}

TEST(NSAlert, NothingOfItLeaks)
{
    WeakPtr<NSAlert> weakAlert;
    WeakPtr<NSView> weakView;
    {
        const auto alert = makeAlert({"OK"});
        const auto view = make<NSView>(NSMakeRect(0, 0, 40, 20));
        alert->setAccessoryView(view);
        weakAlert = WeakPtr<NSAlert>(alert);
        weakView = WeakPtr<NSView>(view);
        answer(*alert, [] { pressAlertButton(0); });
        EXPECT_EQ(view->window(), nullptr);
    }
    EXPECT_FALSE(weakAlert.lock());
    EXPECT_FALSE(weakView.lock());
    EXPECT_EQ(QApplication::topLevelWidgets().size(), 0);
}

} // namespace
