// The real pane in the windows that hosts give it, on a screen that is not there: what assistive tools and the keyboard
// meet, leaving, and the window's place.
#include "host/PaneWindow.h"
#include "host/kcm/PanePage.h"
#include "host/panehost/WindowPlace.h"
#include "linux/preferences/DiskPreferences.h"
#include "qt/messages/DBusNotificationCenter.h"
#include "tests/qt/QtTest.h"
#include "tests/support/FakePlatform.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QFrame>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QPointer>
#include <QProcess>
#include <QPushButton>
#include <QScreen>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableView>
#include <QTimer>
#include <QToolTip>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <set>

using namespace platform;
using check::ScopedEnvironment;

namespace {

constexpr const char* kBundle = BINARY_DIR "/Typeslate.prefPane";
constexpr const char* kDomain = "com.tarnwick.typeslate";

struct Home {
    Home() {
        namespace fs = std::filesystem;
        fs::create_directories(home / "Library/Plinthworks");
        fs::copy(BINARY_DIR "/Sample.plinth", home / "Library/Plinthworks/Typeslate.plinth",
                 fs::copy_options::recursive);
        for (std::string name : {"Alpha", "Beta"})
            check::writeFile(home / "share/applications/org.test." + name + ".desktop",
                             "[Desktop Entry]\nType=Application\nExec=/bin/true\nName=" + name + "\n");
    }
    check::TemporaryFolder home;
    ScopedEnvironment homeVariable{"HOME", home.path().c_str()}, root{"TYPESLATE_ROOT", (home / "root").c_str()},
        configuration{"XDG_CONFIG_HOME", nullptr}, applications{"XDG_DATA_DIRS", (home / "share").c_str()},
        user{"TYPESLATE_UID", "1000"}, language{"LC_ALL", "C.UTF-8"}, wish{"LANGUAGE", nullptr};
    PrivateBus bus;
    host::HostPlatform platform;
    PropertyList entries() { return platform.preferences().copyValue("TheExcList", kDomain); }
};

template <typename Widget>
Widget& in(QWidget& window, const char* name) {
    auto* found = window.findChild<Widget*>(QLatin1String(name));
    REQUIRE(found != nullptr);
    return *found;
}

struct Opened : Home {
    Opened() {
        platform.preferences().setValue("SUCheckForUpdates", false, kDomain);
        platform.preferences().setValue("Added Default Exclusions", true, kDomain);
        platform.preferences().setValue("Default Exclusions Version", 1000, kDomain);
        REQUIRE(window.load(kBundle).empty());
        window.show();
        window.activateWindow();
        settle();
    }
    QDialog& openSheet(int tab, const char* button) {
        in<QTabWidget>(window, "tabs").setCurrentIndex(tab);
        in<QAbstractButton>(window, button).setFocus();
        in<QAbstractButton>(window, button).click();
        auto* sheet = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        REQUIRE(sheet != nullptr);
        settle();
        return *sheet;
    }
    host::PaneWindow window{platform};
    QWidget page;
};

// A press of the Tab key visits the links of a text one by one.
void checkPage(QWidget& page) {
    std::set<const QWidget*> reached;
    for (int presses = 0; presses < 100 && page.focusWidget(); ++presses) {
        reached.insert(page.focusWidget());
        QTest::keyClick(page.focusWidget(), Qt::Key_Tab);
    }
    for (QWidget* widget : page.findChildren<QWidget*>()) {
        if (widget->window() != &page || !widget->isVisible() || !widget->isEnabled()) continue;
        if (widget->focusProxy() || !(widget->focusPolicy() & Qt::TabFocus)) continue;
        CONTEXT(widget->objectName().toStdString());
        CHECK(reached.contains(widget));
        QAccessibleInterface& seen = *QAccessible::queryAccessibleInterface(widget);
        const auto role = seen.role();
        if (role == QAccessible::StaticText || role == QAccessible::PageTabList) continue;
        CHECK(!seen.text(QAccessible::Name).isEmpty());
        CHECK(role == QAccessible::List || !seen.text(QAccessible::Description).isEmpty());
    }
    CHECK(reached.size() > 1);
}

}  // namespace

