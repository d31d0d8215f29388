#include "qt/DesktopOpener.h"

#include <QDesktopServices>
#include <QProcess>
#include <QStandardPaths>

#include <unistd.h>

#include <utility>

namespace qt {

namespace {

// Of xdg-open: "A required tool could not be found", "The action failed", and so on.
constexpr int kOpened = 0;

// In a session of its own, so that what ends this process leaves it alone.
class Opener final : public QProcess {
public:
    Opener() {
        setStandardInputFile(nullDevice());
        setStandardOutputFile(nullDevice());
        setStandardErrorFile(nullDevice());
#if QT_VERSION_MAJOR >= 6
        setChildProcessModifier([] { ::setsid(); });
#endif
    }

private:
#if QT_VERSION_MAJOR < 6
    void setupChildProcess() override { ::setsid(); }
#endif
};

}  // namespace

void openWithDesktop(const QUrl& address, QObject& context, std::function<void()> failed) {
    const QString program = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
    if (program.isEmpty()) {
        if (!QDesktopServices::openUrl(address)) failed();
        return;
    }
    // Nobody's child, and so left running by the end of this process: some desktops' xdg-open stays as long as the
    // browser that it started, and goes with it if it is deleted.
    auto* opener = new Opener;
    QObject::connect(opener, &QProcess::errorOccurred, &context, [opener, failed](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart) return;
        opener->deleteLater();
        failed();
    });
    QObject::connect(opener, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), &context,
                     [failed](int code, QProcess::ExitStatus status) {
                         if (status == QProcess::NormalExit && code != kOpened) failed();
                     });
    QObject::connect(opener, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), opener, &QObject::deleteLater);
    opener->start(program, {QString::fromUtf8(address.toEncoded())});
}

}  // namespace qt
