// The real controls on the real platform, talking to the sample updater over a session bus of the test's own. With
// TYPESLATE_PICTURES=FOLDER each state is also drawn.
#include "TarnwickUpdater/PrefPane Stuff/TWVCUpdateViewController/TWVCUpdateViewController.h"
#include "host/HostPlatform.h"
#include "linux/preferences/DiskPreferences.h"
#include "linux/system/SystemLog.h"
#include "qt/controls/QtControls.h"
#include "tests/qt/QtTest.h"

#include <QApplication>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTextEdit>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <filesystem>

using namespace platform;
using check::ScopedEnvironment;
using Controller = TWVCUpdateViewController_V100;
namespace fs = std::filesystem;

namespace {

constexpr const char* kDomain = "com.tarnwick.typeslate";
constexpr double kShortReaction = 0.3, kNeverInThisTest = 600;  // seconds

struct Desktop : PaneHost {
    check::TemporaryFolder home;
    ScopedEnvironment homeVariable{"HOME", home.path().c_str()}, root{"TYPESLATE_ROOT", (home / "root").c_str()},
        configuration{"XDG_CONFIG_HOME", nullptr}, language{"LC_ALL", "C.UTF-8"}, mode, step;
    PrivateBus bus;
    std::string module = home / "Library/Plinthworks/Typeslate.plinth";
    std::optional<host::HostPlatform> platform;
    std::unique_ptr<Bundle> pane;
    QWidget window;
    QPushButton button{QStringLiteral("Updates…")};
    qt::QtButton buttonView{button};
    QGroupBox box;
    qt::QtPlainView placeholder{box};
    std::unique_ptr<Controller> controller;
    std::vector<std::string> texts;  // that the status line showed, each once

    explicit Desktop(const char* updaterMode, const char* stepSeconds = "0.05")
        : mode("TYPESLATE_SAMPLE_UPDATER", updaterMode), step("TYPESLATE_SAMPLE_UPDATER_STEP", stepSeconds) {
        fs::create_directories(home / "root");
        fs::create_directories(home / "Library/Plinthworks");
        fs::copy(BINARY_DIR "/Sample.plinth", module, fs::copy_options::recursive);
        platform.emplace();
        pane = platform->bundles().openBundle(BINARY_DIR "/Typeslate.prefPane");
        REQUIRE(pane != nullptr);
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(&button);
        layout->addWidget(&box);
        layout->addStretch();
        window.resize(560, 340);
        window.show();
    }
    ~Desktop() override { controller.reset(); }
    void replyToShouldUnselect(bool) override {}

    void open(View& view, double reaction) {
        controller = Controller::initWithSacrificialView_forBundle_withBundleID(platform->forPane(*pane, *this), &view,
                                                                                nullptr, kDomain, reaction);
        REQUIRE(controller != nullptr);
        settle();
    }
    template <typename Widget>
    Widget* find(const char* name) {
        for (QWidget* widget : QApplication::allWidgets())
            if (widget->objectName() == QLatin1String(name)) return qobject_cast<Widget*>(widget);
        throw check::Abandoned();
    }
    std::string note() {
        std::string text = find<QLabel>("lastStatus")->text().toStdString();
        text = text.substr(std::min(text.size(), text.find(": ") + 2));
        if (texts.empty() || texts.back() != text) texts.push_back(text);
        return text;
    }
    bool shows(const std::string& part) { return note().find(part) != std::string::npos; }
    bool isIdle() {
        note();
        auto* checkNow = find<QPushButton>("checkNow");
        return checkNow->isEnabled() && checkNow->text() == QStringLiteral("&Check Now") &&
               !find<QProgressBar>("progessBar")->isVisible();
    }
    void press(const char* name = "checkNow") { find<QPushButton>(name)->click(); }
    PropertyList storedOnDisk(const char* key) {
        linux::SystemLog log;
        return linux::DiskPreferences(linux::preferencesFolder(), log).copyValue(key, kDomain);
    }
    void picture(const char* name, QWidget* shown = nullptr) {
        const char* folder = std::getenv("TYPESLATE_PICTURES");
        settle();
        if (folder)
            (shown ? shown : &window)->grab().save(QString::fromUtf8(folder) + QLatin1Char('/') + QLatin1String(name));
    }
};

}  // namespace

TEST(ADueCheckRunsToItsEnd) {
    Desktop d("");
    d.open(d.placeholder, kShortReaction);
    CHECK(d.shows("Checking…"));
    d.picture("updates-checking.png");
    CHECK(d.find<QProgressBar>("progessBar")->isVisible() && !d.box.isVisible());
    REQUIRE(waitFor([&] { return d.isIdle(); }));
    for (const char* said : {"Asking for the newest version…", "Comparing versions…"})
        CHECK(std::ranges::find(d.texts, said) != d.texts.end());
    CHECK_EQ(d.texts.back(), "Version 1.0.0 is the newest one.");
    CHECK_EQ(d.storedOnDisk("SULastCheckStatus"), PropertyList("Version 1.0.0 is the newest one."));
    CHECK(d.storedOnDisk("SULastCheckDate").isDate());
    CHECK_EQ(d.storedOnDisk("SUCheckForUpdates"), PropertyList(true));
    CHECK(fs::is_empty(d.home / "root/tmp"));
    d.picture("updates-idle.png");
}

