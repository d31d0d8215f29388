#include "tests/support/Check.h"

#include <QProcess>

namespace {

struct Outcome {
    int status;
    std::string output, error;
};

Outcome panehost(const QStringList& arguments) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "DBUS_SESSION_BUS_ADDRESS"})
        environment.remove(QLatin1String(name));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(PANEHOST), arguments);
    REQUIRE(process.waitForFinished());
    REQUIRE(process.exitStatus() == QProcess::NormalExit);
    return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
}

}  // namespace

TEST(PanehostSaysWhyItCannotOpenAWindow) {
    check::TemporaryFolder folder;
    QString empty = QString::fromStdString(folder.path()), picture = QString::fromStdString(folder / "picture.png");
    QString sample = QStringLiteral(TEST_DATA "/Sample.prefPane");
    const std::tuple<QStringList, int, const char*> cases[] = {
        {{}, 1, "-platform vnc"},
        {{QStringLiteral("-platform"), QStringLiteral("offscreen"), empty}, 1, "is not a pane"},
        {{QStringLiteral("--screenshot"), picture, sample}, 1, "cannot be loaded"},
        {{QStringLiteral("--nonsense")}, 2, "nonsense"},
        {{QStringLiteral("--select"), QStringLiteral("x")}, 2, "usage"},
    };
    for (const auto& [arguments, status, part] : cases) {
        CONTEXT(arguments.join(QLatin1Char(' ')).toStdString());
        Outcome outcome = panehost(arguments);
        CHECK_EQ(outcome.status, status);
        CHECK(outcome.error.find(part) != std::string::npos);
        CHECK_EQ(outcome.output, "");
    }
    CHECK(check::readFile(picture.toStdString()).empty());
}