TEST(EveryControlHasANameAndADescriptionAndIsReached) {
    Opened pane;
    CHECK(pane.window.focusWidget() == &in<QWidget>(pane.window, "exTableView"));
    CHECK(QAccessible::queryAccessibleInterface(&pane.window)->role() == QAccessible::Window);
    auto& tabs = in<QTabWidget>(pane.window, "tabs");
    for (int i = 0; i < tabs.count(); ++i) {
        CONTEXT(tabs.tabText(i).toStdString());
        tabs.setCurrentIndex(i);
        settle();
        checkPage(pane.window);
    }
    for (auto [tab, button] :
         {std::pair{0, "regexAdd"}, {0, "exAddAppButton"}, {1, "privacyButton"}, {2, "logStuff"}, {2, "aboutButton"}}) {
        CONTEXT(button);
        QDialog& sheet = pane.openSheet(tab, button);
        CHECK(sheet.focusWidget() && !sheet.windowTitle().isEmpty());
        checkPage(sheet);
        QTest::keyClick(&sheet, Qt::Key_Escape);
        settle();
        CHECK(!QApplication::activeModalWidget());
        CHECK(pane.window.focusWidget() == &in<QAbstractButton>(pane.window, button));
    }
}

TEST(TheListIsSearchedAndMendedFromTheKeyboard) {
    Opened pane;
    // Another program's entries: an application that is here, and two that are not.
    const std::string alpha = pane.home / "share/applications/org.test.Alpha.desktop";
    auto addAll = [alpha](MutableDictionary& values) {
        std::vector<PropertyList> list = mutableArray(values["TheExcList"]);
        for (const auto& [name, path] : {std::pair{"Étude", alpha.c_str()}, {"Other", "/o"}, {"Gone", "/g"}})
            list.push_back(
                PropertyList::dictionary({{"Type", "Path"}, {"Name", name}, {"Path", path}, {"Data", path}}));
        values.set("TheExcList", PropertyList::array(list));
    };
    pane.platform.preferences().changeValues(addAll, kDomain);
    CHECK(pane.platform.preferences().synchronize(kDomain));
    auto& table = in<QTableView>(pane.window, "exTableView");
    REQUIRE(waitFor([&] { return table.model()->rowCount() == 4; }));
    auto press = [&](auto key, Qt::KeyboardModifiers with = {}) {
        QTest::keyClick(pane.window.focusWidget(), key, with);
        settle();
    };
    // Every row that is seen, as a screen reader says it.
    auto seen = [&] {
        QStringList rows;
        for (int row = 0; row < table.model()->rowCount(); ++row)
            rows << table.model()->index(row, 1).data(Qt::AccessibleTextRole).toString();
        return rows.join(QLatin1Char('|')).toStdString();
    };
    const std::string missing = "<<Not Found On Computer>>, Off, Not installed";
    const QModelIndex other = table.model()->index(2, 1);
    CHECK_EQ(other.data(Qt::AccessibleDescriptionRole).toString(), QStringLiteral("Path: /o"));
    CHECK(other.data(Qt::ToolTipRole).toString().endsWith(QStringLiteral("\nPath: /o")));
    for (char letter : std::string("/etude")) press(letter);
    CHECK_EQ(seen(), "Étude, " + alpha + ", Off");
    press(Qt::Key_Escape);
    press('f', Qt::ControlModifier);
    for (char letter : std::string("E")) press(letter);
    CHECK_EQ(seen(), "Étude, " + alpha + ", Off|Other, " + missing + "|Gone, " + missing);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    CHECK(table.hasFocus());
    press(Qt::Key_Delete);
    CHECK_EQ(seen(), "Étude, " + alpha + ", Off|Gone, " + missing);
    CHECK_EQ(pane.entries().size(), 3U);
    press('z', Qt::ControlModifier);
    CHECK_EQ(pane.entries()[2]["Name"].stringValue(), "Other");
    press('z', Qt::ControlModifier | Qt::ShiftModifier);
    in<QAbstractButton>(pane.window, "messageClose");
    press('z', Qt::ControlModifier);
    CHECK_EQ(pane.entries().size(), 4U);

    // An option that differs is marked, says so, and has a menu of its own.
    auto& box = in<QCheckBox>(pane.window, "perAppEnabled");
    auto& mark = in<QWidget>(pane.window, "perAppEnabledDifference");
    CHECK(mark.isVisible() && box.accessibleDescription().endsWith(QStringLiteral("there it is on")));
    QContextMenuEvent asked(QContextMenuEvent::Keyboard, {}, box.mapToGlobal(QPoint()));
    QCoreApplication::sendEvent(&box, &asked);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    REQUIRE(menu && menu->actions().size() == 1);
    menu->actions().first()->trigger();
    menu->close();
    settle();
    CHECK(box.isChecked() && !box.accessibleDescription().contains(QStringLiteral("there")));
    press('c', Qt::ControlModifier);
    in<QLineEdit>(pane.window, "listSearch").clear();
    settle();
    table.setFocus();
    press(Qt::Key_End);
    press('v', Qt::ControlModifier);
    CHECK(pane.entries()[3]["Settings"]["Enabled"].boolValue());
}

