// Opens a settings pane in a window of its own.
#include "host/HostPlatform.h"
#include "host/PaneWindow.h"
#include "host/panehost/DesktopLook.h"
#include "host/panehost/Look.h"
#include "host/panehost/PanehostRequest.h"
#include "host/panehost/SingleInstance.h"
#include "host/panehost/StartupToken.h"
#include "host/panehost/ToolkitTexts.h"
#include "host/panehost/WindowPlace.h"
#include "linux/texts/Localized.h"
#include "qt/EndSignals.h"
#include "qt/QtToolkit.h"
#include "qt/images/FileIcons.h"
#include "qt/images/QtImage.h"
#include "qt/messages/SessionBus.h"

#include <QApplication>
#include <QFileInfo>
#include <QFontMetrics>
#include <QTabWidget>

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <thread>

namespace {

constexpr int kRefused = 1;

// The name of the desktop entry and on the session bus, and the domain of what the program itself remembers.
constexpr const char* kApplicationId = "com.tarnwick.typeslate.Settings";

[[noreturn]] void refuseWithoutDisplay() {
    const std::string advice = linux::localized(
        "there is no display to open the window on.\n"
        "Run it from a desktop session, or choose where to draw:\n"
        "  panehost -platform vnc          a window for a VNC viewer on port 5900\n"
        "  panehost -platform offscreen    no window at all\n"
        "  panehost --screenshot FILE      a picture of the window");
    std::fprintf(stderr, "panehost: %s\n", advice.c_str());
    std::_Exit(kRefused);
}

// Reading the font configuration takes as long as reaching the display; the two do not need each other. Qt would read
// it at the first text.
std::thread readingFontConfiguration() {
    return std::thread([] {
        void* library = dlopen("libfontconfig.so.1", RTLD_NOW);
        auto initialize = library ? reinterpret_cast<int (*)()>(dlsym(library, "FcInit")) : nullptr;
        if (initialize) initialize();
    });
}

// Qt lists the fonts at the first text, and lets any thread measure one.
std::jthread listingFonts() {
    const QFont font = QApplication::font();
    return std::jthread([font = QFont(font.family(), font.pointSize())] { QFontMetrics(font).height(); });
}

// Qt aborts with its own message when no window system answers.
void refuseOnFatal(QtMsgType type, const QMessageLogContext&, const QString& message) {
    std::fprintf(stderr, "%s\n", qPrintable(message));
    if (type == QtFatalMsg) refuseWithoutDisplay();
}

// What a platform without windows cannot do is no news to somebody who asked for a picture.
void leaveOutLimits(QtMsgType, const QMessageLogContext&, const QString& message) {
    if (!message.startsWith(QStringLiteral("This plugin does not support")))
        std::fprintf(stderr, "%s\n", qPrintable(message));
}

void choosePlatform(const host::Request& request) {
    if (request.choosesPlatform || qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) return;
    if (!request.screenshot.isEmpty()) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    } else if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        refuseWithoutDisplay();
    }
}

// Its size is known, so that reading it can wait for the window.
platform::ImageRef ownIcon() {
    constexpr QSize kSize(128, 128);
    return std::make_shared<qt::QtImage>([] { return qt::iconOfImageFile(QStringLiteral(":/panehost.png")); }, kSize);
}

// Each pane has a size of its own.
std::string keyOfPlace(const host::Request& request) {
    return "Window " + QFileInfo(request.bundle).fileName().toStdString();
}

bool isX11() { return QGuiApplication::platformName() == QStringLiteral("xcb"); }

bool opensOnDesktop(const host::Request& request) {
    const bool isDesktop = isX11() || QGuiApplication::platformName().startsWith(QStringLiteral("wayland"));
    return isDesktop && request.screenshot.isEmpty();
}

// What must be the same for an open window to stand in for this start; empty when none can.
QString sceneOf(const host::Request& request) {
    if (!opensOnDesktop(request) || request.namesBundle) return {};
    QStringList scene = {QGuiApplication::platformName(), QFileInfo(request.bundle).canonicalFilePath()};
    for (const char* name : {isX11() ? "DISPLAY" : "WAYLAND_DISPLAY", "HOME", "XDG_CONFIG_HOME", "TYPESLATE_ROOT"})
        scene << qEnvironmentVariable(name);
    return scene.join(QLatin1Char('\n'));
}

