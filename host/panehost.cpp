// Opens a settings pane in a window of its own.
#include "host/HostPlatform.h"
#include "host/PaneWindow.h"
#include "platform/qt/EndSignals.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStyleFactory>
#include <QTabWidget>

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <thread>

namespace {

constexpr int kRefused = 1, kUsage = 2;

constexpr const char* kNoDisplay =
    "panehost: there is no display to open the window on.\n"
    "Run it from a desktop session, or choose where to draw:\n"
    "  panehost -platform vnc          a window for a VNC viewer on port 5900\n"
    "  panehost -platform offscreen    no window at all\n"
    "  panehost --screenshot FILE      a picture of the window\n";

struct Request {
    QString bundle, screenshot, tab;
    int row = -1;
    bool dark = false, choosesPlatform = false;
};

QString defaultBundle() {
    QString program = QFileInfo(QStringLiteral("/proc/self/exe")).symLinkTarget();
    return QFileInfo(program).absolutePath() + QStringLiteral("/../Typeslate.prefPane");
}

// Ends the program for --help, --version and wrong usage, none of which needs a display.
Request requestFrom(int argc, char** argv) {
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(QStringLiteral("Opens a settings pane in a window."));
    parser.addPositionalArgument(QStringLiteral("bundle"), QStringLiteral("The pane; Typeslate's own by default."),
                                 QStringLiteral("[BUNDLE]"));
    QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Shows this text."));
    QCommandLineOption version({QStringLiteral("v"), QStringLiteral("version")}, QStringLiteral("Shows the version."));
    QCommandLineOption screenshot(QStringLiteral("screenshot"),
                                  QStringLiteral("Writes a picture of the window and ends; needs no display."),
                                  QStringLiteral("file"));
    QCommandLineOption tab(QStringLiteral("tab"), QStringLiteral("Opens the tab with this title."),
                           QStringLiteral("title"));
    QCommandLineOption select(QStringLiteral("select"), QStringLiteral("Selects the entry in this row, from 0."),
                              QStringLiteral("row"));
    QCommandLineOption dark(QStringLiteral("dark"), QStringLiteral("Uses dark colours, for pictures."));
    QCommandLineOption platform(QStringLiteral("platform"),
                                QStringLiteral("Where to draw: xcb, wayland, vnc, offscreen."), QStringLiteral("name"));
    QCommandLineOption style(QStringLiteral("style"), QStringLiteral("The look of the controls."),
                             QStringLiteral("name"));
    parser.addOptions({help, version, screenshot, tab, select, dark, platform, style});

    QStringList arguments;
    for (int i = 0; i < argc; ++i) arguments << QString::fromLocal8Bit(argv[i]);
    bool ok = parser.parse(arguments);
    if (ok && parser.isSet(help)) {
        std::printf("%s", qPrintable(parser.helpText()));
        std::exit(0);
    }
    if (ok && parser.isSet(version)) {
        std::printf("panehost %s\n", TYPESLATE_VERSION);
        std::exit(0);
    }
    bool rowOk = true;
    Request request{.bundle = {},
                    .screenshot = parser.value(screenshot),
                    .tab = parser.value(tab),
                    .row = parser.isSet(select) ? parser.value(select).toInt(&rowOk) : -1,
                    .dark = parser.isSet(dark),
                    .choosesPlatform = parser.isSet(platform)};
    if (!ok || !rowOk || parser.positionalArguments().size() > 1) {
        std::fprintf(stderr, "panehost: %s\n",
                     ok ? "usage: panehost [--screenshot FILE] [BUNDLE]" : qPrintable(parser.errorText()));
        std::exit(kUsage);
    }
    request.bundle = parser.positionalArguments().value(0, defaultBundle());
    return request;
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

// Qt aborts with its own message when no window system answers.
void refuseOnFatal(QtMsgType type, const QMessageLogContext&, const QString& message) {
    std::fprintf(stderr, "%s\n", qPrintable(message));
    if (type != QtFatalMsg) return;
    std::fputs(kNoDisplay, stderr);
    std::_Exit(kRefused);
}

void choosePlatform(const Request& request) {
    if (request.choosesPlatform || qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) return;
    if (!request.screenshot.isEmpty()) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    } else if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        std::fputs(kNoDisplay, stderr);
        std::exit(kRefused);
    }
}

