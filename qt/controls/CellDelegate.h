// Paints an icon, or a name over a small grey line.
#pragma once

#include "platform/Controls.h"

#include <QStyledItemDelegate>

namespace qt {

class CellModel;

class CellDelegate final : public QStyledItemDelegate {
public:
    static constexpr int kIconExtent = 32;
    static constexpr int kMargin = 5;

    CellDelegate(const CellModel& model, QObject* parent) : QStyledItemDelegate(parent), model_(model) {}

    // While set, images that are yet to be loaded are left out, so that the window need not wait for them.
    void setPostponesImages(bool postpones) { postponesImages_ = postpones; }
    static int rowHeight(const QFont& font);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    const CellModel& model_;
    bool postponesImages_ = true;
};

}  // namespace qt
