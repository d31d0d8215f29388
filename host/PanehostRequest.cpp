#include "host/PanehostRequest.h"

#include "platform/linux/Installation.h"

#include <QCommandLineParser>

#include <cstdio>
#include <cstdlib>

namespace host {
namespace {

constexpr int kUsage = 2;

struct OptionText {
    const char *name, *description, *value;
};

constexpr OptionText kOptions[] = {
    {"screenshot", "Writes a picture of the window and ends; needs no display.", "file"},
    {"tab", "Opens the tab with this title.", "title"},
    {"select", "Selects the entry in this row, from 0.", "row"},
    {"dark", "Uses dark colours, for pictures.", nullptr},
    {"platform", "Where to draw: xcb, wayland, vnc, offscreen.", "platform"},
    {"style", "The look of the controls.", "style"},
};

void describeTo(QCommandLineParser& parser) {
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(QStringLiteral("Opens a settings pane in a window."));
    parser.addPositionalArgument(QStringLiteral("bundle"), QStringLiteral("The pane; Typeslate's own by default."),
                                 QStringLiteral("[BUNDLE]"));
    parser.addOption({{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Shows this text.")});
    parser.addOption({{QStringLiteral("v"), QStringLiteral("version")}, QStringLiteral("Shows the version.")});
    for (const OptionText& option : kOptions)
        parser.addOption({QLatin1String(option.name), QLatin1String(option.description), QLatin1String(option.value)});
}

[[noreturn]] void endWith(const std::string& answer) {
    std::fputs(answer.c_str(), stdout);
    std::exit(0);
}

[[noreturn]] void endWithUsage(const QString& problem) {
    std::fprintf(stderr, "panehost: %s\n", qPrintable(problem));
    std::exit(kUsage);
}

// The parser knows the program's name only from an application object.
std::string helpOf(const QCommandLineParser& parser) {
    return parser.helpText().replace(QStringLiteral("<executable_name>"), QStringLiteral("panehost")).toStdString();
}

}  // namespace

Request requestFrom(int argc, char** argv) {
    QCommandLineParser parser;
    describeTo(parser);
    QStringList arguments;
    for (int i = 0; i < argc; ++i) arguments << QString::fromLocal8Bit(argv[i]);
    if (!parser.parse(arguments)) endWithUsage(parser.errorText());
    if (parser.isSet(QStringLiteral("help"))) endWith(helpOf(parser));
    if (parser.isSet(QStringLiteral("version"))) endWith("panehost " TYPESLATE_VERSION "\n");

    bool isRow = true;
    const QString row = parser.value(QStringLiteral("select"));
    const QStringList bundles = parser.positionalArguments();
    Request request{.bundle = bundles.value(0, QString::fromStdString(platform::posix::paneBundlePath())),
                    .screenshot = parser.value(QStringLiteral("screenshot")),
                    .tab = parser.value(QStringLiteral("tab")),
                    .row = row.isEmpty() ? -1 : row.toInt(&isRow),
                    .dark = parser.isSet(QStringLiteral("dark")),
                    .choosesPlatform = parser.isSet(QStringLiteral("platform")),
                    .namesBundle = !bundles.isEmpty()};
    if (!isRow || bundles.size() > 1)
        endWithUsage(QStringLiteral("usage: panehost [--screenshot FILE] [--select ROW] [BUNDLE]"));
    return request;
}

}  // namespace host
