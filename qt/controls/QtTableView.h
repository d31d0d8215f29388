// A table whose columns are named by the widget's dynamic properties "columnIdentifiers" and "columnTitles" (lists of
// strings). Rows are all of one height; the first column is as wide as an icon, the last takes the rest. Only rows on
// screen are asked for, each time they are painted. Files are taken as text/uri-list (qt/UriList.h), always as copies.
//
// Return does what a double click does. Home and End select the first row and the last, typing the next whose first
// line begins so. Delete clicks the button beside the table that the property "removeButton" names. With a property
// "openTitle" there is a context menu, with that title for what a double click does, with the remove button's, and with
// the actions that the interface file gives the table.
//
// While the data source hides rows the others stand closer, and every row keeps its number here. The selected one stays
// the selected one when it is hidden. Where none is to be seen a text says so.
#pragma once

#include "qt/controls/CellDelegate.h"
#include "qt/controls/CellModel.h"
#include "qt/controls/FirstPaint.h"
#include "qt/controls/WidgetView.h"

#include <QLabel>
#include <QPointer>
#include <QTableView>

class QAbstractButton;
class QContextMenuEvent;
class QKeyEvent;

namespace qt {

class QtTableView final : public QObject, public WidgetView<platform::TableView, QTableView> {
public:
    QtTableView(QTableView& widget, platform::InterfaceOwner& owner);

    void setDataSource(platform::TableDataSource* source) override;
    void setSelectionObserver(std::function<void(const platform::InterfaceNotification&)> observer) override;
    void setDoubleAction(std::string_view selector) override { doubleAction_ = selector; }
    void registerForFileNameDrags() override;
    void setImageColumn(std::string_view identifier) override;
    void reloadData() override;
    int numberOfRows() override;
    int selectedRow() const override { return selectedRow_; }
    void setPlaceholder(std::string_view text) override;
    void setNeedsDisplay() override { widget_.viewport()->update(); }
    void selectRow(int row) override;
    void scrollRowToVisible(int row) override;

private:
    bool eventFilter(QObject* object, QEvent* event) override;
    void applyMetrics();
    void loadRowsIfNeeded();
    void takeSelection();
    void showSelection();
    void tellOfSelection();
    void showPlaceholder();
    void keepInSight();
    void performDoubleAction();
    bool handleDrag(QEvent* event);
    bool handleKey(const QKeyEvent& event);
    bool showMenu(const QContextMenuEvent& event);
    QAbstractButton* removeButton() const;
    void showPostponedImages();

    platform::InterfaceOwner& owner_;
    CellModel model_;
    CellDelegate delegate_;
    FirstPaint firstPaint_;
    std::function<void(const platform::InterfaceNotification&)> observer_;
    std::string doubleAction_;
    int selectedRow_ = -1;  // of all rows, be it in sight or not
    int announcedRow_ = -1;
    QSize sightSize_;  // of the viewport, when it was last told of
    QPointer<QLabel> placeholder_;
    bool needsRows_ = false;
    bool isLoading_ = false;
};

}  // namespace qt
