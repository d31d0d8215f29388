// A table whose columns are named by the widget's dynamic properties "columnIdentifiers" and "columnTitles" (lists of
// strings). Rows are all of one height; the first column is as wide as an icon, the last takes the rest.
#pragma once

#include "platform/qt/CellDelegate.h"
#include "platform/qt/CellModel.h"
#include "platform/qt/WidgetView.h"

#include <QTableView>

namespace platform::qt {

class QtTableView final : public QObject, public WidgetView<TableView, QTableView> {
public:
    QtTableView(QTableView& widget, InterfaceOwner& owner);

    void setDataSource(TableDataSource* source) override;
    void setSelectionObserver(std::function<void(const InterfaceNotification&)> observer) override;
    void setDoubleAction(std::string_view selector) override { doubleAction_ = selector; }
    void registerForFileNameDrags() override;
    void setImageColumn(std::string_view identifier) override;
    void reloadData() override;
    int numberOfRows() override;
    int selectedRow() const override;
    void selectRow(int row) override;
    void scrollRowToVisible(int row) override;

private:
    bool eventFilter(QObject* object, QEvent* event) override;
    void applyMetrics();
    void loadRowsIfNeeded();
    void selectionChanged();
    void performDoubleAction();
    bool handleDrag(QEvent* event);
    void showPostponedImages();

    InterfaceOwner& owner_;
    CellModel model_;
    CellDelegate delegate_;
    std::function<void(const InterfaceNotification&)> observer_;
    std::string doubleAction_;
    int announcedRow_ = -1;
    bool needsRows_ = false;
    bool isLoading_ = false;
    bool wasPainted_ = false;
};

}  // namespace platform::qt
