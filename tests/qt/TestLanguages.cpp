// The pane's own interface files in every language: whatever the texts, the page keeps its size and its letters.
#include "tests/qt/QtTest.h"

#include <QAbstractButton>
#include <QDialog>
#include <QKeySequence>
#include <QLabel>
#include <QTabWidget>

#include <set>

using namespace platform;

namespace {

constexpr const char* kLanguages[] = {"en", "de", "fr", "ja"};
constexpr QSize kPage(760, 690);  // of the window as it first opens

QString shownText(QWidget& widget) {
    if (auto* button = qobject_cast<QAbstractButton*>(&widget)) return button->text();
    auto* label = qobject_cast<QLabel*>(&widget);
    return label && label->buddy() ? label->text() : QString();
}

// A letter that two controls of one page answer to reaches neither at the first press.
void checkMnemonics(QWidget& page, const QTabWidget* tabs) {
    std::set<QString> taken;
    auto take = [&](const QString& text) {
        const QString mnemonic = QKeySequence::mnemonic(text).toString();
        if (mnemonic.isEmpty()) return;
        CONTEXT(text.toStdString());
        CHECK(taken.insert(mnemonic).second);
    };
    for (int i = 0; tabs && i < tabs->count(); ++i) take(tabs->tabText(i));
    for (QWidget* widget : page.findChildren<QWidget*>())
        if (widget->window() == page.window() && widget->isVisibleTo(&page)) take(shownText(*widget));
}

struct PaneInterface {
    NotingOwner owner;
    std::unique_ptr<Bundle> bundle = linux::FolderBundle::open(BINARY_DIR "/Typeslate.prefPane");
    std::unique_ptr<qt::Interface> interface;

    explicit PaneInterface(const char* name) {
        useApplication();
        REQUIRE(bundle != nullptr);
        std::string error;
        interface = qt::loadInterface(bundle->resourcePath(name, "ui").value_or(""), *bundle, owner, error);
        REQUIRE(interface != nullptr);
    }
};

}  // namespace

TEST(EveryLanguageFitsThePage) {
    for (const char* language : kLanguages) {
        check::ScopedEnvironment wish("LANGUAGE", language), locale("LC_ALL", "C.UTF-8");
        for (const char* name : {"TSPrefs", "UpdaterView"}) {
            CONTEXT(std::string(language) + " " + name);
            PaneInterface pane(name);
            QWidget& page = *pane.interface->root();
            CHECK_EQ(page.minimumSizeHint().expandedTo(kPage).width(), kPage.width());
            CHECK_EQ(page.minimumSizeHint().expandedTo(kPage).height(), kPage.height());
            auto* tabs = page.findChild<QTabWidget*>();
            for (int i = 0; i < (tabs ? tabs->count() : 1); ++i) {
                if (tabs) tabs->setCurrentIndex(i);
                checkMnemonics(page, tabs);
            }
            for (auto& [outlet, view] : pane.owner.outlets)
                if (view->asPanel()) checkMnemonics(*qt::widgetOf(view), nullptr);
        }
    }
}

TEST(TextsComeInTheLanguageAskedForAndElseInEnglish) {
    auto titles = [](const char* language) {
        check::ScopedEnvironment wish("LANGUAGE", language), locale("LC_ALL", "C.UTF-8");
        PaneInterface pane("TSPrefs");
        auto* tabs = pane.interface->root()->findChild<QTabWidget*>();
        return pane.owner.outlets.at("exRemoveAppButton")->title() + "|" + tabs->tabText(2).remove('&').toStdString() +
               "|" + pane.owner.outlets.at("perAppDupeHandling")->asPopUpButton()->itemTitle(0);
    };
    const std::string english = titles("en");
    CHECK_EQ(english, "Remove|Advanced|Show every copy");
    for (const char* other : {"tlh", "en_GB:de", ""}) CHECK_EQ(titles(other), english);
    CHECK_EQ(titles("tlh:de"), titles("de_AT"));
    CHECK(titles("de") != english && titles("fr") != english && titles("ja") != english);
}
