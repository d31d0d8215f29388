#include "host/panehost/StartupToken.h"

#include "host/panehost/X11Startup.h"

#include <QGuiApplication>
#include <QWidget>

namespace host {
namespace {

constexpr const char* kStartupId = "DESKTOP_STARTUP_ID";
constexpr const char* kActivationToken = "XDG_ACTIVATION_TOKEN";

const std::pair<const char*, QString> kTokens[] = {{kStartupId, QStringLiteral("desktop-startup-id")},
                                                   {kActivationToken, QStringLiteral("activation-token")}};

}  // namespace

QVariantMap startupTokens() {
    QVariantMap tokens;
    for (auto& [variable, key] : kTokens)
        if (qEnvironmentVariableIsSet(variable)) tokens.insert(key, qEnvironmentVariable(variable));
    return tokens;
}

void bringForward(QWidget& window, const QVariantMap& tokens) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    // Where Qt looks for it on Wayland.
    if (QString token = tokens.value(kTokens[1].second).toString(); !token.isEmpty())
        qputenv(kActivationToken, token.toLocal8Bit());
    const std::string id = tokens.value(kTokens[0].second).toString().toStdString();
    const bool isX11 = QGuiApplication::platformName() == QStringLiteral("xcb");
    if (id.empty() || !isX11 || !endX11Startup(static_cast<std::uint32_t>(window.winId()), id)) window.activateWindow();
}

}  // namespace host
