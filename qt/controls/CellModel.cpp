#include "qt/controls/CellModel.h"

#include "qt/texts/Utf8.h"

#include <algorithm>

namespace qt {

using namespace platform;

CellModel::CellModel(TableView& table, QStringList identifiers, QStringList titles, QObject* parent)
    : QAbstractTableModel(parent), table_(table), identifiers_(std::move(identifiers)), titles_(std::move(titles)) {}

// Rows keep their numbers over a reload, so only the end of the list comes or goes: the view keeps its place and its
// selection and lays nothing out again.
void CellModel::setRowCount(int rows) {
    if (rows > rows_) {
        beginInsertRows({}, rows_, rows - 1);
        rows_ = rows;
        endInsertRows();
    } else if (rows < rows_) {
        beginRemoveRows({}, rows, rows_ - 1);
        rows_ = rows;
        endRemoveRows();
    }
}

void CellModel::refresh(int mustBeSeen) {
    allRows_ = source_ ? std::max(0, source_->numberOfRowsInTableView(table_)) : 0;
    shown_ = source_ ? source_->tableView_shownRows(table_) : std::nullopt;
    if (shown_ && !shown_->empty() && mustBeSeen >= 0 && mustBeSeen < allRows_) addShown(mustBeSeen);
    setRowCount(shown_ ? static_cast<int>(shown_->size()) : allRows_);
    if (rows_ > 0) Q_EMIT dataChanged(index(0, 0), index(rows_ - 1, columnCount() - 1));
}

void CellModel::addShown(int row) {
    auto place = std::ranges::lower_bound(*shown_, row);
    if (place == shown_->end() || *place != row) shown_->insert(place, row);
}

void CellModel::showRow(int row) {
    if (!shown_ || row < 0 || row >= allRows_) return;
    addShown(row);
    setRowCount(static_cast<int>(shown_->size()));
    Q_EMIT dataChanged(index(0, 0), index(rows_ - 1, columnCount() - 1));
}

int CellModel::sourceRow(const QModelIndex& index) const {
    if (!index.isValid() || !shown_) return index.row();
    return index.row() < static_cast<int>(shown_->size()) ? (*shown_)[static_cast<std::size_t>(index.row())] : -1;
}

QModelIndex CellModel::indexOf(int sourceRow) const {
    int row = sourceRow;
    if (shown_) {
        auto place = std::ranges::lower_bound(*shown_, sourceRow);
        if (place == shown_->end() || *place != sourceRow) return {};
        row = static_cast<int>(place - shown_->begin());
    }
    return index(row, columnCount() - 1);
}

CellValue CellModel::cell(const QModelIndex& index) const {
    if (!source_ || !index.isValid()) return {};
    std::string identifier = identifiers_.value(index.column()).toStdString();
    return source_->tableView_objectValueForTableColumn_row(table_, identifier, sourceRow(index));
}

int CellModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(identifiers_.size());
}

// For screen readers, tool tips and finding a row by typing; the delegate paints from cell().
QVariant CellModel::data(const QModelIndex& index, int role) const {
    bool isText = role == Qt::DisplayRole || role == Qt::AccessibleTextRole || role == Qt::ToolTipRole;
    if (role == Qt::AccessibleDescriptionRole && index.isValid()) return details(index).join(QStringLiteral(", "));
    if (!isText || !index.isValid()) return {};
    // A picture speaks by its neighbour: without a name it would be a blank place under the cursor, and no row would
    // be found from it by typing.
    if (isImageColumn(index.column()))
        return role == Qt::ToolTipRole ? QVariant() : data(index.siblingAtColumn(index.column() + 1), role);
    QStringList texts;
    const CellValue value = cell(index);
    for (const AttributedLine& line : value.lines) texts << toQString(line.text);
    for (const std::string& mark : value.marks) texts << toQString(mark);
    if (role == Qt::DisplayRole) return texts.value(0);
    if (role == Qt::ToolTipRole) texts << details(index);
    return texts.join(role == Qt::ToolTipRole ? QStringLiteral("\n") : QStringLiteral(", "));
}

QStringList CellModel::details(const QModelIndex& index) const {
    QStringList texts;
    if (source_)
        for (const std::string& line : source_->tableView_detailsOfRow(table_, sourceRow(index)))
            texts << toQString(line);
    return texts;
}

QVariant CellModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole) return titles_.value(section);
    return QAbstractTableModel::headerData(section, orientation, role);
}

Qt::ItemFlags CellModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

}  // namespace qt
