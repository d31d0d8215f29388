// The pane's own interface files in every language: whatever the texts, the page keeps its size and its letters.
#include "tests/qt/QtTest.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QKeySequence>
#include <QLabel>
#include <QTabWidget>

#include <set>

using namespace platform;

namespace {

constexpr QSize kPage(760, 690);  // of the window as it first opens

// A text that is shown and for which there is another one in this language was forgotten.
void checkIsTranslated(QWidget& page, const Bundle& texts) {
    QStringList shown;
    for (QWidget* widget : page.findChildren<QWidget*>()) {
        for (const char* property : {"text", "title", "toolTip", "accessibleName", "placeholderText"})
            shown += widget->property(property).toString();
        if (auto* menu = qobject_cast<QComboBox*>(widget))
            for (int i = 0; i < menu->count(); ++i) shown += menu->itemText(i);
        shown += widget->property("columnTitles").toStringList();
        if (auto* tabs = qobject_cast<QTabWidget*>(widget))
            for (int i = 0; i < tabs->count(); ++i) shown += tabs->tabText(i);
    }
    CHECK(shown.size() > 20);
    for (const QString& text : shown) CHECK_EQ(texts.localizedString(text.toStdString()), text.toStdString());
}

// A letter that two controls of one page answer to reaches neither at the first press.
void checkMnemonics(QWidget& page, const QTabWidget* tabs) {
    QStringList texts;
    for (int i = 0; tabs && i < tabs->count(); ++i) texts << tabs->tabText(i);
    for (QWidget* widget : page.findChildren<QWidget*>()) {
        auto* label = qobject_cast<QLabel*>(widget);
        if (widget->window() != page.window() || !widget->isVisibleTo(&page)) continue;
        if (auto* button = qobject_cast<QAbstractButton*>(widget)) texts << button->text();
        if (label && label->buddy()) texts << label->text();
    }
    std::set<QString> taken;
    for (const QString& text : texts) {
        CONTEXT(text.toStdString());
        const QString mnemonic = QKeySequence::mnemonic(text).toString();
        CHECK(mnemonic.isEmpty() || taken.insert(mnemonic).second);
    }
}

}  // namespace

TEST(EveryLanguageIsShownAndFitsThePage) {
    check::ScopedEnvironment locale("LC_ALL", "C.UTF-8");
    std::set<std::string> titles;
    for (const char* language : {"en", "de", "fr", "ja"})
        for (const char* name : {"TSPrefs", "MenuPreview", "UpdaterView"}) {
            CONTEXT(std::string(language) + " " + name);
            check::ScopedEnvironment wish("LANGUAGE", language);
            SampleInterface pane(BINARY_DIR "/Typeslate.prefPane", name);
            QWidget& page = *pane.interface->root();
            CHECK(page.minimumSizeHint().expandedTo(kPage) == kPage);
            checkIsTranslated(page, *pane.bundle);
            auto* tabs = page.findChild<QTabWidget*>();
            for (int i = 0; i < (tabs ? tabs->count() : 1); ++i) {
                if (tabs) tabs->setCurrentIndex(i);
                checkMnemonics(page, tabs);
            }
            for (auto& [outlet, view] : pane.owner.outlets)
                if (view->asPanel()) checkMnemonics(*qt::widgetOf(view), nullptr);
            if (tabs) titles.insert(pane.owner.outlets.at("exRemoveAppButton")->title());
        }
    CHECK(titles.size() == 4 && titles.contains("Remove"));
}