QPalette darkPalette() {
    const QColor window(0x2a, 0x2e, 0x32), base(0x1f, 0x23, 0x26), text(0xf4, 0xf5, 0xf6), grey(0x8d, 0x96, 0x9e);
    QPalette palette(QColor(0x3a, 0x40, 0x46), window);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, window);
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, grey.darker(130));
    }
    palette.setColor(QPalette::PlaceholderText, grey);
    palette.setColor(QPalette::Highlight, QColor(0x2f, 0x7f, 0xb8));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

void chooseIconTheme() {
    const QStringList folders = QStandardPaths::locateAll(QStandardPaths::GenericDataLocation, QStringLiteral("icons"),
                                                          QStandardPaths::LocateDirectory);
    QIcon::setThemeSearchPaths(QIcon::themeSearchPaths() + folders);
    for (const QString& theme : {QStringLiteral("breeze"), QStringLiteral("Adwaita")})
        for (const QString& folder : folders)
            if (QFileInfo::exists(folder + QLatin1Char('/') + theme + QStringLiteral("/index.theme")))
                return QIcon::setThemeName(theme);
}

// Without a desktop nothing chooses a style or an icon theme.
void chooseLook(const Request& request) {
    bool hasDesktop = QGuiApplication::platformName() != QStringLiteral("offscreen");
    if (!hasDesktop || request.dark) QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    if (!hasDesktop) chooseIconTheme();
    if (request.dark) QApplication::setPalette(darkPalette());
}

void applyRequest(const Request& request, host::PaneWindow& window) {
    auto* tabs = window.findChild<QTabWidget*>();
    for (int i = 0; tabs && i < tabs->count(); ++i)
        if (tabs->tabText(i).remove(QLatin1Char('&')) == request.tab) tabs->setCurrentIndex(i);
    platform::View* table = window.view("exTableView");
    if (request.row >= 0 && table && table->asTableView()) {
        table->asTableView()->selectRow(request.row);
        table->asTableView()->scrollRowToVisible(request.row);
    }
}

int writeScreenshot(host::PaneWindow& window, const QString& file) {
    constexpr int kRounds = 10;  // layouts, then images, settle in a few
    for (int i = 0; i < kRounds; ++i) QCoreApplication::processEvents();
    if (window.grab().save(file, "PNG")) return 0;
    std::fprintf(stderr, "panehost: %s cannot be written\n", qPrintable(file));
    return kRefused;
}

}  // namespace

int main(int argc, char** argv) {
    Request request = requestFrom(argc, argv);
    choosePlatform(request);
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
    platform::qt::EndSignals endSignals;
    qInstallMessageHandler(refuseOnFatal);
    std::thread fonts = readingFontConfiguration();
    QApplication application(argc, argv);
    fonts.join();
    qInstallMessageHandler(nullptr);
    application.setApplicationName(QStringLiteral("panehost"));
    application.setApplicationVersion(QStringLiteral(TYPESLATE_VERSION));
    chooseLook(request);

    host::HostPlatform platform;
    host::PaneWindow window(platform);
    if (std::string problem = window.load(request.bundle.toStdString()); !problem.empty()) {
        std::fprintf(stderr, "panehost: %s\n", problem.c_str());
        return kRefused;
    }
    applyRequest(request, window);
    window.show();
    // The end of the session is a request to leave the pane, which may wait for a sheet; asked again it does not wait.
    endSignals.setHandler([&window, wasAsked = false]() mutable {
        if (std::exchange(wasAsked, true)) return QApplication::quit();
        window.close();
    });
    return request.screenshot.isEmpty() ? application.exec() : writeScreenshot(window, request.screenshot);
}
