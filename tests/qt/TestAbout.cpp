// The texts of the bundle as it ships them: About in its panel, rolling on real timers, Read Me and help in windows.
#include "host/LoadedPane.h"
#include "qt/QtToolkit.h"
#include "tests/qt/FakePortal.h"
#include "tests/qt/QtTest.h"

#include <QDialog>
#include <QLabel>
#include <QProxyStyle>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBrowser>
#include <QWindow>

#include <algorithm>
#include <fstream>

using namespace platform;

namespace {

struct About : PaneHost {
    About() {
        REQUIRE(pane.load(BINARY_DIR "/Typeslate.prefPane").empty());
        page.show();
        pane.select();
        button("aboutButton").click();
        settle();
    }
    void replyToShouldUnselect(bool may) override { mayLeave = may; }
    void entryWasRemoved(std::string_view) override {}
    void fontManagerIsMissing() override { pane.fontManagerIsMissing(); }
    template <typename Widget>
    Widget& find(const char* name) {
        return *qobject_cast<Widget*>(qt::widgetOf(pane.view(name)));
    }
    QPushButton& button(const char* name) { return find<QPushButton>(name); }
    QDialog& sheet() { return find<QDialog>("aboutPanel"); }
    QTextBrowser& text() { return find<QTextBrowser>("aboutTextView"); }
    int position() { return text().verticalScrollBar()->value(); }
    bool staysForSeveralSteps() {
        int left = position();
        QTest::qWait(250);
        return position() == left;
    }

    check::TemporaryFolder home;
    check::ScopedEnvironment homeVariable{"HOME", home.path().c_str()}, root{"TYPESLATE_ROOT", (home / "root").c_str()},
        configuration{"XDG_CONFIG_HOME", nullptr}, applications{"XDG_DATA_DIRS", (home / "share").c_str()};
    PrivateBus bus;
    host::HostPlatform platform;
    QWidget page;
    host::LoadedPane pane{platform, *this, page};
    bool mayLeave = false;
};

}  // namespace

TEST(TheAboutTextRollsUntilItsSheetIsClosed) {
    About a;
    CHECK(a.sheet().isVisible());
    REQUIRE(waitFor([&] { return a.position() >= 3; }));
    CHECK(a.pane.askToLeave() == UnselectReply::Later);
    QWindow* window = a.sheet().windowHandle();
    QTest::keyPress(window, Qt::Key_Alt, Qt::AltModifier);
    int turned = a.position();
    REQUIRE(waitFor([&] { return a.position() == turned - 2; }));
    QTest::keyRelease(window, Qt::Key_Alt);

    QTest::keyClick(&a.sheet(), Qt::Key_Escape);
    CHECK(!a.sheet().isVisible());
    CHECK(a.mayLeave);
    CHECK(a.staysForSeveralSteps());
}

TEST(WhoScrollsOrSelectsTheAboutTextKeepsItsPlace) {
    About a;
    QTest::keyClick(&a.text(), Qt::Key_PageDown);
    CHECK(a.position() > a.text().viewport()->height() / 2 && a.staysForSeveralSteps());
    a.button("aboutCloseButton").click();
    a.button("aboutButton").click();
    CHECK(a.sheet().isVisible() && a.position() == 0);
    REQUIRE(waitFor([&] { return a.position() > 0; }));
    QTest::mouseClick(a.text().viewport(), Qt::LeftButton, {}, QPoint(3, 3));
    const int clicked = a.position();
    REQUIRE(waitFor([&] { return a.position() > clicked; }));
    a.text().selectAll();
    CHECK(a.staysForSeveralSteps());
}

TEST(WhoWantsNoAnimationsHasATextThatStandsStill) {
    struct Still : QProxyStyle {
        int styleHint(StyleHint hint, const QStyleOption* o, const QWidget* w, QStyleHintReturn* r) const override {
            return hint == SH_Widget_Animation_Duration ? 0 : QProxyStyle::styleHint(hint, o, w, r);
        }
    } still;
    struct {
        const char *space, *name;
        QVariant value;
        bool moves;
    } const kSteps[] = {{qt::kGnomeInterface, "enable-animations", false, false},
                        {qt::kGnomeInterface, "enable-animations", true, true},
                        {qt::kAppearance, "reduced-motion", 1U, false},
                        {qt::kAppearance, "reduced-motion", 0U, true}};
    About a;
    FakePortal portal;
    portal.start();
    for (const auto& step : kSteps) {
        CONTEXT(step.name);
        portal.set(step.space, step.name, step.value);
        REQUIRE(waitFor([&] { return a.staysForSeveralSteps() != step.moves; }));
        a.button("aboutCloseButton").click();
        a.button("aboutButton").click();
    }
    a.text().setStyle(&still);
    a.button("aboutCloseButton").click();
    a.button("aboutButton").click();
    CHECK(a.staysForSeveralSteps() && a.position() == 0);
    a.text().setStyle(nullptr);
}

