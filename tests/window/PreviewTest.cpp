// The drawer with the preview: what each option changes in it, and what it remembers.
#include "host/PaneWindow.h"
#include "tests/qt/QtTest.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QSplitter>
#include <QTreeView>

#include <filesystem>

using namespace platform;
using check::ScopedEnvironment;

namespace {

constexpr const char* kDomain = "com.tarnwick.typeslate";
const std::string kFonts = "/usr/share/fonts/truetype/dejavu/";

// A font with another family's name, in both encodings of a font's names.
std::string ofAnotherFamily(std::string font) {
    using namespace std::string_literals;
    for (const std::string& name : {"Serif"s, "S\0e\0r\0i\0f"s})
        for (auto at = font.find(name); at != std::string::npos; at = font.find(name, at)) font[at] = 'A';
    return font;
}

// A machine with a few fonts, one of them twice, one of them not active, and with one set.
struct Preview {
    Preview() {
        namespace fs = std::filesystem;
        useApplication();
        QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 10));
        for (const char* name : {"DejaVuSans", "DejaVuSans-Bold", "DejaVuSansMono", "DejaVuSerif"})
            check::writeFile(home / ("fonts/" + std::string(name) + ".ttf"), check::readFile(kFonts + name + ".ttf"));
        check::writeFile(home / "fonts/again/Mono.ttf", check::readFile(kFonts + "DejaVuSansMono.ttf"));
        check::writeFile(home / "fonts/hebrew.bdf", check::readFile(TEST_DATA "/hebrew.bdf"));
        check::writeFile(home / "fonts/inactive.ttf",
                         ofAnotherFamily(check::readFile(kFonts + "DejaVuSerif-Bold.ttf")));
        check::writeFile(home / "fonts.conf", "<fontconfig><dir>" + home / "fonts" + "</dir><cachedir>" +
                                                  home / "cache" + "</cachedir><selectfont><rejectfont><glob>" +
                                                  home / "fonts/inactive.ttf" +
                                                  "</glob></rejectfont></selectfont></fontconfig>");
        check::writeFile(home / ".config/font-manager/Collections.json",
                         R"([{"name": "My Set", "families": ["DejaVu Serif", "DejaVu Aerif"]}])");
        fs::create_directories(home / "Library/Plinthworks");
        fs::copy(BINARY_DIR "/Sample.plinth", home / "Library/Plinthworks/Typeslate.plinth",
                 fs::copy_options::recursive);
        platform.preferences().setValue("Added Default Exclusions", true, kDomain);
        platform.preferences().setValue("Default Exclusions Version", 1000, kDomain);
        platform.preferences().setValue("SUCheckForUpdates", false, kDomain);
        setOptions({{"FontSize", 30}});
        open();
    }
    // On and off as they are given; all others are off.
    void setOptions(std::vector<std::pair<std::string, PropertyList>> given) {
        MutableDictionary settings;
        for (const char* key : {"Enabled", "CheckMenuItems", "ShowFontInFace", "ShowSets", "ChangeSize", "ShowIcons",
                                "HierarchicalMenu", "AllFontsGroup", "ScriptSort", "DupeHandling", "ModifyFontPanel",
                                "IncludeFAPSets", "IncludeFEXSets", "IncludeSuitcaseSets", "GenerateInactivePreview"})
            settings.set(key, std::string_view(key) == "Enabled" ? 1 : 0);
        for (const auto& [key, value] : given) settings.set(key, value);
        platform.preferences().setValue(
            "TheExcList",
            PropertyList::array({PropertyList::dictionary({{"Type", "Global"},
                                                           {"Name", "Global"},
                                                           {"Change", ++changes},
                                                           {"Settings", std::move(settings).freeze()}})}),
            kDomain);
        CHECK(platform.preferences().synchronize(kDomain));
        if (!window || !isOpen()) return;
        const bool shows = menu().model()->rowCount() > 0;
        bool isShown = false;
        QObject context;
        QObject::connect(menu().model(), &QAbstractItemModel::modelReset, &context, [&] { isShown = true; });
        CHECK(waitFor([&] { return !shows || isShown; }));
        settle();
    }
    void open() {
        window = std::make_unique<host::PaneWindow>(platform);
        platform.setWindow(window.get());
        REQUIRE(window->load(BINARY_DIR "/Typeslate.prefPane").empty());
        window->show();
        settle();
    }
    template <typename Widget = QWidget>
    Widget& in(const char* name) {
        auto* found = window->findChild<Widget*>(QLatin1String(name));
        REQUIRE(found != nullptr);
        return *found;
    }
    bool isOpen() {
        auto* drawer = window->findChild<QWidget*>(QStringLiteral("previewDrawer"));
        return drawer && drawer->isVisible();
    }
    QTreeView& menu() { return in<QTreeView>("previewMenu"); }
    std::string counts() { return in<QLabel>("previewCounts").text().toStdString(); }
    // Every line, as a screen reader says it.
    std::string lines(const QModelIndex& parent = {}, const std::string& indent = "") {
        std::string text;
        const QAbstractItemModel& model = *menu().model();
        for (int row = 0; row < model.rowCount(parent); ++row) {
            const QModelIndex index = model.index(row, 0, parent);
            text += indent + index.data(Qt::AccessibleTextRole).toString().toStdString() + "\n";
            text += lines(index, indent + "  ");
        }
        return text;
    }
    // Of the upper rows, which are in sight however high the drawer is.
    QImage picture() {
        settle();
        return menu().viewport()->grab(QRect(0, 0, menu().viewport()->width(), 110)).toImage();
    }
    void showDrawer() {
        in<QPushButton>("previewButton").click();
        REQUIRE(waitFor([&] { return menu().model()->rowCount() > 0; }));
    }

    check::TemporaryFolder home;
    ScopedEnvironment homeVariable{"HOME", home.path().c_str()}, root{"TYPESLATE_ROOT", (home / "root").c_str()},
        configuration{"XDG_CONFIG_HOME", nullptr}, applications{"XDG_DATA_DIRS", (home / "share").c_str()},
        user{"TYPESLATE_UID", "1000"}, language{"LC_ALL", "C.UTF-8"}, wish{"LANGUAGE", nullptr},
        fonts{"FONTCONFIG_FILE", (home / "fonts.conf").c_str()};
    PrivateBus bus;
    host::HostPlatform platform;
    std::unique_ptr<host::PaneWindow> window;
    int changes = 0;
};

