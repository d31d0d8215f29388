// The real controls on the real platform, talking to the sample updater over a session bus of the test's own. With
// TYPESLATE_PICTURES=FOLDER each state is also drawn.
#include "TarnwickUpdater/PrefPane Stuff/TWVCUpdateViewController/TWVCUpdateViewController.h"
#include "host/HostPlatform.h"
#include "qt/controls/QtControls.h"
#include "qt/controls/StatusText.h"
#include "qt/messages/DBusNotificationCenter.h"
#include "tests/qt/QtTest.h"

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QGroupBox>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTextEdit>
#include <QTimer>
#include <QVBoxLayout>

#include <filesystem>
#include <thread>

using namespace platform;
using check::ScopedEnvironment;
using Controller = TWVCUpdateViewController_V100;
namespace fs = std::filesystem;

namespace {

constexpr const char* kDomain = "com.tarnwick.typeslate";

struct Desktop : PaneHost {
    check::TemporaryFolder home;
    ScopedEnvironment homeVariable{"HOME", home.path().c_str()}, root{"TYPESLATE_ROOT", (home / "root").c_str()},
        configuration{"XDG_CONFIG_HOME", nullptr}, language{"LC_ALL", "C.UTF-8"},
        step{"TYPESLATE_SAMPLE_UPDATER_STEP", "0.05"}, mode;
    PrivateBus bus;
    std::optional<host::HostPlatform> platform;
    std::unique_ptr<Bundle> pane;
    QWidget window;
    QPushButton button{QStringLiteral("Updates…")};
    qt::QtButton buttonView{button};
    QGroupBox box;
    qt::QtPlainView placeholder{box};
    std::unique_ptr<Controller> controller;

    Desktop(const char* updaterMode, bool checksByItself) : mode("TYPESLATE_SAMPLE_UPDATER", updaterMode) {
        for (const char* folder : {"root", "Library/Plinthworks"}) fs::create_directories(home / folder);
        fs::copy(BINARY_DIR "/Sample.plinth", home / "Library/Plinthworks/Typeslate.plinth",
                 fs::copy_options::recursive);
        platform.emplace();
        platform->preferences().setValue("SUCheckForUpdates", checksByItself, kDomain);
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
    void entryWasRemoved(std::string_view) override {}
    void open(View& view) {
        controller = Controller::initWithSacrificialView_forBundle_withBundleID(platform->forPane(*pane, *this), &view,
                                                                                nullptr, kDomain);
        REQUIRE(controller != nullptr);
        settle();
    }
    template <typename Widget>
    Widget* find(const char* name) {
        for (QWidget* widget : QApplication::allWidgets())
            if (widget->objectName() == QLatin1String(name)) return qobject_cast<Widget*>(widget);
        throw check::Abandoned();
    }
    bool shows(const char* part) {
        return find<QPlainTextEdit>("lastStatus")->toPlainText().contains(QString::fromUtf8(part));
    }
    bool isIdle() {
        auto* checkNow = find<QPushButton>("checkNow");
        return checkNow->isEnabled() && checkNow->text() == QStringLiteral("&Check Now") &&
               !find<QProgressBar>("progessBar")->isVisible();
    }
    void press(const char* name = "checkNow") { find<QPushButton>(name)->click(); }
    PropertyList stored(const char* key) { return platform->preferences().copyValue(key, kDomain); }
    void picture(const char* name, QWidget* shown = nullptr) {
        const char* folder = std::getenv("TYPESLATE_PICTURES");
        settle();
        if (folder)
            (shown ? shown : &window)->grab().save(QString::fromUtf8(folder) + QLatin1Char('/') + QLatin1String(name));
    }
};

}  // namespace

TEST(ADueCheckIsShown) {
    Desktop d("", true);
    d.open(d.placeholder);
    CHECK(d.shows("Checking…") && d.find<QProgressBar>("progessBar")->isVisible() && !d.box.isVisible());
    d.picture("updates-checking.png");
}

TEST(TheUpdatersWordsAreShown) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"", "Version 1.0.0 is the newest one.", "updates-idle.png"},
        {"fail", "Failed. The server could not be reached.", "updates-failed.png"},
        {"hang", "Cancelled.", nullptr}};
    for (const auto& [mode, last, picture] : cases) {
        CONTEXT(mode);
        Desktop d(mode, false);
        d.open(d.placeholder);
        d.press();
        if (std::string_view(mode) == "hang") {
            REQUIRE(waitFor([&] { return d.shows("Asking for the newest version…"); }));
            d.press();
        }
        REQUIRE(waitFor([&] { return d.isIdle(); }));
        CHECK(d.shows(last) && d.stored("SULastCheckStatus") == PropertyList(last));
        CHECK(d.stored("SULastCheckDate").isDate() && fs::is_empty(d.home / "root/tmp"));
        if (picture) d.picture(picture);
    }
}

