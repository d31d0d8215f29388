// The rows of a table as Qt's views want them. It holds their number and nothing of their contents, so a table of any
// length costs the same.
#pragma once

#include "platform/Controls.h"

#include <QAbstractTableModel>
#include <QStringList>

namespace qt {

class CellModel final : public QAbstractTableModel {
public:
    CellModel(platform::TableView& table, QStringList identifiers, QStringList titles, QObject* parent);

    void setDataSource(platform::TableDataSource* source) { source_ = source; }  // not owned; null: no rows
    platform::TableDataSource* dataSource() const { return source_; }
    void setImageColumn(const QString& identifier) { imageColumn_ = identifier; }
    bool isImageColumn(int column) const { return identifiers_.value(column) == imageColumn_; }

    // Asks the data source for the number of rows and has what is on screen painted again.
    void refresh();
    platform::CellValue cell(const QModelIndex& index) const;  // empty without a data source and outside the rows

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : rows_; }
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    void setRowCount(int rows);

    platform::TableView& table_;
    platform::TableDataSource* source_ = nullptr;
    QStringList identifiers_, titles_;
    QString imageColumn_;
    int rows_ = 0;
};

}  // namespace qt