TEST(TheWindowItsTitleAndItsSheetsGrowWithTheText) {
    Opened pane;
    auto& sheet = in<QDialog>(pane.window, "regexPanelWindow");
    auto& title = in<QWidget>(pane.window, "titleField");
    const QFont own = QApplication::font();
    auto sizes = [&] {
        return std::array{pane.window.height(), sheet.width(), in<QWidget>(sheet, "regex").x(),
                          title.font().pointSize()};
    };
    const auto before = sizes();
    QFont larger = own;
    larger.setPointSizeF(own.pointSizeF() * 1.5);
    QApplication::setFont(larger);
    settle();
    for (std::size_t i = 0; i < before.size(); ++i) {
        CONTEXT(std::to_string(i));
        CHECK(sizes()[i] > before[i] * (i ? 1.35 : 1.02) && sizes()[i] < before[i] * 1.65);
    }
    QApplication::setFont(own);
    settle();
    CHECK(sizes() != before && std::abs(sizes()[1] - before[1]) < 3);
}

struct Choosing : Opened {
    Choosing() {
        const std::pair<const char*, const char*> more[] = {{"cards", "Name=Cards\nKeywords=bet;"},
                                                            {"edit", "Name=Éditeur\nGenericName=Text Editor"},
                                                            {"last", "Name=Alphabet"},
                                                            {"my", "Name=My Bet"},
                                                            {"twin.A", "Name=Twin\nGenericName=Painter"},
                                                            {"twin.B", "Name=Twin\nGenericName=Painter"},
                                                            {"ping", "Name=Tool\nGenericName=Pinger"},
                                                            {"pong", "Name=Tool\nGenericName=Ponger"}};
        for (const auto& [name, keys] : more)
            check::writeFile(home / "share/applications/org.test." + name + ".desktop",
                             std::string("[Desktop Entry]\nType=Application\nExec=/bin/true\n") + keys);
        choose();
    }
    void choose() {
        chooser = &openSheet(0, "exAddAppButton");
        search = &in<QLineEdit>(*chooser, "applicationSearch");
        list = &in<QListView>(*chooser, "applicationList");
        add = &in<QPushButton>(*chooser, "applicationAdd");
    }
    void type(const QString& text) {
        search->setFocus();
        search->setText(text);
    }
    void press(int key) { QTest::keyClick(chooser->focusWidget(), Qt::Key(key)); }
    QModelIndex row(int i) { return list->model()->index(i, 0); }
    std::string shown(int role = Qt::DisplayRole, bool isOnlySelected = false) {
        QStringList texts;
        for (int i = 0; i < list->model()->rowCount(); ++i)
            if (!isOnlySelected || list->selectionModel()->isSelected(row(i))) texts << row(i).data(role).toString();
        return texts.join(QStringLiteral(", ")).toStdString();
    }
    std::string label(const char* name) { return in<QLabel>(*chooser, name).text().toStdString(); }
    QPointer<QDialog> chooser;
    QLineEdit* search = nullptr;
    QListView* list = nullptr;
    QPushButton* add = nullptr;
};

TEST(TheChooserFindsEveryWordSomewhereAndNamesFirst) {
    Choosing pane;
    CHECK(!pane.add->isEnabled());
    CHECK_EQ(pane.label("applicationState"), "10 found");
    for (const auto& [text, found] : {std::pair{"bet", "Beta, My Bet, Alphabet, Cards"},
                                      {"BET m", "My Bet"},
                                      {"édit", "Éditeur"},
                                      {"editor editeur", "Éditeur"},
                                      {"editor beta", ""},
                                      {"ORG.test.my", "My Bet"},
                                      {"bet alpha", "Alphabet"},
                                      {" ", "Alpha, Alphabet, Beta, Cards, My Bet, Tool, Tool, Twin, Twin, Éditeur"}}) {
        CONTEXT(text);
        pane.type(QString::fromUtf8(text));
        CHECK_EQ(pane.shown(), found);
        const bool isEmpty = pane.list->model()->rowCount() == 0;
        auto& why = in<QLabel>(*pane.list, "applicationsEmpty");
        CHECK(why.isVisible() == isEmpty && (!isEmpty || why.text().startsWith(QStringLiteral("No application"))));
        CHECK_EQ(pane.list->accessibleDescription() == why.text(), isEmpty);
        CHECK_EQ(pane.add->isEnabled(), !isEmpty && text[0] != ' ');
    }
    pane.type(QStringLiteral("t"));
    constexpr int kSecondLine = Qt::UserRole;
    CHECK_EQ(pane.shown(kSecondLine), "Pinger, Ponger, org.test.twin.A, org.test.twin.B, , , , Text Editor, , ");
    CHECK(pane.row(2).data(Qt::ToolTipRole).toString().startsWith(QStringLiteral("Painter\norg.test.twin.A\n/")));
}

