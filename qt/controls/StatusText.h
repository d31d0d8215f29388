// A few lines of plain text that others may have written: it can be selected, is broken anywhere if need be, scrolls
// when it is longer than its lines, and asks for the same least size whatever it says.
#pragma once

#include "qt/controls/WidgetView.h"

#include <QPlainTextEdit>

namespace qt {

class StatusText final : public QPlainTextEdit {
public:
    static constexpr int kMostLines = 4;     // that are in sight at one time
    static constexpr int kLongest = 10'000;  // characters; the rest of a longer text is left out

    explicit StatusText(QWidget* parent);

    void show(const QString& text);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

private:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void fit();

    int lines_ = 1;
};

class QtStatusText final : public WidgetView<platform::TextField, StatusText> {
public:
    using WidgetView::WidgetView;
    std::string stringValue() const override { return widget_.toPlainText().toStdString(); }
    std::int64_t integerValue() const override { return widget_.toPlainText().toLongLong(); }
    void setStringValue(std::string_view text, platform::TextTone tone) override;
    void setIntegerValue(std::int64_t number) override;
    platform::Size cellSizeForBounds(const platform::Rect& bounds) const override;
};

}  // namespace qt
