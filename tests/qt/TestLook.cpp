// The look that the desktop's user has chosen, on a bus with a portal that says it, and says nonsense.
#include "host/panehost/DesktopLook.h"
#include "tests/qt/FakePortal.h"
#include "tests/qt/QtTest.h"

#include <QApplication>
#include <QDBusArgument>

#include <cmath>

namespace {

constexpr const char *kScheme = "color-scheme", *kAccent = "accent-color", *kContrast = "contrast",
                     *kScale = "text-scaling-factor";

QVariant color(double red, double green, double blue) {
    QDBusArgument channels;
    channels.beginStructure();
    channels << red << green << blue;
    channels.endStructure();
    return QVariant::fromValue(channels);
}

// Its ground, letters, selection and their size.
std::string shown() {
    const QPalette palette = QApplication::palette();
    auto name = [&](QPalette::ColorRole role) { return palette.color(role).name().toStdString() + " "; };
    return name(QPalette::Base) + name(QPalette::Text) + name(QPalette::Highlight) +
           QString::number(QApplication::font().pointSizeF()).toStdString();
}

struct Step {
    const char* name;
    QVariant value;
    const char* shown;  // null: what was before
};

}  // namespace

TEST(TheLookFollowsTheDesktopAndWhatMakesNoSenseChangesNothing) {
    PrivateBus bus;
    const double nan = std::nan("");
    const QVariant nonsense[] = {QString(1 << 20, QLatin1Char('x')), -1,  1, color(nan, 0, 0), nan, 1e9, 0.4, 3.1,
                                 QStringList{QStringLiteral("1.5")}, true};
    const Step kSteps[] = {
        {kScale, 1.5, "#1f2326 #f4f5f6 #2f7fb8 13.5"},
        {kAccent, color(0.9, 0.38, 0), "#1f2326 #f4f5f6 #b34c00 13.5"},
        {kAccent, color(0, 0, 0), "#1f2326 #f4f5f6 #454545 13.5"},
        {kContrast, 1U, "#1f2326 #ffffff #454545 13.5"},
        {kScheme, 2U, "#ffffff #000000 #000000 13.5"},
        {kAccent, color(1, 1, 1), "#ffffff #000000 #6a6a6a 13.5"},
        {kContrast, 7U, "#ffffff #000000 #6a6a6a 13.5"},
        {kScale, 0.5, "#ffffff #000000 #6a6a6a 4.5"},
        {kScheme, 9U, "#ffffff #000000 #6a6a6a 4.5"},
        {kAccent, color(0, 0, 1.01), "#ffffff #000000 #308cc6 4.5"},
        {kScale, 1.0, "#ffffff #000000 #308cc6 9"},
    };
    QFont font = QApplication::font();
    font.setPointSizeF(9);
    QApplication::setFont(font);
    const std::string own = shown();
    {
        host::DesktopLook look(qt::sessionBusConnection(QStringLiteral("look")), {});
        QDBusConnection stranger = qt::sessionBusConnection(QStringLiteral("stranger"));
        FakePortal portal;
        portal.set(qt::kAppearance, kScheme, 1U);
        portal.start();
        CHECK(waitFor([] { return shown() == "#1f2326 #f4f5f6 #2f7fb8 9"; }));
        for (const Step& step : kSteps) {
            const char* space = step.name == kScale ? qt::kGnomeInterface : qt::kAppearance;
            portal.set(space, step.name, step.value);
            CHECK(waitFor([&] { return shown() == step.shown; }));
            CHECK_EQ(shown(), step.shown);
            FakePortal::announce(stranger, qt::kAppearance, kScheme, 1U);
            portal.set("org.example", kScheme, 1U);
            for (const char* name : {kScheme, kContrast, kAccent, kScale})
                for (const QVariant& value : nonsense)
                    if (name != kAccent || value.userType() != nonsense[3].userType()) portal.set(space, name, value);
        }
    }
    CHECK_EQ(shown(), own);
    QDBusConnection::disconnectFromBus(QStringLiteral("look"));
    QDBusConnection::disconnectFromBus(QStringLiteral("stranger"));
}

TEST(WhatTheUserOrTheToolkitChoosesIsNotFollowed) {
    struct {
        const char *variable, *value;
        bool choosesStyle, colors, textSize;
    } const kCases[] = {
        {"XDG_CURRENT_DESKTOP", "ubuntu:GNOME", false, true, true},
        {"XDG_CURRENT_DESKTOP", "KDE", false, false, false},
        {"KDE_FULL_SESSION", "true", false, false, false},
        {"QT_QPA_PLATFORMTHEME", "qt5ct", false, false, false},
        {"QT_STYLE_OVERRIDE", "Windows", false, false, true},
        {"QT_STYLE_OVERRIDE", "", true, false, true},
        {"QT_SCALE_FACTOR", "1", false, true, false},
        {"QT_SCREEN_SCALE_FACTORS", "2;1", false, true, false},
        {"QT_FONT_DPI", "120", false, true, false},
    };
    for (const auto& c : kCases) {
        CONTEXT(c.variable);
        std::vector<std::unique_ptr<check::ScopedEnvironment>> others;
        for (const auto& other : kCases)
            others.push_back(std::make_unique<check::ScopedEnvironment>(other.variable, nullptr));
        check::ScopedEnvironment chosen(c.variable, c.value);
        const host::FollowedLook followed = host::followedLook(c.choosesStyle);
        CHECK_EQ(followed.colors, c.colors);
        CHECK_EQ(followed.textSize, c.textSize);
    }
}
