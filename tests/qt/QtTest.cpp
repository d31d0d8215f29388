#include "tests/qt/QtTest.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QStyleFactory>

using namespace platform;

namespace {

std::string sExpected;

// What the offscreen plug-in cannot do is no fault of ours.
bool isExpected(const QString& message) {
    return (!sExpected.empty() && message.toStdString().find(sExpected) != std::string::npos) ||
           message.startsWith(QStringLiteral("This plugin does not support")) ||
           message.startsWith(QStringLiteral("QStandardPaths: XDG_RUNTIME_DIR not set"));
}

void failOnWarning(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type != QtDebugMsg && type != QtInfoMsg && !isExpected(message))
        check::fail(__FILE__, __LINE__, "the toolkit warns: " + message.toStdString());
}

}  // namespace

void useApplication() {
    static int sCount = 1;
    static char sName[] = "test";
    static char* sArguments[] = {sName, nullptr};
    if (QCoreApplication::instance()) return;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(failOnWarning);
    QApplication::setStyle(QStringLiteral("Fusion"));
    new QApplication(sCount, sArguments);  // outlives Qt's own statics
}

ExpectWarning::ExpectWarning(std::string part) { sExpected = std::move(part); }
ExpectWarning::~ExpectWarning() { sExpected.clear(); }

bool waitFor(const std::function<bool()>& condition) {
    QElapsedTimer timer;
    for (timer.start(); !condition() && timer.elapsed() < 10000;) QCoreApplication::processEvents({}, 20);
    return condition();
}

void settle() {
    for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
}

PrivateBus::PrivateBus() {
    useApplication();
    daemon_.start(QStringLiteral("dbus-daemon"),
                  {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address")});
    REQUIRE(waitFor([&] { return daemon_.canReadLine() || daemon_.state() == QProcess::NotRunning; }));
    address_.emplace("DBUS_SESSION_BUS_ADDRESS", daemon_.readLine().trimmed().constData());
}
PrivateBus::~PrivateBus() {
    daemon_.terminate();
    daemon_.waitForFinished();
}

SampleInterface::SampleInterface(const char* bundlePath, const char* name) {
    useApplication();
    bundle = linux::FolderBundle::open(bundlePath);
    REQUIRE(bundle != nullptr);
    std::string error;
    interface = qt::loadInterface(bundle->resourcePath(name, "ui").value_or(""), *bundle, owner, error);
    CHECK_EQ(error, "");
    REQUIRE(interface != nullptr);
    interface->root()->show();
    settle();
}