TEST(TheAboutTextHasItsVersionPictureAndLinks) {
    About a;
    // The version is the bundle's, and nothing is left of the format.
    QString shown = a.text().toPlainText();
    std::string version(a.pane.bundle().infoValue("CFBundleShortVersionString").stringValue());
    CHECK(shown.contains(QStringLiteral("Version ") + QString::fromStdString(version)));
    CHECK(!shown.contains(QLatin1Char('\\')) && !shown.contains(QLatin1Char('@')));
    CHECK(shown.startsWith(QChar::ObjectReplacementCharacter));
    CHECK_EQ(a.text().toHtml().count(QStringLiteral("href=\"https://")), 2);
}

TEST(WhatTheDesktopDoesNotOpenIsShownOrSaid) {
    auto about = std::make_unique<About>();
    About& a = *about;
    a.button("aboutCloseButton").click();
    const std::string opener = a.home / "bin/xdg-open", opened = a.home / "opened";
    check::ScopedEnvironment path{"PATH", (a.home / "bin:/usr/bin:/bin").c_str()};
    auto openerEndsWith = [&](int status) {
        check::writeFile(opener, "#!/bin/sh\necho $$ > " + opened + "\nexit " + std::to_string(status));
        std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
    };
    auto hasOpened = [&] {
        std::string process;
        std::ifstream(opened) >> process;
        return !process.empty() && !std::filesystem::exists("/proc/" + process);
    };
    auto said = [](QWidget& window) {
        auto* line = window.findChild<QLabel*>(QStringLiteral("messageText"));
        return line && line->isVisibleTo(&window) ? line->text().remove(QChar(0x200B)).toStdString() : std::string();
    };
    auto documents = [] {
        QWidgetList found = QApplication::topLevelWidgets();
        auto isNone = [](QWidget* w) { return !w->isVisible() || w->objectName() != QStringLiteral("documentWindow"); };
        found.erase(std::remove_if(found.begin(), found.end(), isNone), found.end());
        return found;
    };
    struct {
        const char* button;
        bool isReached;
        int status;            // of the desktop's opener
        const char* document;  // that stands in its own window then
        const char* message;   // of the pane's line
        bool isHandedOn;
    } const kCases[] = {
        {"readMeButton", true, 0, "Typeslate Read Me", "", false},
        {"expressionHelpButton", true, 0, "", "", true},
        {"expressionHelpButton", true, 3, "Help on expressions", "", true},
        {"expressionHelpButton", false, 0, "Help on expressions", "", false},
        {"collectionsButton", true, 0, "", "No font manager was found.", false},
    };
    for (const auto& c : kCases) {
        openerEndsWith(c.status);
        a.platform.toolkit().setReach([&](std::string_view) { return c.isReached; });
        for (int times = 0; times < 2; ++times) {
            a.button(c.button).click();
            CHECK(!c.isHandedOn || waitFor(hasOpened));
            settle();
            CHECK(std::filesystem::remove(opened) == c.isHandedOn);
            CHECK(said(a.page).starts_with(c.message) && said(a.page).empty() == !*c.message);
            QWidgetList shown = documents();
            CHECK_EQ(shown.isEmpty() ? "" : shown.first()->windowTitle().toStdString(), std::string(c.document));
            CHECK(shown.size() <= 1);
        }
        for (QWidget* document : documents()) QTest::keyClick(document, Qt::Key_Escape);
        settle();
    }
    // A link is said to lead nowhere where it was followed.
    a.button("readMeButton").click();
    REQUIRE(documents().size() == 1);
    openerEndsWith(4);
    for (auto [window, text] : {std::pair{documents().first(), documents().first()->findChild<QTextBrowser*>()},
                                {static_cast<QWidget*>(&a.page), &a.text()}}) {
        window->activateWindow();
        CHECK(!text->openLinks());
        Q_EMIT text->anchorClicked(QUrl(QStringLiteral("https://b.example/c%20d")));
        CHECK(waitFor([&] { return said(*window) == "Nothing was found that opens https://b.example/c%20d."; }));
    }
    about.reset();
    CHECK(documents().isEmpty());
}
