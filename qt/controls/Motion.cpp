#include "qt/controls/Motion.h"

#include "qt/messages/SessionBus.h"

#include <QStyle>

namespace qt {

namespace {

constexpr const char* kReducedMotion = "reduced-motion";
constexpr const char* kAnimations = "enable-animations";
constexpr unsigned kIsReduced = 1;

}  // namespace

Motion::Motion(const QWidget& widget) : widget_(widget) {}

Motion::~Motion() {
    if (!portal_) return;
    portal_.reset();
    QDBusConnection::disconnectFromBus(connectionName_);
}

void Motion::follow() {
    if (portal_) return;
    connectionName_ = freshConnectionName();
    const std::vector<PortalSettings::Setting> asked{{kAppearance, kReducedMotion}, {kGnomeInterface, kAnimations}};
    portal_ = std::make_unique<PortalSettings>(sessionBusConnection(connectionName_), asked,
                                               [this](auto name, auto& value) { take(name, value); });
}

void Motion::take(std::string_view name, const QVariant& value) {
    if (name == kReducedMotion && value.userType() == QMetaType::UInt) isReduced_ = value.toUInt() == kIsReduced;
    if (name == kAnimations && value.userType() == QMetaType::Bool) isAnimated_ = value.toBool();
}

bool Motion::isUnwanted() const {
    return isReduced_ || !isAnimated_ ||
           widget_.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &widget_) <= 0;
}

}  // namespace qt
