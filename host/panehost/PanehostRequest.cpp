#include "host/panehost/PanehostRequest.h"

#include "host/panehost/ToolkitTexts.h"
#include "linux/system/Installation.h"
#include "linux/texts/Localized.h"
#include "linux/texts/TextColumns.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace host {
namespace {

using linux::helpItem;
using linux::localized;

constexpr int kUsage = 2;

struct OptionText {
    const char *letter, *name;
    std::string description;
    const char* value;
};

std::vector<OptionText> optionTexts() {
    return {
        {"h", "help", localized("Show this help and exit"), nullptr},
        {"v", "version", localized("Show the version and exit"), nullptr},
        {nullptr, "screenshot", localized("Writes a picture of the window and ends; needs no display."), "file"},
        {nullptr, "tab", localized("Opens the tab with this title."), "title"},
        {nullptr, "select", localized("Selects the entry in this row, from 0."), "row"},
        {nullptr, "dark", localized("Uses dark colours, for pictures."), nullptr},
        {nullptr, "reverse", localized("Lays the window out from right to left."), nullptr},
        {nullptr, "platform", localized("Where to draw: xcb, wayland, vnc, offscreen."), "platform"},
        {nullptr, "style", localized("The look of the controls: fusion, windows."), "style"},
    };
}

QCommandLineOption parserOption(const OptionText& option) {
    QStringList names{QLatin1String(option.name)};
    if (option.letter) names << QLatin1String(option.letter);
    return {names, QString(), QLatin1String(option.value)};
}

std::string termOf(const OptionText& option) {
    std::string term = option.letter ? std::string("-") + option.letter + ", " : "";
    term.append("--").append(option.name);
    return option.value ? term + " <" + option.value + ">" : term;
}

std::string helpText() {
    std::string text = localized("Opens a settings pane in a window.") + "\n";
    text += localized("Usage") + ": panehost [" + localized("OPTIONS") + "] [BUNDLE]\n";
    text.append("\n").append(localized("Positionals")).append(":\n");
    text += helpItem("BUNDLE", localized("The pane; Typeslate's own by default."));
    text.append("\n").append(localized("Options")).append(":\n");
    for (const OptionText& option : optionTexts()) text += helpItem(termOf(option), option.description);
    return text;
}

[[noreturn]] void endWith(const std::string& answer) {
    std::fputs(answer.c_str(), stdout);
    std::exit(0);
}

[[noreturn]] void endWithUsage(const std::string& problem) {
    std::fprintf(stderr, "panehost: %s\n", problem.c_str());
    std::exit(kUsage);
}

// What the toolkit says is in the user's language only while there is an application object.
std::string problemWith(const QStringList& arguments, QCommandLineParser& parser, int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const std::unique_ptr<QTranslator> texts = toolkitTexts(linux::paneBundlePath());
    parser.parse(arguments);
    return parser.errorText().toStdString();
}

}  // namespace

Request requestFrom(int argc, char** argv) {
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    for (const OptionText& option : optionTexts()) parser.addOption(parserOption(option));
    QStringList arguments;
    for (int i = 0; i < argc; ++i) arguments << QString::fromLocal8Bit(argv[i]);
    if (!parser.parse(arguments)) endWithUsage(problemWith(arguments, parser, argc, argv));
    if (parser.isSet(QStringLiteral("help"))) endWith(helpText());
    if (parser.isSet(QStringLiteral("version"))) endWith("panehost " TYPESLATE_VERSION "\n");

    bool isRow = true;
    const QString row = parser.value(QStringLiteral("select"));
    const QStringList bundles = parser.positionalArguments();
    Request request{.bundle = bundles.value(0, QString::fromStdString(linux::paneBundlePath())),
                    .screenshot = parser.value(QStringLiteral("screenshot")),
                    .tab = parser.value(QStringLiteral("tab")),
                    .row = row.isEmpty() ? -1 : row.toInt(&isRow),
                    .dark = parser.isSet(QStringLiteral("dark")),
                    .choosesPlatform = parser.isSet(QStringLiteral("platform")),
                    .choosesStyle = parser.isSet(QStringLiteral("style")),
                    .namesBundle = !bundles.isEmpty()};
    if (!isRow || bundles.size() > 1)
        endWithUsage(localized("usage: panehost [--screenshot FILE] [--select ROW] [BUNDLE]"));
    return request;
}

}  // namespace host
