// A progress bar, which keeps its room while it is hidden.
#pragma once

#include "qt/controls/WidgetView.h"

#include <QProgressBar>

namespace qt {

class QtProgressIndicator final : public WidgetView<platform::ProgressIndicator, QProgressBar> {
public:
    explicit QtProgressIndicator(QProgressBar& bar) : WidgetView(bar) {
        QSizePolicy policy = bar.sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        bar.setSizePolicy(policy);
    }
    void setIndeterminate(bool value) override { isIndeterminate_ = value; }
    // A bar without a range moves by itself.
    void startAnimation() override { widget_.setRange(0, isIndeterminate_ ? 0 : kSteps); }
    void stopAnimation() override {
        widget_.setRange(0, kSteps);
        widget_.reset();
    }

private:
    static constexpr int kSteps = 100;
    bool isIndeterminate_ = false;
};

}  // namespace qt