// What others say faster than anyone can read costs a look a frame, however long the words are.
TEST(AFloodOfWordsLeavesTheWindowAsItIs) {
    const bool isLong = std::getenv("TYPESLATE_LONG_TESTS") != nullptr;
    const int count = isLong ? 100'000 : 1000;
    Desktop d("", false);
    d.open(d.placeholder);
    const QSize least = d.window.minimumSizeHint(), size = d.window.size();
    int shown = 0, longestGap = 0;
    QObject::connect(d.find<QPlainTextEdit>("lastStatus"), &QPlainTextEdit::textChanged, [&] { ++shown; });
    QTimer pulse;
    QElapsedTimer all, gap;
    pulse.callOnTimeout([&] { longestGap = std::max(longestGap, static_cast<int>(gap.restart())); });
    all.start();
    gap.start();
    pulse.start(1);
    std::thread updater([&] {
        check::RecordingLog log;
        qt::DBusNotificationCenter center(log);
        for (int i = count; i-- > 0;) {
            const std::string status = i == 0 ? "end" : i % 100 ? std::to_string(i) : std::string(3000, 'W');
            center.post("com.tarnwick.updater.statuschange", kDomain,
                        PropertyList::dictionary({{"Date", Date{0}}, {"Status", status}}), true);
        }
    });
    auto isOver = [&] { return waitFor([&] { return d.shows("end"); }); };
    for (int waits = isLong ? 6 : 1; waits > 0 && !isOver(); --waits) continue;
    updater.join();
    CHECK(d.shows("end") && shown <= all.elapsed() / 16 + 2);
    for (const QString& words : {QString(3000, QLatin1Char('W')), QStringLiteral("line\n").repeated(60)}) {
        dynamic_cast<qt::StatusText&>(*d.find<QPlainTextEdit>("lastStatus")).show(words);
        settle();
        CHECK(d.window.minimumSizeHint() == least && d.window.size() == size);
    }
    if (isLong)
        std::printf("%d notifications in %d ms, shown %d, longest pause %d ms\n", count, int(all.elapsed()), shown,
                    longestGap);
    CHECK(!isLong || longestGap < 100);
}

TEST(TheStatementStandsOnTheWindowOrAboveTheControlsSheet) {
    Desktop d("", false);
    d.open(d.buttonView);
    d.button.click();
    auto* sheet = d.find<QDialog>("updaterWindowWindow");
    CHECK(sheet->isVisible() && sheet->parentWidget() == &d.window && sheet->windowModality() == Qt::WindowModal);
    d.picture("updates-sheet.png", sheet);
    for (bool isDismissed : {true, false}) {
        bool wasModal = false;
        QTimer::singleShot(0, [&] {
            auto* statement = d.find<QDialog>("privacyWindowWindow");
            wasModal = statement->windowModality() == Qt::ApplicationModal && statement->isVisible();
            isDismissed ? d.press("dismissButton") : statement->reject();
        });
        d.press("privacyButton");
        CHECK(wasModal && !d.find<QDialog>("privacyWindowWindow")->isVisible() && sheet->isVisible());
    }
    sheet->reject();
    CHECK(!sheet->isVisible());
    d.controller.reset();
    d.button.click();  // nobody is there

    check::writeFile(d.home / "root/tmp/com.tarnwick.typeslate.updater.lock", "");
    d.open(d.placeholder);
    d.press();
    CHECK(d.shows("Failed. Error -48.") && d.find<QWidget>("updaterView")->width() > d.window.width() - 40);
    d.picture("updates-locked.png");
    d.press("privacyButton");
    auto* statement = d.find<QDialog>("privacyWindowWindow");
    CHECK(statement->isVisible() && statement->parentWidget() == &d.window);
    const QString text = d.find<QTextEdit>("privacyText")->toPlainText();
    CHECK(text.startsWith(QStringLiteral("Privacy Statement\n")) && text.contains(QStringLiteral("“Check Now”")));
    d.picture("updates-privacy.png", statement);
    d.press("dismissButton");
    CHECK(!statement->isVisible());
    d.controller.reset();
    settle();
    CHECK(d.window.findChildren<QWidget*>(QStringLiteral("updaterView")).isEmpty());
}
