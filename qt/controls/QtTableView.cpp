#include "qt/controls/QtTableView.h"

#include "qt/UriList.h"
#include "qt/controls/PageKeys.h"

#include <QAbstractButton>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QTimer>

#include <utility>

namespace qt {

using namespace platform;

QtTableView::QtTableView(QTableView& widget, InterfaceOwner& owner)
    : WidgetView(widget),
      owner_(owner),
      model_(*this, widget.property("columnIdentifiers").toStringList(), widget.property("columnTitles").toStringList(),
             nullptr),
      delegate_(model_, nullptr),
      firstPaint_(*widget.viewport(), [this] { showPostponedImages(); }) {
    widget.horizontalHeader()->hide();  // before they have anything to measure
    widget.verticalHeader()->hide();
    widget.setModel(&model_);
    widget.setItemDelegate(&delegate_);
    widget.setSelectionBehavior(QAbstractItemView::SelectRows);
    widget.setSelectionMode(QAbstractItemView::SingleSelection);
    widget.setEditTriggers(QAbstractItemView::NoEditTriggers);
    widget.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    widget.setShowGrid(false);
    widget.setTabKeyNavigation(false);
    widget.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    widget.horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    widget.horizontalHeader()->setSectionResizeMode(model_.columnCount() - 1, QHeaderView::Stretch);
    applyMetrics();
    widget.installEventFilter(this);
    widget.viewport()->installEventFilter(this);
    connect(widget.selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { takeSelection(); });
    connect(&widget, &QTableView::doubleClicked, this, [this] { performDoubleAction(); });
}

void QtTableView::applyMetrics() {
    widget_.verticalHeader()->setMinimumSectionSize(1);
    widget_.verticalHeader()->setDefaultSectionSize(CellDelegate::rowHeight(widget_.font()));
    widget_.horizontalHeader()->setMinimumSectionSize(1);
    if (model_.columnCount() > 1)
        widget_.horizontalHeader()->resizeSection(0, CellDelegate::kIconExtent + 2 * CellDelegate::kMargin);
}

void QtTableView::setDataSource(TableDataSource* source) {
    model_.setDataSource(source);
    reloadData();
}

void QtTableView::setSelectionObserver(std::function<void(const InterfaceNotification&)> observer) {
    observer_ = std::move(observer);
}

void QtTableView::registerForFileNameDrags() { widget_.setAcceptDrops(true); }

void QtTableView::setImageColumn(std::string_view identifier) { model_.setImageColumn(toQString(identifier)); }

void QtTableView::reloadData() {
    if (std::exchange(needsRows_, true)) return;
    QTimer::singleShot(0, this, [this] { loadRowsIfNeeded(); });
}

void QtTableView::loadRowsIfNeeded() {
    if (!std::exchange(needsRows_, false)) return;
    isLoading_ = true;
    model_.refresh(selectedRow_);
    isLoading_ = false;
    // The view moves the selection to a neighbour when its row goes; here it goes with the row.
    if (selectedRow_ >= model_.allRows()) selectedRow_ = -1;
    showSelection();
    showPlaceholder();
    tellOfSelection();
}

int QtTableView::numberOfRows() {
    loadRowsIfNeeded();
    return model_.allRows();
}

void QtTableView::selectRow(int row) {
    loadRowsIfNeeded();
    if (row >= model_.allRows()) return;
    selectedRow_ = std::max(row, -1);
    isLoading_ = true;
    model_.showRow(row);
    isLoading_ = false;
    showSelection();
    tellOfSelection();
}

// The view scrolls to a row that becomes the current one; whoever looks at others keeps them.
void QtTableView::showSelection() {
    const QModelIndex index = model_.indexOf(selectedRow_).siblingAtColumn(0);
    const QModelIndexList selected = widget_.selectionModel()->selectedRows();
    if (selected.size() == (index.isValid() ? 1 : 0) && (selected.isEmpty() || selected.first() == index)) return;
    isLoading_ = true;
    widget_.setAutoScroll(false);
    if (index.isValid())
        widget_.selectionModel()->setCurrentIndex(index,
                                                  QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    else
        widget_.clearSelection();
    widget_.setAutoScroll(true);
    isLoading_ = false;
}

void QtTableView::scrollRowToVisible(int row) {
    loadRowsIfNeeded();
    if (const QModelIndex index = model_.indexOf(row); index.isValid()) widget_.scrollTo(index);
}

// What the user selects in the view.
void QtTableView::takeSelection() {
    if (isLoading_) return;
    const QModelIndexList rows = widget_.selectionModel()->selectedRows();
    selectedRow_ = rows.isEmpty() ? -1 : model_.sourceRow(rows.first());
    tellOfSelection();
}

void QtTableView::tellOfSelection() {
    if (std::exchange(announcedRow_, selectedRow_) == selectedRow_) return;
    if (observer_) observer_({kTableViewSelectionDidChange, this});
}

void QtTableView::setPlaceholder(std::string_view text) {
    if (!placeholder_) {
        placeholder_ = new QLabel(widget_.viewport());
        placeholder_->setObjectName(widget_.objectName() + QStringLiteral("Placeholder"));
        placeholder_->setWordWrap(true);
        placeholder_->setTextFormat(Qt::PlainText);
        placeholder_->setAlignment(Qt::AlignCenter);
        placeholder_->setMargin(2 * CellDelegate::kMargin);
        placeholder_->setAttribute(Qt::WA_TransparentForMouseEvents);
        placeholder_->hide();
    }
    placeholder_->setText(toQString(text));
}

void QtTableView::showPlaceholder() {
    if (!placeholder_) return;
    placeholder_->setGeometry(widget_.viewport()->rect());
    placeholder_->setVisible(model_.rowCount() == 0 && model_.allRows() > 0);
}

void QtTableView::performDoubleAction() {
    if (!doubleAction_.empty()) owner_.performAction(doubleAction_, *this);
}

bool QtTableView::handleKey(const QKeyEvent& event) {
    // Before a letter begins a search for a row.
    for (QWidget* page = &widget_; page; page = page->parentWidget())
        if (triggerByKey(page->actions(), event)) return true;
    if (event.modifiers() & ~Qt::KeypadModifier) return false;
    QAbstractButton* remover = nullptr;
    switch (event.key()) {
        case Qt::Key_Home:
        case Qt::Key_End:
            widget_.setCurrentIndex(model_.index(event.key() == Qt::Key_Home ? 0 : model_.rowCount() - 1, 0));
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            performDoubleAction();
            return !doubleAction_.empty();
        case Qt::Key_Delete:
            remover = removeButton();
            if (remover && !event.isAutoRepeat()) remover->click();  // a key held down shall not clear the table
            return remover;
        default:
            return false;
    }
}

// It is beside the table, not in it.
QAbstractButton* QtTableView::removeButton() const {
    const QString name = widget_.property("removeButton").toString();
    QAbstractButton* button = nullptr;
    for (QWidget* around = widget_.parentWidget(); around && !button; around = around->parentWidget())
        button = around->findChild<QAbstractButton*>(name);
    return name.isEmpty() ? nullptr : button;
}

// Of the selected row; a press of the right button has selected the row below it.
bool QtTableView::showMenu(const QContextMenuEvent& event) {
    const int row = selectedRow();
    const QModelIndex index = model_.indexOf(row);
    const bool isByMouse = event.reason() == QContextMenuEvent::Mouse;
    const QString opening = widget_.property("openTitle").toString();
    if (!index.isValid() || opening.isEmpty()) return false;
    if (isByMouse && widget_.indexAt(event.pos()).row() != index.row()) return false;
    auto* menu = new QMenu(&widget_);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* open = menu->addAction(opening, this, [this] { performDoubleAction(); });
    open->setEnabled(model_.dataSource() && model_.dataSource()->tableView_opensRow(*this, row));
    menu->setDefaultAction(open);
    if (QAbstractButton* remover = removeButton())
        menu->addAction(remover->text(), remover, &QAbstractButton::click)->setEnabled(remover->isEnabled());
    if (!widget_.actions().isEmpty()) menu->addSeparator();
    menu->addActions(widget_.actions());
    const QRect cell = widget_.visualRect(index);
    menu->popup(isByMouse ? event.globalPos() : widget_.viewport()->mapToGlobal(cell.center()));
    return true;
}

bool QtTableView::handleDrag(QEvent* event) {
    auto* drop = static_cast<QDropEvent*>(event);
    TableDataSource* source = model_.dataSource();
    // Links to the web come in the same format.
    std::vector<std::string> files = localFilesOfUriList(drop->mimeData()->data(QStringLiteral("text/uri-list")));
    bool accepted = source && !files.empty() && source->tableView_validateDrop(*this);
    if (accepted) drop->setDropAction(Qt::CopyAction);
    if (accepted && event->type() == QEvent::Drop) accepted = source->tableView_acceptDrop(*this, files);
    drop->setAccepted(accepted);
    return true;
}

void QtTableView::showPostponedImages() {
    delegate_.showEveryImage();
    widget_.viewport()->update();
}

// The current row, if it was so at the size before; a view that was moved has no old size in its event. How far it can
// be scrolled is known only afterwards.
void QtTableView::keepInSight() {
    const QSize before = std::exchange(sightSize_, widget_.viewport()->size());
    const QPersistentModelIndex current = widget_.currentIndex();
    if (!QRect({}, before).intersects(widget_.visualRect(current))) return;
    QMetaObject::invokeMethod(
        this, [this, current] { widget_.scrollTo(current); }, Qt::QueuedConnection);
}

bool QtTableView::eventFilter(QObject* object, QEvent* event) {
    bool onViewport = object == widget_.viewport();
    switch (event->type()) {
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::Drop:
            return onViewport && handleDrag(event);
        case QEvent::KeyPress:
            return !onViewport && handleKey(*static_cast<QKeyEvent*>(event));
        case QEvent::ContextMenu:
            return showMenu(*static_cast<QContextMenuEvent*>(event));
        case QEvent::Resize:
            showPlaceholder();
            if (onViewport) keepInSight();
            return false;
        case QEvent::FontChange:
        case QEvent::StyleChange:
            if (!onViewport) applyMetrics();
            return false;
        default:
            return false;
    }
}

}  // namespace qt
