#include "tests/support/Check.h"

#include <QProcess>

// On a machine without a display or a session bus.
TEST(PanehostSaysWhyItCannotOpenAWindow) {
    check::TemporaryFolder folder;
    QString empty = QString::fromStdString(folder.path()), picture = QString::fromStdString(folder / "picture.png");
    QString sample = QStringLiteral(TEST_DATA "/Sample.prefPane");
    const std::tuple<QStringList, int, const char*, const char*> cases[] = {
        {{}, 1, "-platform vnc", ""},
        {{QStringLiteral("-platform"), QStringLiteral("offscreen"), empty}, 1, "is not a pane", ""},
        {{QStringLiteral("--screenshot"), picture, sample}, 1, "cannot be loaded", ""},
        {{QStringLiteral("--nonsense")}, 2, "nonsense", ""},
        {{QStringLiteral("--select"), QStringLiteral("x")}, 2, "usage", ""},
        {{sample, sample}, 2, "usage", ""},
        {{QStringLiteral("-h")}, 0, "", "--select <row>"},
        {{QStringLiteral("--version")}, 0, "", "panehost "}};
    for (const auto& [arguments, status, error, output] : cases) {
        CONTEXT(arguments.join(QLatin1Char(' ')).toStdString());
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "DBUS_SESSION_BUS_ADDRESS"})
            environment.remove(QLatin1String(name));
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(PANEHOST), arguments);
        REQUIRE(process.waitForFinished() && process.exitStatus() == QProcess::NormalExit);
        CHECK_EQ(process.exitCode(), status);
        const QByteArray said = process.readAllStandardOutput(), complained = process.readAllStandardError();
        CHECK(said.contains(output) && complained.contains(error) && said.isEmpty() != complained.isEmpty());
    }
    CHECK(check::readFile(picture.toStdString()).empty());
}