// Changes the control as a user does, or does not, where it cannot be used.
void change(QWidget& control, int value) {
    if (!control.isEnabled()) return;
    if (auto* box = qobject_cast<QAbstractButton*>(&control)) return box->click();
    if (auto* number = qobject_cast<QSpinBox*>(&control)) return number->setValue(value);
    auto* menu = qobject_cast<QComboBox*>(&control);
    menu->setCurrentIndex(value);
    Q_EMIT menu->activated(value);
}

enum Effect : unsigned { kNothing = 0, kLines = 1, kPicture = 2, kCounts = 4 };

}  // namespace

TEST(EachOptionChangesWhatThePreviewShows) {
    Preview pane;
    pane.showDrawer();
    const std::string plain =
        "Bits Regular\nDejaVu Sans\nDejaVu Sans Bold\nDejaVu Sans Mono, DejaVuSansMono.ttf\n"
        "DejaVu Sans Mono, Mono.ttf\nDejaVu Serif\n";
    struct Row {
        const char* control;
        int before, after;
        unsigned effect;
        const char* line;  // or part of one that is there afterwards only
        std::vector<std::pair<std::string, PropertyList>> with = {};
    };
    const Row rows[] = {
        {"perAppEnabled", 1, 0, kLines | kPicture | kCounts, "the menu is left as it is, with 6 lines"},
        {"perAppHierarchicalMenu", 0, 1, kLines | kPicture | kCounts, "DejaVu Sans\n  Book\n  Bold\n"},
        {"perAppShowAllSet", 0, 1, kLines | kPicture | kCounts, "All Fonts\n  Bits Regular\n"},
        {"perAppSortByScript", 0, 1, kLines | kPicture | kCounts, "Hebrew\nBits Regular\nLatin\n"},
        {"perAppCheckItems", 0, 1, kLines | kPicture, "DejaVu Sans, in use\n"},
        {"perAppDupeHandling", 0, 1, kLines | kPicture | kCounts, "DejaVu Sans Mono\n"},
        {"perAppDupeHandling", 1, 2, kLines | kPicture, "DejaVu Sans Mono, 2 copies\n", {{"DupeHandling", 1}}},
        {"perAppShowFace", 0, 1, kPicture, ""},
        {"perAppShowSize", 0, 1, kPicture, ""},
        {"perAppFontSize", 30, 20, kPicture, "", {{"ChangeSize", 1}}},
        {"perAppShowIcons", 0, 1, kLines | kPicture, "DejaVu Serif, TrueType\n"},
        {"perAppModifyFontPanel", 0, 1, kCounts, "The font panel shows the same."},
        {"perAppShowSets", 0, 1, kLines | kPicture | kCounts, "My Set\n  DejaVu Aerif Bold, not active\n"},
        // No set of these is found where they are not installed, and their boxes cannot be ticked.
        {"perAppIncludeFAPSets", 0, 1, kNothing, "", {{"ShowSets", 1}}},
        {"perAppIncludeFEXSets", 0, 1, kNothing, "", {{"ShowSets", 1}}},
        {"perAppIncludeSuitcaseSets", 0, 1, kNothing, "", {{"ShowSets", 1}}},
    };
    for (const Row& row : rows) {
        CONTEXT(row.control + std::string(" ") + std::to_string(row.after));
        auto given = row.with;
        given.emplace_back("FontSize", 30);
        pane.setOptions(given);
        if (row.with.empty()) CHECK_EQ(pane.lines(), plain);
        const std::string lines = pane.lines(), counts = pane.counts();
        const QImage picture = pane.picture();
        auto changed = [&] {
            return (pane.lines() != lines ? kLines : 0U) | (pane.picture() != picture ? kPicture : 0U) |
                   (pane.counts() != counts ? kCounts : 0U);
        };
        change(pane.in(row.control), row.after);
        CHECK(waitFor([&] { return changed() == row.effect; }));
        CHECK_EQ(changed(), row.effect);
        CHECK((pane.lines() + pane.counts()).find(row.line) != std::string::npos);
        if (*row.line) CHECK((lines + counts).find(row.line) == std::string::npos);
        change(pane.in(row.control), row.before);
        CHECK(waitFor([&] { return changed() == kNothing; }));
    }
    // Where all are off, a name is all that is in its line.
    pane.setOptions({});
    const QImage picture = pane.picture().copy(pane.menu().visualRect(pane.menu().model()->index(1, 0)));
    std::vector<int> inked;
    for (int x = 0; x < picture.width(); ++x)
        for (int y = 0; y < picture.height(); ++y)
            if (picture.pixel(x, y) != picture.pixel(picture.width() - 1, 0)) inked.push_back(x);
    REQUIRE(!inked.empty());
    const int width = pane.menu().fontMetrics().horizontalAdvance(QStringLiteral("DejaVu Sans"));
    CHECK(inked.front() < 10 && inked.back() < 10 + width);
    // The one that is left needs an inactive font in sight, and cannot be ticked where no such set can be.
    auto shown = [&](int drawsInactive) {
        pane.setOptions({{"ShowSets", 1}, {"ShowFontInFace", 1}, {"GenerateInactivePreview", drawsInactive}});
        REQUIRE(waitFor([&] { return pane.lines().starts_with("My Set"); }));
        pane.menu().expandAll();
        return pane.picture();
    };
    const QImage without = shown(0);
    shown(1);
    CHECK(waitFor([&] { return pane.picture() != without; }));
}

