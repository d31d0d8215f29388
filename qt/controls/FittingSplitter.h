// A list and what unfolds beside it: side by side where there is room, else one above the other, half and half unless
// the user moves the handle. It asks for no more width than the widest of them needs.
#pragma once

#include <QSplitter>

namespace qt {

class FittingSplitter final : public QSplitter {
public:
    explicit FittingSplitter(QWidget* parent);
    QSize sizeHint() const override { return stacked(&QWidget::sizeHint); }
    QSize minimumSizeHint() const override { return stacked(&QWidget::minimumSizeHint); }

private:
    QSize stacked(QSize (QWidget::*hint)() const) const;
    void resizeEvent(QResizeEvent* event) override;

    bool isUsers_ = false;  // he has chosen their sizes
};

}  // namespace qt