TEST(TheChooserShowsWhatRunsByItself) {
    Choosing pane;
    pane.press(Qt::Key_Escape);
    settle();
    QProcess program;
    program.start(QStringLiteral("/bin/sleep"), {QStringLiteral("60")});
    REQUIRE(program.waitForStarted());
    check::writeFile(pane.home / "share/applications/sleep.desktop",
                     "[Desktop Entry]\nType=Application\nExec=/bin/sleep 1\nName=Sleeper\n");
    pane.choose();
    pane.type(QStringLiteral("alpha"));
    in<QCheckBox>(*pane.chooser, "applicationRunning").click();
    CHECK_EQ(pane.shown(), "");
    pane.search->clear();
    // Others may run here, too.
    CHECK(pane.shown().find("Sleeper") != std::string::npos && pane.shown().find("Alpha") == std::string::npos);
    pane.press(Qt::Key_Escape);
    program.kill();
    program.waitForFinished();
}

TEST(TheChooserKeepsWhatIsSelectedAndMarksWhatIsListed) {
    Choosing pane;
    pane.type(QStringLiteral("bet"));
    CHECK_EQ(pane.shown(Qt::DisplayRole, true), "Beta");
    // Passed only: gone with the search.
    pane.press(Qt::Key_Down);
    CHECK(pane.chooser->focusWidget() == pane.list);
    CHECK_EQ(pane.shown(Qt::DisplayRole, true), "My Bet");
    pane.press(Qt::Key_Backspace);
    CHECK(pane.chooser->focusWidget() == pane.search && pane.search->text() == QStringLiteral("be"));
    CHECK_EQ(pane.label("applicationState"), "1 selected: Beta");
    pane.press(Qt::Key_Down);
    pane.press(Qt::Key_Space);
    pane.press(Qt::Key_Up);
    CHECK_EQ(pane.shown(Qt::DisplayRole, true), "Beta, My Bet");
    pane.press(Qt::Key_Up);
    for (bool isAgain : {false, true}) {
        pane.type(QStringLiteral("cards"));
        CHECK_EQ(pane.shown(Qt::DisplayRole, true), "Cards");
        CHECK_EQ(pane.add->text(), QStringLiteral("Add 2"));
        CHECK_EQ(pane.label("applicationState"), "2 selected: Cards, My Bet");
        if (isAgain) break;
        in<QPushButton>(*pane.chooser, "applicationNone").click();
        CHECK(!pane.add->isEnabled() && pane.chooser->focusWidget() == pane.search);
        pane.type(QStringLiteral("my"));
        pane.press(Qt::Key_PageDown);
        pane.press(Qt::Key_Space);
    }
    pane.press(Qt::Key_Return);
    settle();
    REQUIRE(!pane.chooser && pane.entries().size() == 3);
    CHECK_EQ(pane.entries().elements()[2]["Data"], PropertyList("org.test.my"));
    auto said = [&] {
        auto& line = in<QFrame>(pane.window, "messageLine");
        return QAccessible::queryAccessibleInterface(&line)->text(QAccessible::Name).toStdString();
    };
    CHECK_EQ(said(), "Added: Cards, My Bet.");

    pane.choose();
    pane.type(QStringLiteral("cards"));
    QAccessibleInterface& seen = *QAccessible::queryAccessibleInterface(pane.list)->child(0);
    CHECK_EQ(seen.text(QAccessible::Name), QStringLiteral("Cards, in the list"));
    CHECK(seen.text(QAccessible::Description).contains(QStringLiteral("is in the list already")));
    pane.press(Qt::Key_Down);
    pane.press(Qt::Key_Space);
    CHECK(!pane.add->isEnabled() && pane.list->currentIndex().isValid());
    Q_EMIT pane.list->doubleClicked(pane.row(0));
    CHECK(pane.chooser && pane.chooser->isVisible());
    pane.type(QStringLiteral("be"));
    pane.list->selectAll();
    CHECK_EQ(pane.shown(Qt::DisplayRole, true), "Beta, Alphabet");
    pane.press(Qt::Key_Return);
    settle();
    CHECK_EQ(pane.entries().size(), std::size_t{5});
    CHECK_EQ(said(), "Added: Alphabet, Beta.");
    QTest::keyClick(&in<QTableView>(pane.window, "exTableView"), Qt::Key_Delete);
    CHECK_EQ(pane.entries().size(), std::size_t{4});
}

