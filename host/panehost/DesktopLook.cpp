#include "host/panehost/DesktopLook.h"

#include <QApplication>
#include <QDBusArgument>
#include <QScreen>

#include <algorithm>
#include <cmath>
#include <map>

namespace host {
namespace {

constexpr int kPause = 50;  // milliseconds
constexpr double kSmallestScale = 0.5, kLargestScale = 3;
constexpr const char* kTextScale = "text-scaling-factor";

bool isAnySet(std::initializer_list<const char*> variables) {
    return std::any_of(variables.begin(), variables.end(),
                       [](auto* name) { return !qEnvironmentVariableIsEmpty(name); });
}

bool isPlasma() {
    const QString desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    if (desktops.isEmpty()) return isAnySet({"KDE_FULL_SESSION"});
    return desktops.split(QLatin1Char(':')).contains(QStringLiteral("KDE"), Qt::CaseInsensitive);
}

// Under X11 a desktop may tell every toolkit the size of texts by the resource Xft.dpi, which Qt takes for all it
// draws.
bool hasSizeOfDisplay() {
    constexpr double kUsual = 96;
    if (QGuiApplication::platformName() != QStringLiteral("xcb")) return false;
    const QScreen& screen = *QGuiApplication::primaryScreen();
    return std::abs(screen.logicalDotsPerInch() * screen.devicePixelRatio() - kUsual) > 1;
}

// The portal's form: one is the wish, and what is unknown counts as none.
void readNumber(bool& wish, const QVariant& value) {
    if (value.userType() == QMetaType::UInt) wish = value.toUInt() == 1;
}

void readColor(QColor& color, const QVariant& value) {
    if (value.userType() != qMetaTypeId<QDBusArgument>()) return;
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QStringLiteral("(ddd)")) return;
    double channels[3] = {};
    argument.beginStructure();
    for (double& channel : channels) argument >> channel;
    argument.endStructure();
    const bool isColor =
        std::all_of(std::begin(channels), std::end(channels), [](double c) { return c >= 0 && c <= 1; });
    const auto part = [&](int i) { return static_cast<float>(channels[i]); };
    color = isColor ? QColor::fromRgbF(part(0), part(1), part(2)) : QColor();
}

const std::map<std::string_view, void (*)(ColorWish&, const QVariant&)> kColorReaders = {
    {"color-scheme", [](ColorWish& wish, const QVariant& value) { readNumber(wish.isDark, value); }},
    {"contrast", [](ColorWish& wish, const QVariant& value) { readNumber(wish.hasContrast, value); }},
    {"accent-color", [](ColorWish& wish, const QVariant& value) { readColor(wish.accent, value); }},
};

std::vector<qt::PortalSettings::Setting> settingsFor(FollowedLook followed) {
    std::vector<qt::PortalSettings::Setting> settings;
    if (followed.colors)
        for (auto& [name, reader] : kColorReaders) settings.push_back({qt::kAppearance, name.data()});
    if (followed.textSize) settings.push_back({qt::kGnomeInterface, kTextScale});
    return settings;
}

}  // namespace

FollowedLook followedLook(bool choosesStyle) {
    if (isPlasma() || isAnySet({"QT_QPA_PLATFORMTHEME"})) return {.colors = false, .textSize = false};
    return {.colors = !choosesStyle && !isAnySet({"QT_STYLE_OVERRIDE"}),
            .textSize = !isAnySet({"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_FONT_DPI"})};
}

DesktopLook::DesktopLook(QDBusConnection bus, FollowedLook followed)
    : followed_(followed),
      portal_(std::move(bus), settingsFor(followed), [this](auto name, auto& value) { take(name, value); }) {
    delay_.setSingleShot(true);
    delay_.callOnTimeout([this] { show(); });
    if (followed.textSize)
        QObject::connect(QGuiApplication::primaryScreen(), &QScreen::geometryChanged, &delay_,
                         [this] { delay_.start(0); });
}

void DesktopLook::take(std::string_view name, const QVariant& value) {
    if (auto reader = kColorReaders.find(name); reader != kColorReaders.end()) reader->second(wanted_, value);
    if (name == kTextScale && value.userType() == QMetaType::Double)
        if (const double scale = value.toDouble(); scale >= kSmallestScale && scale <= kLargestScale)
            wantedScale_ = scale;
    if (!delay_.isActive()) delay_.start(std::exchange(pause_, kPause));
}

void DesktopLook::show() {
    showColors();
    showTextSize();
}

void DesktopLook::showColors() {
    if (std::exchange(shown_, wanted_) == wanted_) return;
    QApplication::setPalette({});
    QApplication::setPalette(replacedColors(QApplication::palette(), wanted_));
}

void DesktopLook::showTextSize() {
    const double scale = hasSizeOfDisplay() ? 1 : wantedScale_;
    if (scale == shownScale_) return;
    if (shownScale_ == 1) ownFont_ = QApplication::font();
    QFont font = ownFont_;
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * scale);
    else
        font.setPixelSize(static_cast<int>(std::lround(font.pixelSize() * scale)));
    QApplication::setFont(font);
    shownScale_ = scale;
}

}  // namespace host
