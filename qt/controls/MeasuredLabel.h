// A label that remembers how high its text is. Before a window is first shown its layouts ask every wrapped label many
// times for the height at the same few widths, and each answer lays the text out anew.
#pragma once

#include <QEvent>
#include <QHash>
#include <QLabel>
#include <QVariant>

#include <tuple>
#include <utility>

namespace qt {

class MeasuredLabel final : public QLabel {
public:
    using QLabel::QLabel;

    int heightForWidth(int width) const override {
        if (Basis now = basis(); now != basis_ || heights_.size() == kMostWidths) {
            heights_.clear();
            basis_ = std::move(now);
        }
        const auto known = heights_.constFind(width);
        return known != heights_.cend() ? *known : *heights_.insert(width, QLabel::heightForWidth(width));
    }

private:
    // A label with the dynamic property "linesAbove" leaves room for so many lines above its text, for another label.
    bool event(QEvent* event) override {
        const int lines = property("linesAbove").toInt();
        const bool isOfSize = event->type() == QEvent::FontChange || event->type() == QEvent::DynamicPropertyChange;
        if (lines > 0 && isOfSize) setContentsMargins(0, lines * fontMetrics().lineSpacing(), 0, 0);
        return QLabel::event(event);
    }

    using Basis = std::tuple<QString, Qt::TextFormat, Qt::TextInteractionFlags, QFont, const QStyle*, Qt::Alignment,
                             QMargins, int, int, int, int, bool>;
    static constexpr int kMostWidths = 16;  // of a window whose size is changed

    // All that the height depends on, for a label does not hear of its own new text.
    Basis basis() const {
        return {text(),   textFormat(), textInteractionFlags(), font(),
                style(),  alignment(),  contentsMargins(),      margin(),
                indent(), frameWidth(), minimumWidth(),         wordWrap()};
    }

    mutable Basis basis_;
    mutable QHash<int, int> heights_;  // by width
};

}  // namespace qt