TEST(AnEmptyFieldOfAnExpressionIsMarkedUntilSomethingIsTyped) {
    Opened pane;
    QDialog& sheet = pane.openSheet(0, "regexAdd");
    for (auto [name, problem] :
         {std::pair{"regexName", "Please fill in the name"}, {"regex", "Please fill in the expression"}}) {
        auto& field = in<QLineEdit>(sheet, name);
        QAccessibleInterface& seen = *QAccessible::queryAccessibleInterface(&field);
        const QString designed = seen.text(QAccessible::Description);
        auto isMarked = [&] {
            auto* frame = field.findChild<QWidget*>(QStringLiteral("fieldProblem"));
            const bool hasSign = !field.actions().isEmpty() && field.actions()[0]->toolTip() == QLatin1String(problem);
            CHECK(hasSign == (frame && frame->isVisible() && frame->size() == field.size()));
            return hasSign && seen.text(QAccessible::Description) == QLatin1String(problem);
        };
        field.clear();
        for (int presses = 0; presses < 2; ++presses) {
            in<QPushButton>(sheet, "regexSheetOK").setFocus();
            QTest::keyClick(sheet.focusWidget(), Qt::Key_Return);
            CHECK(sheet.isVisible() && sheet.focusWidget() == &field && isMarked() && field.actions().size() == 1);
        }
        QTest::keyClick(&field, Qt::Key_X);
        const QString line = in<QLabel>(sheet, "regexMatches").text();
        const bool isExpression = name == std::string_view("regex");
        CHECK(!isMarked() && seen.text(QAccessible::Description) == (isExpression ? line : designed));
    }
    QTest::keyClick(sheet.focusWidget(), Qt::Key_Return);
    settle();
    CHECK(!QApplication::activeModalWidget());
    CHECK_EQ(pane.entries().elements().back()["Name"], PropertyList("x"));
}

TEST(TheSheetSaysAtEachKeystrokeWhatIsMatched) {
    Opened pane;
    QDialog& sheet = pane.openSheet(0, "regexAdd");
    auto& line = in<QLabel>(sheet, "regexMatches");
    auto& field = in<QLineEdit>(sheet, "regex");
    const QAccessibleInterface& seen = *QAccessible::queryAccessibleInterface(&field);
    const QString designed = seen.text(QAccessible::Description);
    QTest::keyClick(sheet.focusWidget(), Qt::Key_E, Qt::AltModifier);
    REQUIRE(field.hasFocus());
    for (const auto& [key, said] :
         {std::pair{"(", "Not an expression, at character 2: missing closing parenthesis. It would match nothing."},
          {"l", "Not an expression, at character 3: missing closing parenthesis. It would match nothing."},
          {"|", "Not an expression, at character 4: missing closing parenthesis. It would match nothing."},
          {"B", "Not an expression, at character 5: missing closing parenthesis. It would match nothing."},
          {")", "Matches 2 of 2 applications: Alpha, Beta"},
          {"e", "Matches 1 of 2 applications: Beta"}}) {
        CONTEXT(key);
        QTest::keyClicks(&field, QLatin1String(key));
        CHECK_EQ(line.text().remove(QChar(0x200B)).toStdString(), said);
        CHECK_EQ(seen.text(QAccessible::Description).toStdString(), said);
    }
    QTest::keyClick(&in<QWidget>(sheet, "regexType"), Qt::Key_Down);
    CHECK_EQ(line.text(), QStringLiteral("Matches 1 of 2 applications: Beta"));
    CHECK_EQ(line.toolTip(), QStringLiteral("Beta (org.test.Beta)"));
    // The line has its place between the field and the help below it, which keeps its distance.
    auto& help = in<QLabel>(sheet, "regexText");
    CHECK(line.y() >= field.geometry().bottom() && line.heightForWidth(line.width()) <= line.height());
    CHECK_EQ(help.y(), field.geometry().bottom() + 1 + 20);
    CHECK(help.y() + help.contentsMargins().top() >= line.geometry().bottom());
    field.clear();
    CHECK(line.text().isEmpty() && seen.text(QAccessible::Description) == designed);
}