TEST(TheMasterSwitchLeavesTheMenuAsItIs) {
    Preview pane;
    pane.setOptions({{"HierarchicalMenu", 1}});
    pane.showDrawer();
    CHECK(pane.lines().find("  Book") != std::string::npos);
    CHECK_EQ(pane.counts(), "6 faces, 4 families: 4 lines at the top instead of 6");
    pane.in<QCheckBox>("enabledCheckbox").click();
    CHECK_EQ(pane.counts(), "6 faces, 4 families: the menu is left as it is, with 6 lines");
    CHECK(pane.lines().find("  Book") == std::string::npos);
    pane.in<QCheckBox>("enabledCheckbox").click();
    CHECK(pane.lines().find("  Book") != std::string::npos);
    // What is unfolded stays so.
    const QModelIndex family = pane.menu().model()->index(1, 0);
    pane.menu().expand(family);
    pane.in<QCheckBox>("perAppShowAllSet").click();
    CHECK(pane.menu().isExpanded(pane.menu().model()->index(3, 0)) &&
          !pane.menu().isExpanded(pane.menu().model()->index(0, 0)));
}

TEST(TheDrawerIsRememberedAndFits) {
    Preview pane;
    CHECK(!pane.isOpen());
    const QSize list = pane.in("exTableView").size();
    pane.in("exTableView").setFocus();
    pane.showDrawer();
    CHECK_EQ(pane.window->focusWidget()->objectName().toStdString(), "exTableView");
    CHECK(pane.isOpen());
    CHECK(pane.in<QPushButton>("previewButton").text() == QStringLiteral("Hide Preview"));
    QAccessibleInterface& tree = *QAccessible::queryAccessibleInterface(&pane.menu());
    CHECK(tree.role() == QAccessible::Tree && tree.childCount() >= 6);
    CHECK(!tree.text(QAccessible::Name).isEmpty() && !tree.text(QAccessible::Description).isEmpty());
    const QSize least = pane.window->minimumSizeHint();
    CHECK(least.width() <= 690 && least.height() <= 540);
    // It is between the list and the options also for those who use no mouse.
    pane.in("regexAdd").setFocus();
    QTest::keyClick(&pane.in("regexAdd"), Qt::Key_Tab);
    CHECK_EQ(pane.window->focusWidget()->objectName().toStdString(), "previewMenu");
    QTest::keyClick(&pane.menu(), Qt::Key_Tab);
    CHECK(pane.in("optionsScroll").isAncestorOf(pane.window->focusWidget()));
    pane.in<QPushButton>("previewButton").click();
    settle();
    CHECK(!pane.isOpen() && pane.in("exTableView").size() == list);
    pane.in<QPushButton>("previewButton").click();
    auto& columns = pane.in<QSplitter>("previewSplitter");
    CHECK(columns.orientation() == Qt::Vertical);
    pane.window->resize(1300, 700);
    settle();
    CHECK(columns.orientation() == Qt::Horizontal && pane.menu().width() > 250);
    CHECK_EQ(pane.window->minimumSizeHint().width(), least.width());
    CHECK(std::abs(columns.sizes()[0] - columns.sizes()[1]) < columns.handleWidth());
    QTest::mousePress(columns.handle(1), Qt::LeftButton, {}, {4, 50});
    QTest::mouseMove(columns.handle(1), {-76, 50});
    QTest::mouseRelease(columns.handle(1), Qt::LeftButton, {}, {-76, 50});
    pane.window->resize(1400, 700);
    settle();
    CHECK(columns.sizes()[1] - columns.sizes()[0] > 100);
    pane.window->close();
    pane.open();
    CHECK(pane.isOpen());
    CHECK(waitFor([&] { return pane.menu().model()->rowCount() == 6; }));
    QTest::keyClick(&pane.in("exTableView"), Qt::Key_F9);
    CHECK(!pane.isOpen());
    pane.window->close();
    pane.open();
    CHECK(!pane.isOpen());
    CHECK(pane.in<QPushButton>("previewButton").text() == QStringLiteral("Show Preview"));
    // Nobody is told of fonts that come when the window has gone, and the list does not go with the drawer.
    pane.in<QPushButton>("previewButton").click();
    bool isListInside = true;
    QObject::connect(&pane.in("previewSplitter"), &QObject::destroyed,
                     [&isListInside, entries = &pane.in("entriesColumn")](QObject* splitter) {
                         isListInside = static_cast<QWidget*>(splitter)->isAncestorOf(entries);
                     });
    pane.window.reset();
    CHECK(!isListInside);
    settle();
}

