#include "host/panehost/Look.h"

#include "host/panehost/Colors.h"

#include <QApplication>
#include <QFileInfo>
#include <QIcon>
#include <QStandardPaths>
#include <QStyleFactory>

namespace host {
namespace {

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
    if (isDark) QApplication::setPalette(replacedColors(QApplication::palette(), {.isDark = true}));
}

}  // namespace host
