#include "host/PanehostRequest.h"

#include "platform/linux/Installation.h"
#include "platform/linux/Localized.h"

#include <QCommandLineParser>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace host {
namespace {

using platform::posix::localized;

constexpr int kUsage = 2;

struct OptionText {
    const char* name;
    std::string description;
    const char* value;
};

std::vector<OptionText> optionTexts() {
    return {
        {"screenshot", localized("Writes a picture of the window and ends; needs no display."), "file"},
        {"tab", localized("Opens the tab with this title."), "title"},
        {"select", localized("Selects the entry in this row, from 0."), "row"},
        {"dark", localized("Uses dark colours, for pictures."), nullptr},
        {"platform", localized("Where to draw: xcb, wayland, vnc, offscreen."), "platform"},
        {"style", localized("The look of the controls."), "style"},
    };
}

QString shown(const std::string& text) { return QString::fromStdString(text); }

void describeTo(QCommandLineParser& parser) {
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(shown(localized("Opens a settings pane in a window.")));
    parser.addPositionalArgument(QStringLiteral("bundle"), shown(localized("The pane; Typeslate's own by default.")),
                                 QStringLiteral("[BUNDLE]"));
    parser.addOption({{QStringLiteral("h"), QStringLiteral("help")}, shown(localized("Show this help and exit"))});
    parser.addOption({{QStringLiteral("v"), QStringLiteral("version")}, shown(localized("Show the version and exit"))});
    for (const OptionText& option : optionTexts())
        parser.addOption({QLatin1String(option.name), shown(option.description), QLatin1String(option.value)});
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
        endWithUsage(shown(localized("usage: panehost [--screenshot FILE] [--select ROW] [BUNDLE]")));
    return request;
}

}  // namespace host
