// Colours and the size of texts as the user wants them on the desktop, followed while the program runs.
#pragma once

#include "host/panehost/Colors.h"
#include "qt/messages/PortalSettings.h"

#include <QFont>
#include <QTimer>

namespace host {

struct FollowedLook {
    bool colors = true, textSize = true;
};

// Without what the user has chosen for this program or for Qt (a style, a platform theme, a scale; by the environment
// or, for the style, as said), and without what Qt takes from the desktop itself, as it does everything in Plasma.
FollowedLook followedLook(bool choosesStyle);

// What the portal says of color-scheme, accent-color, contrast (org.freedesktop.appearance) and of text-scaling-factor
// (org.gnome.desktop.interface; 0.5 to 3). What has another type or is out of range changes nothing, but an accent that
// is out of range is none. Changes that come faster than 20 times a second are not all shown.
class DesktopLook final {
public:
    // Nothing waits for the answers. For the one application, which it leaves as it is then.
    DesktopLook(QDBusConnection bus, FollowedLook followed);

private:
    void take(std::string_view name, const QVariant& value);
    void show();
    void showColors();
    void showTextSize();

    const FollowedLook followed_;
    ColorWish wanted_, shown_;
    double wantedScale_ = 1, shownScale_ = 1;
    QFont ownFont_;  // at scale 1; set while another is shown
    QTimer delay_;
    int pause_ = 0;  // milliseconds before the next change is shown
    qt::PortalSettings portal_;
};

}  // namespace host