TEST(CancelInTimeStartsNothing) {
    Desktop d("");
    d.open(d.placeholder, kNeverInThisTest);
    d.press();
    CHECK(!d.find<QPushButton>("checkNow")->isEnabled());
    REQUIRE(waitFor([&] { return d.isIdle(); }));
    CHECK_EQ(d.texts.back(), "Never checked for updates.");
    CHECK_EQ(d.storedOnDisk("SULastCheckDate"), PropertyList());
    CHECK(!fs::exists(d.home / "root/tmp"));
}

TEST(UpdatersThatHangCrashFailOrTalkNonsense) {
    const std::tuple<const char*, bool, const char*> cases[] = {
        {"hang", true, "Cancelled."},
        {"crash", true, ""},
        {"fail", false, "Failed. The server could not be reached."},
        {"wrong", false, "Version 1.0.0 is the newest one."},
    };
    for (const auto& [mode, isCancelled, last] : cases) {
        CONTEXT(mode);
        Desktop d(mode);
        d.open(d.placeholder, 0);
        if (isCancelled) {
            REQUIRE(waitFor([&] { return d.shows("Asking"); }));
            d.press();
        }
        REQUIRE(waitFor([&, text = last] { return d.isIdle() && d.shows(text); }));
        CHECK(std::ranges::find(d.texts, "7") == d.texts.end());  // what the talk of nonsense says
        if (std::string_view(mode) != "fail") continue;
        d.picture("updates-failed.png");
        d.press();  // and again
        REQUIRE(waitFor([&] { return d.shows("Comparing"); }));
        REQUIRE(waitFor([&] { return d.isIdle(); }));  // or the updater would write where the folder was
    }
}

TEST(ALockedUpdaterLeavesTheControlsUsable) {
    Desktop d("");
    check::writeFile(d.home / "root/tmp/com.tarnwick.typeslate.updater.lock", "");
    d.open(d.placeholder, 0);
    REQUIRE(waitFor([&] { return d.shows("Failed. Error -48."); }));
    d.picture("updates-locked.png");
    d.press();  // still "Cancel"
    REQUIRE(waitFor([&] { return d.isIdle(); }));
}

TEST(TheControlsAsASheetWithTheStatementAboveIt) {
    Desktop d("");
    d.open(d.buttonView, kNeverInThisTest);
    d.button.click();
    auto* sheet = d.find<QDialog>("updaterWindowWindow");
    CHECK(sheet->isVisible() && sheet->parentWidget() == &d.window && sheet->windowModality() == Qt::WindowModal);
    d.picture("updates-sheet.png", sheet);
    bool wasModal = false;
    QTimer::singleShot(0, [&] {
        auto* statement = d.find<QDialog>("privacyWindowWindow");
        wasModal = statement->windowModality() == Qt::ApplicationModal && statement->isVisible();
        d.press("dismissButton");
    });
    d.press("privacyButton");
    CHECK(wasModal && !d.find<QDialog>("privacyWindowWindow")->isVisible() && sheet->isVisible());
    QTimer::singleShot(0, [&] { d.find<QDialog>("privacyWindowWindow")->reject(); });
    d.press("privacyButton");
    sheet->reject();
    CHECK(!sheet->isVisible());
    d.button.click();
    CHECK(sheet->isVisible());
    d.controller.reset();
    d.button.click();  // nobody is there
}

TEST(TheControlsFillTheirPlaceAndShowTheStatementInIt) {
    Desktop d("");
    d.open(d.placeholder, kNeverInThisTest);
    for (int width : {900, 560}) {
        d.window.resize(width, width - 220);
        settle();
        CHECK(d.find<QWidget>("updaterView")->isVisible() && d.find<QWidget>("updaterView")->width() > width - 40);
    }
    d.press("privacyButton");
    auto* statement = d.find<QDialog>("privacyWindowWindow");
    CHECK(statement->isVisible() && statement->parentWidget() == &d.window);
    QString text = d.find<QTextEdit>("privacyText")->toPlainText();
    CHECK(text.startsWith(QStringLiteral("Privacy Statement\n")) && text.contains(QStringLiteral("“Check Now”")));
    CHECK(!text.contains(QLatin1Char('?')) && !text.contains(QLatin1Char('\\')));
    d.picture("updates-privacy.png", statement);
    d.press("dismissButton");
    CHECK(!statement->isVisible());
    d.controller.reset();
    settle();
    CHECK(d.window.findChildren<QWidget*>(QStringLiteral("updaterView")).isEmpty());
}
