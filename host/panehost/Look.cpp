#include "host/panehost/Look.h"

#include <QApplication>
#include <QFileInfo>
#include <QIcon>
#include <QPalette>
#include <QStandardPaths>
#include <QStyleFactory>

namespace host {
namespace {

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
    palette.setColor(QPalette::Link, QColor(0x6c, 0xb8, 0xf0));
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

}  // namespace

void chooseLook(bool isDark) {
    bool hasDesktop = QGuiApplication::platformName() != QStringLiteral("offscreen");
    if (!hasDesktop || isDark) QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    if (!hasDesktop) chooseIconTheme();
    if (isDark) QApplication::setPalette(darkPalette());
}

}  // namespace host
