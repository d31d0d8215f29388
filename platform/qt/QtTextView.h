// A text that scrolls, plain or rich.
#pragma once

#include "platform/qt/WidgetView.h"

#include <QTextEdit>

namespace platform::qt {

class QtTextView final : public WidgetView<TextView, QTextEdit> {
public:
    using WidgetView::WidgetView;
    void setString(std::string_view text) override { widget_.setPlainText(toQString(text)); }
    bool loadRichText(std::string_view path) override;
};

}  // namespace platform::qt