TEST(AComputerWithoutFontsIsToldOf) {
    Preview pane;
    check::writeFile(pane.home / "fonts.conf", "<fontconfig></fontconfig>");
    pane.in<QPushButton>("previewButton").click();
    auto& why = pane.in<QLabel>("qt_placeholder");
    CHECK(why.isVisible() && why.text() == QStringLiteral("Listing the fonts…"));
    CHECK(waitFor([&] { return why.text() == QStringLiteral("No fonts found"); }));
    CHECK(pane.menu().accessibleDescription() == why.text());
    // They may come while the user is elsewhere.
    check::writeFile(pane.home / "fonts.conf", "<fontconfig><dir>" + pane.home / "fonts" + "</dir></fontconfig>");
    Q_EMIT qApp->applicationStateChanged(Qt::ApplicationInactive);
    QEvent activation(QEvent::WindowActivate);
    QCoreApplication::sendEvent(pane.window.get(), &activation);
    CHECK(waitFor([&] { return pane.menu().model()->rowCount() > 0; }));
    CHECK(why.isHidden() && pane.menu().accessibleDescription() != why.text());
}

#ifdef MAKE_FONTS
// One of them is cut off, one empty, one takes millions of steps to draw nothing, and one would like to be more than a
// name.
TEST(ThousandsOfFontsAreShownAndBadOnesHarmNothing) {
    Preview pane;
    const QStringList arguments{QStringLiteral(SOURCE_ROOT "/bench/make_fonts.py"),
                                QString::fromStdString(pane.home / "many"), QStringLiteral("3000")};
    REQUIRE(QProcess::execute(QStringLiteral(MAKE_FONTS), arguments) == 0);
    check::writeFile(pane.home / "fonts.conf", check::readFile(pane.home / "many/fonts.conf"));
    pane.setOptions({{"ShowFontInFace", 1}});
    pane.showDrawer();
    CHECK_EQ(pane.counts(), "2,999 faces, 2,999 families: 2,999 lines at the top instead of 2,999");
    QTreeView& menu = pane.menu();
    const QAbstractItemModel& model = *menu.model();
    const QString hostile = model.index(0, 0).data(Qt::AccessibleTextRole).toString();
    CHECK(hostile.startsWith(QStringLiteral("<b>&Bold</b> Evil WWW")) && hostile.size() < 500);
    auto picture = [&](int row) {
        menu.scrollTo(model.index(row, 0));
        return menu.viewport()->grab(menu.visualRect(model.index(row, 0))).toImage();
    };
    const int last = model.rowCount() - 1;
    CHECK_EQ(model.index(last, 0).data().toString().toStdString(), "Slow");
    const QImage plainBefore = picture(last - 1), plainSlow = picture(last);
    for (int row = 0; row < last; row += 20) picture(row);
    CHECK(waitFor([&] { return picture(last - 1) != plainBefore; }));
    CHECK(picture(last) == plainSlow);
}
#endif
