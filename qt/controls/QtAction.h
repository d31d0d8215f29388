// An action of an interface file: an item of menus, with the keys that do the same.
#pragma once

#include "platform/Controls.h"
#include "qt/texts/Utf8.h"

#include <QAction>

namespace qt {

// A button to its owner. Does not own the action.
class QtAction final : public platform::Button {
public:
    explicit QtAction(QAction& action) : action_(action) {}
    bool isEnabled() const override { return action_.isEnabled(); }
    void setEnabled(bool enabled) override { action_.setEnabled(enabled); }
    std::string title() const override { return action_.text().toStdString(); }
    void setTitle(std::string_view title) override { action_.setText(toQString(title)); }

private:
    QAction& action_;
};

}  // namespace qt
