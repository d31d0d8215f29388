// A sheet: a window-modal dialog around a widget of the interface file.
//
// A content without a layout keeps the places that its code gives it. Such a content is made for a line height of
// kDesignLineHeight; with larger text it is enlarged as a whole, also when the text grows later, and its buttons grow
// to what their labels need, those in the right half to the left.
#pragma once

#include "qt/controls/WidgetView.h"

#include <QDialog>
#include <QEventLoop>

namespace qt {

class QtPanel final : public WidgetView<platform::Panel, QDialog> {
public:
    static constexpr int kDesignLineHeight = 15;

    // The dialog takes the content out of its parent, whose child it becomes.
    explicit QtPanel(QWidget& content);

    // Of a dialog, newer versions of Qt do not note who has shown or hidden it.
    bool isHidden() const override { return widget_.isHidden(); }
    platform::Rect frame() const override { return {{}, contentSize()}; }
    void setFrame(const platform::Rect& frame) override { setContentSize(frame.size); }
    platform::Size contentSize() const override;
    void setContentSize(const platform::Size& size) override;
    void beginSheet(std::function<void(int returnCode)> didEnd) override;
    void beginSheetForWindowOf(platform::View& view, std::function<void(int returnCode)> didEnd) override;
    void endSheet(int returnCode) override;
    void runModal(std::function<void()> willClose) override;
    void stopModal() override;
    bool isRunningModal() const override { return modalLoop_ != nullptr; }
    // What Escape and the window's close button do.
    void closeByUser();
    void orderOut() override { widget_.hide(); }
    void refitText();  // to be called when the content's font has changed

private:
    void fitText();

    QWidget& content_;
    double textScale_ = 1;  // of what the content has its size for
    std::function<void(int)> didEnd_;
    std::function<void()> willClose_;
    QEventLoop* modalLoop_ = nullptr;  // while running modal
};

}  // namespace qt
