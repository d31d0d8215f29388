// The rows of a table as Qt's views want them. It holds their number and nothing of their contents, so a table of any
// length costs the same.
#pragma once

#include "platform/Controls.h"

#include <QAbstractTableModel>
#include <QStringList>

#include <optional>
#include <vector>

namespace qt {

class CellModel final : public QAbstractTableModel {
public:
    CellModel(platform::TableView& table, QStringList identifiers, QStringList titles, QObject* parent);

    void setDataSource(platform::TableDataSource* source) { source_ = source; }  // not owned; null: no rows
    platform::TableDataSource* dataSource() const { return source_; }
    void setImageColumn(const QString& identifier) { imageColumn_ = identifier; }
    bool isImageColumn(int column) const { return identifiers_.value(column) == imageColumn_; }

    // Asks the data source for the number of rows and for those that are to be seen, and has what is on screen painted
    // again. A row that must be seen is, while any other is.
    void refresh(int mustBeSeen);
    void showRow(int row);                                     // from now to the next refresh
    platform::CellValue cell(const QModelIndex& index) const;  // empty without a data source and outside the rows

    // The data source's rows. Those of the model are the ones that are to be seen: the two differ while some are not.
    int allRows() const { return allRows_; }
    int sourceRow(const QModelIndex& index) const;
    QModelIndex indexOf(int sourceRow) const;  // in the last column; invalid for a row that is not to be seen

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : rows_; }
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    QStringList details(const QModelIndex& index) const;
    void setRowCount(int rows);
    void addShown(int row);

    platform::TableView& table_;
    platform::TableDataSource* source_ = nullptr;
    QStringList identifiers_, titles_;
    QString imageColumn_;
    int allRows_ = 0;
    std::optional<std::vector<int>> shown_;  // in order; nothing: all
    int rows_ = 0;
};

}  // namespace qt