TEST(ElsewhereOnTheDiskPackagesAreChosenWhole) {
    Opened pane;
    const std::string folder = pane.home / "share/applications/";  // where it starts
    for (std::string name : {"One", "Two", "Three"}) {
        check::writeFile(folder + name + ".app/Contents/Info.plist",
                         "<plist><dict><key>CFBundleIdentifier</key><string>" + name +
                             "</string><key>CFBundleExecutable</key><string>run</string></dict></plist>");
        std::filesystem::create_directory(folder + name + ".app/Contents/Linux");
        std::filesystem::create_symlink("/bin/true", folder + name + ".app/Contents/Linux/run");
    }
    for (const char* name : {"Two.app/inside.desktop", "None.app/inside.desktop"})
        check::writeFile(folder + name, "[Desktop Entry]\nType=Application\nExec=/bin/true\nName=I\n");
    const std::pair<std::vector<std::string>, const char*> ways[] = {
        {{"One.app"}, "One"},
        {{"Two.app/inside.desktop"}, "Two.app-inside"},
        {{"Two.app/Contents/Linux"}, "Two"},
        {{"None.app", "inside.desktop"}, "None.app-inside"},  // a folder as any other
        {{"(selected)"}, "Three"},
        {{"(double click)"}, "Three"}};
    for (const auto& [done, data] : ways) {
        CONTEXT(done[0]);
        pane.platform.preferences().setValue("TheExcList", PropertyList::array({}), kDomain);
        QDialog& chooser = pane.openSheet(0, "exAddAppButton");
        in<QPushButton>(chooser, "applicationOther").click();
        auto& files = in<QFileDialog>(chooser, "anywhereChooser");
        auto& list = in<QListView>(files, "listView");
        QModelIndexList row;
        REQUIRE(waitFor([&] {
            row = list.model()->match(list.model()->index(0, 0, list.rootIndex()), 0, QStringLiteral("Three.app"));
            return !row.isEmpty();
        }));
        for (const std::string& step : done) {
            if (step == "(double click)") {
                Q_EMIT list.activated(row[0]);
            } else if (step == "(selected)") {
                list.selectionModel()->select(row[0], QItemSelectionModel::Select | QItemSelectionModel::Rows);
                in<QDialogButtonBox>(files, "buttonBox").button(QDialogButtonBox::Open)->click();
            } else {
                in<QLineEdit>(files, "fileNameEdit").setText(QString::fromStdString(step));
                QTest::keyClick(&in<QLineEdit>(files, "fileNameEdit"), Qt::Key_Return);
            }
        }
        REQUIRE(waitFor([] { return !QApplication::activeModalWidget(); }));
        CHECK_EQ(pane.entries().elements().back()["Data"], PropertyList(data));
    }
}

TEST(LeavingGivesTheIconBackAndTakesAHalfTypedNumber) {
    QApplication::setWindowIcon(QIcon(QPixmap(16, 16)));
    const qint64 icon = QApplication::windowIcon().cacheKey();
    Opened pane;
    CHECK(waitFor([icon] { return QApplication::windowIcon().cacheKey() != icon; }));
    // Not before its sheet has ended, and by itself then.
    QDialog& sheet = pane.openSheet(2, "aboutButton");
    pane.window.close();
    CHECK(pane.window.isVisible());
    QTest::keyClick(&sheet, Qt::Key_Escape);
    CHECK(waitFor([&] { return !pane.window.isVisible(); }));
    CHECK_EQ(QApplication::windowIcon().cacheKey(), icon);
    { host::HostPlatform().preferences().setValue("k", 1, "d"); }  // written at the end of its host
    CHECK_EQ(pane.platform.preferences().copyValue("k", "d"), PropertyList(1));

    host::LoadedPane page(pane.platform, pane.window, pane.page);
    REQUIRE(page.load(kBundle).empty());
    pane.page.show();
    pane.page.activateWindow();
    page.select();
    auto& size = in<QSpinBox>(pane.page, "perAppFontSize");
    if (!size.isEnabled()) in<QCheckBox>(pane.page, "perAppShowSize").click();
    size.setFocus();
    size.selectAll();
    QTest::keyClicks(&size, QStringLiteral("19"));
    CHECK(page.askToLeave() == UnselectReply::Now);
    CHECK_EQ(pane.entries().elements()[0]["Settings"]["FontSize"], PropertyList(19));
}

