// A label that remembers how high its text is. Before a window is first shown its layouts ask every wrapped label many
// times for the height at the same few widths, and each answer lays the text out anew.
#pragma once

#include <QHash>
#include <QLabel>

#include <tuple>

namespace qt {

class MeasuredLabel final : public QLabel {
public:
    using QLabel::QLabel;

    int heightForWidth(int width) const override {
        // All that counts for the height. A label does not hear of its own new text.
        const Basis basis(text(), font(), contentsMargins(), minimumWidth(), margin(), indent(), wordWrap(), style());
        if (basis != basis_ || heights_.size() == kMostWidths) heights_.clear();
        basis_ = basis;
        const auto known = heights_.constFind(width);
        return known != heights_.cend() ? *known : *heights_.insert(width, QLabel::heightForWidth(width));
    }

private:
    using Basis = std::tuple<QString, QFont, QMargins, int, int, int, bool, const QStyle*>;
    static constexpr int kMostWidths = 16;  // of a window whose size is changed

    mutable Basis basis_;
    mutable QHash<int, int> heights_;  // by width
};

}  // namespace qt
