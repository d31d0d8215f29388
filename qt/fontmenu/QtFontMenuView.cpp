#include "qt/fontmenu/QtFontMenuView.h"

#include <QEvent>
#include <QScrollBar>

namespace qt {

using namespace platform;

QtFontMenuView::QtFontMenuView(QTreeView& widget, const Bundle& texts)
    : WidgetView(widget),
      designedDescription_(widget.accessibleDescription()),
      model_(texts, nullptr),
      delegate_(
          model_, [&widget] { widget.viewport()->update(); }, nullptr),
      placeholder_(new QLabel(widget.viewport())) {
    widget.setModel(&model_);
    widget.setItemDelegate(&delegate_);
    widget.setHeaderHidden(true);
    widget.setUniformRowHeights(true);
    widget.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    widget.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    placeholder_->setObjectName(QStringLiteral("qt_placeholder"));
    placeholder_->setAlignment(Qt::AlignCenter);
    placeholder_->setWordWrap(true);
    placeholder_->setTextFormat(Qt::PlainText);
    placeholder_->hide();
    widget.viewport()->installEventFilter(this);
}

void QtFontMenuView::collectUnfolded(const QModelIndex& parent, QList<QStringList>& paths) const {
    for (int row = 0; row < model_.rowCount(parent); ++row) {
        const QModelIndex index = model_.index(row, 0, parent);
        if (!model_.hasChildren(index) || !widget_.isExpanded(index)) continue;
        paths << model_.path(index);
        collectUnfolded(index, paths);
    }
}

void QtFontMenuView::setMenu(std::shared_ptr<const ListedFonts> fonts, std::vector<FontMenuItem> items) {
    QList<QStringList> unfolded;
    collectUnfolded({}, unfolded);
    const QStringList current = model_.path(widget_.currentIndex());
    const int top = widget_.verticalScrollBar()->value();
    model_.setMenu(std::move(fonts), std::move(items));
    for (const QStringList& path : unfolded)
        if (const QModelIndex index = model_.find(path); index.isValid()) widget_.expand(index);
    if (const QModelIndex index = model_.find(current); index.isValid())
        widget_.selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    widget_.doItemsLayout();
    widget_.verticalScrollBar()->setValue(top);
    showPlaceholder();
}

void QtFontMenuView::setPlaceholder(std::string_view text) {
    placeholder_->setText(toQString(text));
    showPlaceholder();
}

void QtFontMenuView::showPlaceholder() {
    const bool isEmpty = model_.rowCount() == 0;
    placeholder_->setVisible(isEmpty);
    placeholder_->setGeometry(widget_.viewport()->rect());
    const QString description = isEmpty ? placeholder_->text() : designedDescription_;
    if (widget_.accessibleDescription() != description) widget_.setAccessibleDescription(description);
}

bool QtFontMenuView::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::Resize) placeholder_->setGeometry(widget_.viewport()->rect());
    return QObject::eventFilter(object, event);
}

}  // namespace qt
