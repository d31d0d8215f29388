// What can wait until a window is on the screen: icons, which are searched for in themes and read from files.
#pragma once

#include <QTimer>
#include <QWidget>

#include <functional>

namespace qt {

class FirstPaint final : public QObject {
public:
    // Calls the function once: as soon as the widget has been painted and its picture is on its way to the screen; or,
    // where nobody sees it, such as on another desktop, half a second after it was shown. Never after this object's
    // end.
    FirstPaint(QWidget& widget, std::function<void()> function);
    bool isOver() const { return !function_; }  // it was called, or is being called

private:
    bool eventFilter(QObject* widget, QEvent* event) override;

    std::function<void()> function_;
    QTimer timer_;
};

}  // namespace qt
