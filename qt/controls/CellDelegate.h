// Paints an icon, or a name over a small grey line.
#pragma once

#include "platform/Controls.h"

#include <QStyledItemDelegate>

namespace qt {

class CellModel;

class CellDelegate final : public QStyledItemDelegate {
public:
    static constexpr int kIconExtent = 32;  // points
    static constexpr int kMargin = 5;       // points, on each side of a cell's contents

    // The model outlives the delegate.
    CellDelegate(const CellModel& model, QObject* parent) : QStyledItemDelegate(parent), model_(model) {}

    // From the start to this call, images that are yet to be made are left out, so that the window need not wait for
    // them.
    void showEveryImage() { postponesImages_ = false; }
    static int rowHeight(const QFont& font);  // in points, of every row in a table with this font

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    const CellModel& model_;
    bool postponesImages_ = true;
};

// What rows of that look share, for whoever paints others: a selection that its text can be read on, and the lines and
// marks of a row within the option's rectangle.
QStyleOptionViewItem withReadableSelection(const QStyleOptionViewItem& option);
void drawLines(QPainter* painter, const QStyleOptionViewItem& option, const platform::CellValue& value);

}  // namespace qt
