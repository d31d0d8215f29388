// An area that scrolls up and down only: it asks for its content's whole size, and for a scroll bar's width more while
// it has less height than that.
#pragma once

#include <QScrollArea>

namespace qt {

class FittingScrollArea final : public QScrollArea {
public:
    // It follows the focus of what is in it, and is no stop on the way there.
    explicit FittingScrollArea(QWidget* parent) : QScrollArea(parent) { setFocusPolicy(Qt::NoFocus); }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    // Frameless, it shows what lies behind it.
    void showWhatLiesBehind();

private:
    int widthBesideContent() const;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

    bool isTooLow_ = false;
};

}  // namespace qt
