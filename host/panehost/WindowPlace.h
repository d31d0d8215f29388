// A window's size and place from one run to the next, kept in the preference domain of the program.
#pragma once

#include "platform/Preferences.h"

#include <QObject>

#include <string>

class QWidget;

namespace host {

class WindowPlace final : public QObject {
public:
    // Gives the window what is stored under the key, moved and shrunk to what the screens have room for, and keeps its
    // size and place each time it is closed. For a window that has not been shown. Both objects outlive this one.
    WindowPlace(QWidget& window, platform::PreferenceService& preferences, std::string domain, std::string key);

private:
    bool eventFilter(QObject* object, QEvent* event) override;

    QWidget& window_;
    platform::PreferenceService& preferences_;
    const std::string domain_, key_;
};

}  // namespace host
