// Whether the user wants pictures and texts to move by themselves.
#pragma once

#include "qt/messages/PortalSettings.h"

#include <QWidget>

#include <memory>

namespace qt {

// The widget's style knows (Plasma's), or the desktop's settings portal does: what GNOME keeps and others hand on, or,
// in newer portals, a setting for all desktops. Until one of them says otherwise things move.
class Motion final {
public:
    explicit Motion(const QWidget& widget);
    ~Motion();

    // Has the portal asked from now on; further calls do nothing. Its answer comes later, and its changes are heard.
    void follow();
    bool isUnwanted() const;

private:
    void take(std::string_view name, const QVariant& value);

    const QWidget& widget_;
    bool isReduced_ = false, isAnimated_ = true;
    QString connectionName_;
    std::unique_ptr<PortalSettings> portal_;
};

}  // namespace qt
