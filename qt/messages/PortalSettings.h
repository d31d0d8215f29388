// What the user has chosen for all programs, as the desktop's settings portal tells it
// (org.freedesktop.portal.Settings;
// https://flatpak.github.io/xdg-desktop-portal/docs/doc-org.freedesktop.portal.Settings.html).
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QVariant>

#include <functional>
#include <string_view>
#include <vector>

namespace qt {

class SignalReceiver;

// The colours and the size of texts that are wanted.
inline constexpr const char* kAppearance = "org.freedesktop.appearance";
// What GNOME keeps, and other desktops' portals hand on for its programs.
inline constexpr const char* kGnomeInterface = "org.gnome.desktop.interface";

class PortalSettings final {
public:
    struct Setting {
        const char *space, *name;
    };
    // The value has whatever type the portal gave it.
    using Handler = std::function<void(std::string_view name, const QVariant& value)>;

    // Asks for the settings and hands on each answer and each later change, as long as this object lives, on the thread
    // that made it. Waits for nobody: settings that the portal does not know or does not answer for, such as where
    // there is no portal or no bus, are never heard of. The handler must not end this object.
    PortalSettings(QDBusConnection bus, std::vector<Setting> settings, Handler handler);
    ~PortalSettings();

private:
    void askForOwner();
    void ask();
    void take(const Setting& setting, QVariant value);
    void takeChange(const QDBusMessage& signal);

    QDBusConnection bus_;
    const std::vector<Setting> settings_;
    const Handler handler_;
    QObject context_;  // of the questions; with it they end
    QDBusServiceWatcher starts_;
    QString owner_;  // the portal's unique name, once it has answered
    SignalReceiver* changes_;
};

}  // namespace qt