TEST(APageThatIsTakenAwayWaitsBehindItsSheet) {
    Home home;
    QWidget application;
    QApplication::setWindowIcon({});
    QPointer<kcm::PanePage> page = new kcm::PanePage;
    REQUIRE(page->load(kBundle).empty());
    page->setParent(&application);
    application.show();
    QTimer::singleShot(0, [&] {
        in<QPushButton>(*page, "regexAdd").click();
        QWidget* sheet = QApplication::activeModalWidget();
        page->retire();
        CHECK(page && !page->isVisible() && sheet && sheet->isVisible());
        QTest::keyClick(sheet, Qt::Key_Escape);
        CHECK(waitFor([&] { return !page; }));
        QCoreApplication::quit();
    });
    QApplication::exec();
    CHECK(QApplication::windowIcon().isNull());
}

TEST(WhatOthersTellOfIsShownAndAStormOfItCostsLittle) {
    Opened opened;
    auto& table = in<QTableView>(opened.window, "exTableView");
    int before = table.model()->rowCount(), looks = 0;
    check::RecordingLog log;
    linux::DiskPreferences others(opened.home / ".config/preferences", log);
    auto addEntry = [](MutableDictionary& values) {
        auto list = mutableArray(values["TheExcList"]);
        list.push_back(PropertyList::dictionary({{"Type", "RegEx"}, {"Name", "Wine"}, {"Data", "^wine"}}));
        values.set("TheExcList", PropertyList::array(std::move(list)));
    };
    others.changeValues(addEntry, kDomain);
    REQUIRE(others.synchronize(kDomain));
    qt::DBusNotificationCenter center(log);
    bool isOver = false;
    auto end = center.addObserver(kDomain, "end", Delivery::Each, [&](const Notification&) { isOver = true; });
    auto counting = opened.platform.preferences().observe([&](const PreferenceReport&) { ++looks; });
    constexpr int kStorm = 1000;
    for (int i = 0; i < kStorm; ++i) center.post(kDomain, "PrefsChanged", {}, true);
    center.post(kDomain, "end", {}, true);
    REQUIRE(waitFor([&] { return isOver && table.model()->rowCount() == before + 1; }));
    CHECK(looks > 0 && looks < kStorm / 5);
    CHECK_EQ(table.selectionModel()->selectedRows().value(0).row(), 0);
}

TEST(NoToolTipIsTakenForMarkup) {
    const QString foreign = QStringLiteral("<h1>name</h1> <img src=\"/a/pipe\">");
    Opened opened;
    opened.platform.preferences().changeValues(
        [&](MutableDictionary& values) {
            auto entry = PropertyList::dictionary({{"Type", "Global"}, {"Name", foreign.toStdString()}});
            values.set("TheExcList", PropertyList::array({entry}));
        },
        kDomain);
    opened.openSheet(0, "exAddAppButton");
    int shown = 0;
    for (QWidget* window : QApplication::topLevelWidgets())
        for (QWidget* widget : window->findChildren<QWidget*>()) {
            CONTEXT(widget->objectName().toStdString());
            if (!widget->toolTip().isEmpty()) widget->setToolTip(foreign);
            const QPoint place = widget->rect().topLeft() + QPoint(60, 5);
            QHelpEvent help(QEvent::ToolTip, place, widget->mapToGlobal(place));
            QCoreApplication::sendEvent(widget, &help);
            if (!QToolTip::isVisible()) continue;
            CHECK(!QToolTip::text().contains(QStringLiteral("<img")));
            shown += QToolTip::text().contains(QStringLiteral("&lt;img"));
            QToolTip::hideText();
        }
    CHECK(shown > 20);
    auto& button = in<QPushButton>(opened.window, "exAddAppButton");
    for (const QString& large : {QString(3000, QLatin1Char('W')), QStringLiteral("line\n").repeated(60)}) {
        button.setToolTip(large);
        QHelpEvent help(QEvent::ToolTip, {}, {});
        QCoreApplication::sendEvent(&button, &help);
        for (QWidget* tip : QApplication::topLevelWidgets())
            if (tip->inherits("QTipLabel") && tip->isVisible()) CHECK(tip->width() < 1200 && tip->height() < 600);
    }
}

