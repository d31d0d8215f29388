// Paints the lines of a font menu, all of one height: a check mark, an icon for the kind of font, the name in its own
// face or a sample beside it, and at the far end how many copies there are. Until a face has been drawn, and where it
// cannot be, its name is in the interface's face.
#pragma once

#include "qt/fontmenu/FaceImages.h"
#include "qt/fontmenu/FontMenuModel.h"

#include <QStyledItemDelegate>

namespace qt {

class FontMenuDelegate final : public QStyledItemDelegate {
public:
    static constexpr int kLargestSize = 72;  // points; larger names are shown in this one

    // `changed` is called when a line looks otherwise now. The model outlives it.
    FontMenuDelegate(const FontMenuModel& model, std::function<void()> changed, QObject* parent)
        : QStyledItemDelegate(parent), model_(model), images_(std::move(changed)) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    QImage image(const QStyleOptionViewItem& option, const QModelIndex& index, const QColor& color) const;

    const FontMenuModel& model_;
    mutable FaceImages images_;
};

}  // namespace qt