const QString kTabKey = QStringLiteral("com.tarnwick.typeslate.tab");
const QString kRowKey = QStringLiteral("com.tarnwick.typeslate.row");

// True when a window that is open already does what was asked for.
bool wasHandedOver(host::SingleInstance& instance, const host::Request& request, QVariantMap platformData) {
    platformData.insert(kTabKey, request.tab);
    platformData.insert(kRowKey, request.row);
    return instance.handOver(platformData);
}

// By the connection of the hand-over, where there was one. To be called when the window is on its way to the screen.
std::unique_ptr<host::DesktopLook> desktopLook(const host::Request& request) {
    host::FollowedLook followed = host::followedLook(request.choosesStyle);
    if (request.dark) followed.colors = false;
    if (!opensOnDesktop(request) || !(followed.colors || followed.textSize)) return nullptr;
    return std::make_unique<host::DesktopLook>(qt::sessionBusConnection(QLatin1String(kApplicationId)), followed);
}

void showPlace(const QString& tab, int row, host::PaneWindow& window) {
    auto* tabs = window.findChild<QTabWidget*>();
    for (int i = 0; tabs && i < tabs->count(); ++i)
        if (tabs->tabText(i).remove(QLatin1Char('&')) == tab) tabs->setCurrentIndex(i);
    platform::View* table = window.view("exTableView");
    if (row >= 0 && table && table->asTableView()) {
        table->asTableView()->selectRow(row);
        table->asTableView()->scrollRowToVisible(row);
    }
}

int writeScreenshot(host::PaneWindow& window, const QString& file) {
    constexpr int kRounds = 10;  // layouts, then images, settle in a few
    for (int i = 0; i < kRounds; ++i) QCoreApplication::processEvents();
    if (window.grab().save(file, "PNG")) return 0;
    const std::string problem = linux::localizedFormat("%@ cannot be written", file.toStdString());
    std::fprintf(stderr, "panehost: %s\n", problem.c_str());
    return kRefused;
}

}  // namespace

int main(int argc, char** argv) {
    const host::Request request = host::requestFrom(argc, argv);
    choosePlatform(request);
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
    qt::EndSignals endSignals;
    const QVariantMap tokens = host::startupTokens();
    qInstallMessageHandler(refuseOnFatal);
    std::thread fonts = readingFontConfiguration();
    QApplication application(argc, argv);
    fonts.join();
    const std::jthread fontList = listingFonts();
    qInstallMessageHandler(request.screenshot.isEmpty() ? nullptr : leaveOutLimits);
    application.setApplicationName(QStringLiteral("panehost"));
    application.setApplicationVersion(QStringLiteral(TYPESLATE_VERSION));
    application.setDesktopFileName(QLatin1String(kApplicationId));
    std::unique_ptr<host::SingleInstance> instance;
    if (QString scene = sceneOf(request); !scene.isEmpty())
        instance = std::make_unique<host::SingleInstance>(QLatin1String(kApplicationId), scene);
    host::chooseLook(request.dark);
    const std::unique_ptr<QTranslator> toolkitTexts = host::toolkitTexts(request.bundle.toStdString());
    host::HostPlatform platform;
    if (instance && wasHandedOver(*instance, request, tokens)) return 0;
    host::PaneWindow window(platform);
    platform.setWindow(&window);
    platform.toolkit().setApplicationIcon(ownIcon());
    if (std::string problem = window.load(request.bundle.toStdString()); !problem.empty()) {
        std::fprintf(stderr, "panehost: %s\n", problem.c_str());
        return kRefused;
    }
    std::unique_ptr<host::WindowPlace> place;
    if (request.screenshot.isEmpty())
        place =
            std::make_unique<host::WindowPlace>(window, platform.preferences(), kApplicationId, keyOfPlace(request));
    showPlace(request.tab, request.row, window);
    window.show();
    const std::unique_ptr<host::DesktopLook> look = desktopLook(request);
    if (instance)
        instance->setHandler([&window](const QVariantMap& data) {
            showPlace(data.value(kTabKey).toString(), data.value(kRowKey, -1).toInt(), window);
            host::bringForward(window, data);
        });
    // The end of the session is a request to leave the pane, which may wait for a sheet; asked again it does not wait.
    endSignals.setHandler([&window, wasAsked = false]() mutable {
        if (std::exchange(wasAsked, true)) return QApplication::quit();
        window.close();
    });
    return request.screenshot.isEmpty() ? application.exec() : writeScreenshot(window, request.screenshot);
}