TEST(WhatIsNotSavedIsSaidBelowThePaneUntilItIs) {
    Home home;
    const std::string folder = home.home / ".config/preferences",
                      lockFile = folder + "/.com.tarnwick.typeslate.plist.lock";
    REQUIRE(check::writeFile(lockFile, {}));
    const int lock = open(lockFile.c_str(), O_RDWR | O_CLOEXEC);
    REQUIRE(flock(lock, LOCK_EX) == 0);
    host::PaneWindow window(home.platform);
    home.platform.preferences().setValue("early", 1, "others");
    QElapsedTimer opening;
    opening.start();
    REQUIRE(window.load(kBundle).empty());
    CHECK(opening.elapsed() < linux::DiskPreferences::kPatience.count() / 2);
    host::WindowPlace place(window, home.platform.preferences(), "d", "k");
    auto& line = in<QFrame>(window, "messageLine");
    const QSize before = window.size();
    window.show();
    settle();
    const QSize own = window.size() - QSize(0, line.height());
    CHECK(line.isVisible() && own.width() == before.width() && own.height() >= before.height());
    QAccessibleInterface& alert = *QAccessible::queryAccessibleInterface(&line);
    CHECK(alert.role() == QAccessible::AlertMessage);
    CHECK(alert.text(QAccessible::Name).endsWith(QStringLiteral("keeps the file locked.")));
    checkPage(window);
    close(lock);
    REQUIRE(waitFor([&] { return line.isHidden(); }));
    CHECK(window.size() == own);
    const int least = window.minimumSizeHint().width();
    check::RecordingLog log;
    linux::DiskPreferences others(folder, log);
    CHECK(others.copyValue("TheExcList", kDomain).size() > 0 && others.copyValue("early", "others"));

    auto removeLongName = [&] { window.entryWasRemoved(std::string(5000, 'W')); };
    removeLongName();
    CHECK(window.minimumSizeHint().width() == least && window.width() == own.width());
    CHECK(window.height() > own.height() && line.height() < 6 * line.fontMetrics().height());
    in<QAbstractButton>(window, "messageClose").setFocus();
    QTest::keyClick(window.focusWidget(), Qt::Key_Space);
    CHECK(line.isHidden() && window.focusWidget()->isVisible());
    removeLongName();
    in<QCheckBox>(window, "perAppEnabled").click();
    CHECK(!in<QLabel>(window, "messageText").text().contains(QStringLiteral("WWW")));

    others.setValue("theirs", 1, kDomain);
    CHECK(others.synchronize(kDomain));
    for (bool wasElsewhere : {false, true}) {  // and not only in a sheet of the window
        if (wasElsewhere) Q_EMIT qApp->applicationStateChanged(Qt::ApplicationInactive);
        QEvent activation(QEvent::WindowActivate);
        QCoreApplication::sendEvent(&window, &activation);
        CHECK_EQ(home.platform.preferences().copyValue("theirs", kDomain).integerValue(), wasElsewhere ? 1 : 0);
    }
    removeLongName();
    window.close();
    QWidget next;
    host::WindowPlace(next, home.platform.preferences(), "d", "k");
    CHECK(next.size() == own);
}

TEST(WithoutTheModuleTheWindowSaysWhatWorksUntilThatIsClosed) {
    Home home;
    std::filesystem::remove_all(home.home / "Library");
    for (bool isSaid : {true, false}) {
        host::PaneWindow window(home.platform);
        REQUIRE(window.load(kBundle).empty());
        const int before = window.height();
        window.show();
        auto& line = in<QFrame>(window, "messageLine");
        CHECK(line.isHidden() == !isSaid && !in<QCheckBox>(window, "enabledCheckbox").isEnabled());
        const int shown = window.height();
        CHECK(!isSaid || shown > before);
        settle();
        CHECK_EQ(window.height(), shown);
        if (!isSaid) break;
        checkPage(window);
        in<QPushButton>(window, "messageButton").click();
        const QWidgetList windows = QApplication::topLevelWidgets();
        auto shows = [&](QWidget* other) { return other != &window && other->isVisible() && other->isWindow(); };
        CHECK(std::ranges::any_of(windows, shows));
        for (QWidget* other : windows)
            if (shows(other)) other->close();
        in<QAbstractButton>(window, "messageClose").click();
        CHECK(line.isHidden());
        window.close();
    }
}

TEST(AWindowKeepsItsPlaceOnTheScreenThatThereIs) {
    useApplication();
    fake::World world;
    std::vector<std::unique_ptr<host::WindowPlace>> places;  // outlive their windows
    auto opened = [&](QSize size) {
        auto window = std::make_unique<QWidget>();
        window->resize(size);
        places.push_back(std::make_unique<host::WindowPlace>(*window, world.preferences, "d", "k"));
        return window;
    };
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    CHECK_EQ(opened({5000, 100})->width(), screen.width());
    auto first = opened({300, 200});
    first->show();
    first->setGeometry(70, 90, 350, 250);
    first->close();
    CHECK(opened({300, 200})->geometry() == QRect(70, 90, 350, 250));
    CHECK_EQ(world.takeJournal(), fake::Journal{"set k", "synchronize"});
}
