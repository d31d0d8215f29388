// A bar in front of a control whose value is another than it might be, and a menu of the control's own with what can be
// done about it. Shape, tool tip and the control's accessible description say it, not the colour alone.
#pragma once

#include "platform/Controls.h"

#include <QWidget>

#include <optional>

namespace qt {

void setDifferenceMark(QWidget& control, const std::optional<platform::ControlMark>& mark);

}  // namespace qt
