#include "qt/UriList.h"
#include "tests/qt/QtTest.h"

#include <QDropEvent>
#include <QMimeData>
#include <QTableView>

#include <set>

using namespace platform;

namespace {

struct Rows : TableDataSource {
    int numberOfRowsInTableView(TableView&) override { return ++countQuestions, count; }
    CellValue tableView_objectValueForTableColumn_row(TableView&, std::string_view column, int row) override {
        asked.insert(row);
        if (column == "13") return {};
        return {nullptr, {{"Entry " + std::to_string(row)}, {"/a/rather/long/path/to/the/entry/of/that/row", true}}};
    }
    bool tableView_validateDrop(TableView&) override { return takesDrops; }
    bool tableView_writeRows_toPasteboard(TableView&, const std::vector<int>&) override { return false; }
    bool tableView_acceptDrop(TableView&, const std::vector<std::string>& files) override {
        dropped = files;
        return true;
    }

    int count = 0, countQuestions = 0;
    bool takesDrops = true;
    std::set<int> asked;
    std::vector<std::string> dropped;
};

struct TableSample : SampleInterface {
    explicit TableSample(int count) : table(*owner.outlets.at("table")->asTableView()) {
        rows.count = count;
        table.setImageColumn("13");
        table.setSelectionObserver([this](const InterfaceNotification& n) {
            CHECK(n.object == &table && n.name == kTableViewSelectionDidChange);
            selections.push_back(table.selectedRow());
        });
        table.setDataSource(&rows);
    }
    ~TableSample() { interface->disconnectOwner(); }

    bool drop(const QByteArray& uris) {
        QMimeData data;
        data.setData(QStringLiteral("text/uri-list"), uris);
        constexpr auto kActions = Qt::MoveAction | Qt::CopyAction;
        QWidget* viewport = widget<QTableView>("table").viewport();
        QDragEnterEvent enter(QPoint(5, 5), kActions, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(viewport, &enter);
        QDropEvent event(QPoint(5, 5), kActions, &data, Qt::LeftButton, Qt::NoModifier);
        event.ignore();
        QCoreApplication::sendEvent(viewport, &event);
        return event.isAccepted() && event.dropAction() == Qt::CopyAction;
    }

    Rows rows;
    TableView& table;
    std::vector<int> selections;
};

}  // namespace

TEST(OnlyRowsOnScreenAreAsked) {
    TableSample sample(5000);
    settle();
    CHECK_EQ(sample.table.numberOfRows(), 5000);
    CHECK(!sample.rows.asked.empty() && *sample.rows.asked.rbegin() < 12);
    sample.rows.asked.clear();
    sample.table.scrollRowToVisible(4000);
    settle();
    CHECK(sample.rows.asked.contains(4000) && sample.rows.asked.size() < 30);
    sample.rows.asked.clear();
    sample.table.reloadData();
    settle();
    CHECK(sample.rows.asked.contains(4000) && sample.rows.asked.size() < 30);
}

TEST(ReloadsAskOnceAndLaterAndKeepTheSelection) {
    TableSample sample(10);
    settle();
    sample.rows.countQuestions = 0;
    for (int i = 0; i < 5; ++i) sample.table.reloadData();
    CHECK_EQ(sample.rows.countQuestions, 0);
    settle();
    CHECK_EQ(sample.rows.countQuestions, 1);

    sample.table.selectRow(4);
    sample.table.selectRow(4);
    sample.table.selectRow(99);
    CHECK_EQ(sample.table.selectedRow(), 4);
    sample.rows.count = 20;
    sample.table.reloadData();
    sample.table.selectRow(19);
    sample.table.selectRow(4);
    CHECK_EQ(sample.selections, std::vector<int>{4, 19, 4});
    sample.rows.count = 3;
    sample.table.reloadData();
    CHECK_EQ(sample.table.numberOfRows(), 3);
    CHECK_EQ(sample.table.selectedRow(), -1);
    sample.table.selectRow(2);
    sample.table.selectRow(-1);
    CHECK_EQ(sample.selections, std::vector<int>{4, 19, 4, -1, 2, -1});
}

TEST(ASelectionThatTheObserverTakesBackStays) {
    TableSample sample(5);
    sample.table.selectRow(3);
    sample.table.setSelectionObserver([&](const InterfaceNotification&) {
        if (sample.table.selectedRow() < 0) sample.table.selectRow(3);
    });
    sample.widget<QTableView>("table").clearSelection();
    CHECK_EQ(sample.table.selectedRow(), 3);
}

TEST(ADoubleClickOrReturnPerformsTheDoubleAction) {
    TableSample sample(5);
    settle();
    auto& view = sample.widget<QTableView>("table");
    QPoint inRow = view.visualRect(view.model()->index(2, 1)).center();
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, inRow);
    CHECK_EQ(sample.owner.takeActions(), std::vector<std::string>{});
    sample.table.setDoubleAction("open:");
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, inRow);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, inRow);
    QTest::keyClick(&view, Qt::Key_Return);
    CHECK_EQ(sample.table.selectedRow(), 2);
    CHECK_EQ(sample.owner.takeActions(), std::vector<std::string>{"open: 0", "open: 0"});
}

TEST(DroppedFilesArriveAsPaths) {
    TableSample sample(2);
    sample.table.registerForFileNameDrags();
    CHECK(sample.drop("file:///usr/a%20b.desktop\r\nfile:///%C3%84pfel\r\n"));
    CHECK_EQ(sample.rows.dropped, std::vector<std::string>{"/usr/a b.desktop", "/Äpfel"});
    sample.rows.takesDrops = false;
    sample.rows.dropped.clear();
    CHECK(!sample.drop("file:///usr/b"));
    CHECK(sample.rows.dropped.empty());
}

TEST(UriListsGiveLocalPaths) {
    const std::pair<const char*, std::vector<std::string>> cases[] = {
        {"", {}},
        {"# comment\r\nfile:///a\r\nfile:///b", {"/a", "/b"}},
        {"FILE://localhost/a%25b%2Fc/\n", {"/a%b/c"}},
        {"file:/short", {"/short"}},
        {"file:///%FFlatin\r\n", {"/\xFFlatin"}},
        {"file://elsewhere.example/a\r\nhttp://x/y\r\nfile:relative\r\n/plain\r\nfile:///nul%00x", {}},
        {"file:///", {"/"}},
    };
    for (const auto& [list, files] : cases) {
        CONTEXT(list);
        CHECK_EQ(qt::localFilesOfUriList(list), files);
    }
}
