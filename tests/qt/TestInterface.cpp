// Sample.ui on a screen that is not there: controls.txt, table.txt and sheet.txt say what is done to it, by the user
// and by code, and what is seen then.
#include "qt/UriList.h"
#include "tests/qt/QtTest.h"
#include "tests/support/Script.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QSpinBox>
#include <QTabBar>
#include <QTableView>

#include <algorithm>
#include <set>

using namespace platform;
using namespace qt;

namespace {

struct Stage : SampleInterface, TableDataSource {
    Stage() : table(*outlet("table").asTableView()), sheet(*outlet("sheet").asPanel()) {
        owner.onAction = [this](View& sender) {
            if (sender.panel()) sheet.endSheet(sender.tag());
        };
        table.setImageColumn("13");
        table.setSelectionObserver([this](const InterfaceNotification& n) {
            CHECK(n.object == &table && n.name == kTableViewSelectionDidChange);
            told.push_back("selected " + std::to_string(table.selectedRow()));
            if (insists && table.selectedRow() < 0) table.selectRow(3);
        });
        table.setDataSource(this);
        settle();
        told.clear();
        seen = values();
    }
    ~Stage() { interface->disconnectOwner(); }
    View& outlet(const std::string& name) { return *owner.outlets.at(name); }

    int numberOfRowsInTableView(TableView&) override {
        told.emplace_back("how many rows?");
        return rows;
    }
    CellValue tableView_objectValueForTableColumn_row(TableView&, std::string_view column, int row) override {
        asked.insert(row);
        if (column == "13") return {};
        return {nullptr, {{"Entry " + std::to_string(row)}, {"/a/rather/long/path/to/the/entry/of/that/row", true}}};
    }
    bool tableView_validateDrop(TableView&) override { return takesDrops; }
    bool tableView_writeRows_toPasteboard(TableView&, const std::vector<int>&) override { return false; }
    bool tableView_acceptDrop(TableView&, const std::vector<std::string>& files) override {
        told.push_back("dropped " + check::show(files));
        return true;
    }

    void begin(const std::string& how) {
        sheet.beginSheet([this, how](int code) {
            told.push_back("ended with " + std::to_string(code) +
                           (widget<QDialog>("sheet").isVisible() ? "" : ", unseen"));
            if (how != "staying") sheet.orderOut();
            if (how == "again") begin({});
        });
    }
    void drop(std::string uris) {
        std::ranges::replace(uris, '|', '\n');
        QMimeData data;
        data.setData(QStringLiteral("text/uri-list"), QByteArray::fromStdString(uris));
        QWidget* viewport = widget<QTableView>("table").viewport();
        constexpr auto kActions = Qt::MoveAction | Qt::CopyAction;
        QDragEnterEvent enter(QPoint(5, 5), kActions, &data, Qt::LeftButton, Qt::NoModifier);
        QDropEvent event(QPoint(5, 5), kActions, &data, Qt::LeftButton, Qt::NoModifier);
        event.ignore();
        QCoreApplication::sendEvent(viewport, &enter);
        QCoreApplication::sendEvent(viewport, &event);
        told.emplace_back(!event.isAccepted() ? "refused" : event.dropAction() == Qt::CopyAction ? "copied" : "moved");
    }
    static void key(QWidget& receiver, const std::string& name) {
        static const std::map<std::string, Qt::Key> kKeys = {
            {"Up", Qt::Key_Up}, {"Return", Qt::Key_Return}, {"Enter", Qt::Key_Enter}, {"Escape", Qt::Key_Escape}};
        QTest::keyClick(&receiver, kKeys.at(name));
    }
    void clickRow(int row, bool isDouble) {
        auto& view = widget<QTableView>("table");
        const QPoint place = view.visualRect(view.model()->index(row, 1)).center();
        isDouble ? QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, place)
                 : QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, place);
    }
    void performOnTable(const std::string& what, Words& w) {
        if (what == "rows") return void(rows = w.number());
        if (what == "reload") return table.reloadData();
        if (what == "count") return told.push_back(std::to_string(table.numberOfRows()) + " rows");
        if (what == "select") return table.selectRow(w.number());
        if (what == "insist") return void(insists = true);
        if (what.ends_with("click-row")) return clickRow(w.number(), what == "double-click-row");
        if (what == "double-action") return table.setDoubleAction(w.next());
        if (what == "take-files") return table.registerForFileNameDrags();
        if (what == "take-drops") return void(takesDrops = w.value().boolValue());
        if (what == "drop") return drop(w.next());
        check::fail(__FILE__, __LINE__, "no such command: " + what);
    }
    static void type(QSpinBox& box, const std::string& text) {
        box.setFocus();
        box.selectAll();
        QTest::keyClicks(&box, QString::fromStdString(text));
    }
    void perform(const std::string& what, Words& w) {
        if (what == "settle") return settle();
        if (what == "begin") return begin(w.next());
        if (what == "end") return sheet.endSheet(w.number());
        if (what == "close") return void(widget<QDialog>("sheet").close());
        if (what == "disconnect") return interface->disconnectOwner();
        if (what == "tint")
            return outlet("tabs").asTabView()->setControlTint(w.number() ? ControlTint::Clear : ControlTint{});
        if (!named.contains(what)) return performOnTable(what, w);
        const std::string name = w.next();
        View& view = outlet(name);
        if (what == "click") return widget<QAbstractButton>(name).click();
        if (what == "press") return key(*widgetOf(&view), w.next());
        if (what == "type") return type(widget<QSpinBox>(name), w.next());
        if (what == "leave") return widgetOf(&view)->clearFocus();
        if (what == "state") return view.asButton()->setState(w.value().boolValue());
        if (what == "title") return view.asButton()->setTitle(w.next());
        if (what == "number") return view.asTextField()->setIntegerValue(w.value().integerValue());
        if (what == "text") return view.asTextField()->setStringValue(w.next());
        if (what == "item") return view.asPopUpButton()->selectItem(w.number());
        if (what == "enable") return view.setEnabled(w.value().boolValue());
        if (what == "hide") return view.setHidden(w.value().boolValue());
        auto real = [&] { return w.value().realValue(); };
        if (what == "frame") return view.setFrame({{real(), real()}, {real(), real()}});
        if (what == "target") return view.asButton()->setTarget(w.number() ? &owner : nullptr, "aimed:");
    }

    std::map<std::string, std::string> values() {
        std::map<std::string, std::string> all;
        for (auto& [name, view] : owner.outlets) {
            all[name] = formatted("\"%@\" %d", {view->title(), view->integerValue()});
            if (TextField* field = view->asTextField())
                all[name] += " text \"" + field->stringValue() + "\"" + (field->isBeingEdited() ? " edited" : "");
            if (PopUpButton* menu = view->asPopUpButton()) all[name] += " item " + std::to_string(menu->selectedRow());
            if (!view->isEnabled()) all[name] += " off";
            if (view->isHidden()) all[name] += " hidden";
            const auto [origin, size] = view->frame();
            if (name == "box" || name == "inner" || name == "group")
                all[name] += formatted(" at (%g, %g), %g x %g", {origin.x, origin.y, size.width, size.height});
        }
        if (widget<QTabWidget>("tabs").tabBar()->tabTextColor(0).isValid()) all["tabs"] += " dimmed";
        return all;
    }
    std::string news() {
        std::string text;
        for (const std::string& line : owner.takeActions()) text += "does " + line + "\n";
        for (const std::string& line : std::exchange(told, {})) text += line + "\n";
        return text + check::changes(seen, values());
    }

    const std::set<std::string> named{"click", "press",  "type", "leave",  "state", "title", "text",
                                      "item",  "number", "hide", "enable", "frame", "target"};
    TableView& table;
    Panel& sheet;
    int rows = 0;
    bool takesDrops = true, insists = false;
    std::set<int> asked;
    std::vector<std::string> told;
    std::map<std::string, std::string> seen;
};

}  // namespace

TEST(ControlsByScript) { check::play<Stage>(TEST_DATA "/controls.txt"); }
TEST(TablesByScript) { check::play<Stage>(TEST_DATA "/table.txt"); }
TEST(SheetsByScript) { check::play<Stage>(TEST_DATA "/sheet.txt"); }

TEST(OnlyRowsOnScreenAreAsked) {
    Stage stage;
    stage.rows = 5000;
    stage.table.reloadData();
    settle();
    CHECK(stage.asked.contains(0) && *stage.asked.rbegin() < 12);
    for (bool scrolls : {true, false}) {
        stage.asked.clear();
        scrolls ? stage.table.scrollRowToVisible(4999) : stage.table.reloadData();
        settle();
        CHECK(stage.asked.contains(4999) && stage.asked.size() < 30);
    }
    // Whoever looks at other rows keeps them, whatever comes and goes and is selected meanwhile.
    stage.table.scrollRowToVisible(2000);
    stage.rows = 4000;
    stage.table.reloadData();
    stage.table.selectRow(3);
    stage.asked.clear();
    settle();
    CHECK(stage.asked.contains(2000) && !stage.asked.contains(3));
}

TEST(NamedObjectsReachTheOwnerAndMenusTellTheirItems) {
    SampleInterface sample;
    CHECK(sample.owner.outlets.contains("group") && sample.owner.outlets.contains("ok"));
    CHECK(!sample.owner.outlets.contains("qt_spinbox_lineedit") && !sample.interface->view("nobody"));
    PopUpButton& menu = *sample.owner.outlets.at("menu")->asPopUpButton();
    CHECK_EQ(menu.itemTitle(2) + menu.itemTitle(3) + menu.itemTitle(-1) + std::to_string(menu.itemCount()), "Two3");
    CHECK(menu.tag() == 11 && menu.itemTag(1) == 0 && menu.itemTag(3) == 0);
}

TEST(LabelsShowTextAsItIsAndAlertsInRed) {
    SampleInterface sample;
    TextField& text = *sample.owner.outlets.at("label")->asTextField();
    auto& label = sample.widget<QLabel>("label");
    auto colour = [&] { return label.palette().color(QPalette::WindowText); };
    text.setStringValue("<b>bold</b> & plain", TextTone::Alert);
    CHECK(label.textFormat() == Qt::PlainText && label.alignment() == Qt::AlignCenter);
    const QColor red = colour();
    CHECK(red.red() > red.green() + 80);
    QApplication::setPalette(QPalette(QColor(40, 40, 40), QColor(30, 30, 30)));
    settle();
    CHECK(colour().lightness() > red.lightness());
    QApplication::setPalette({});
    settle();
    text.setStringValue("calm");
    CHECK(colour() == QApplication::palette().color(QPalette::WindowText));
    CHECK(label.alignment() == (Qt::AlignLeft | Qt::AlignTop));

    const double low = text.cellSizeForBounds({{}, {200, 10}}).height;
    text.setStringValue("many words that do not fit into a single line of two hundred points, nor into two of them");
    const Size size = text.cellSizeForBounds({{}, {200, 10}});
    CHECK(size.height >= 2.5 * low && size.width == 200);
    text.setStringValue(std::string(3000, 'W'));
    CHECK(label.minimumSizeHint().width() < 1000 && text.stringValue().size() == 3000);
}

TEST(ASheetsButtonsFitTheirLabelsAndGrowLeft) {
    SampleInterface sample;
    Panel& panel = *sample.owner.outlets.at("sheet")->asPanel();
    auto &ok = sample.widget<QPushButton>("ok"), &cancel = sample.widget<QPushButton>("cancel");
    const Size size = panel.contentSize();
    const double scale = size.width / 400, y = sample.owner.outlets.at("ok")->frame().origin.y;
    CHECK(ok.width() >= ok.sizeHint().width());
    CHECK(std::abs(ok.geometry().right() + 1 - 380 * scale) <= 1);
    CHECK(std::abs(ok.x() - (cancel.geometry().right() + 1) - 20 * scale) <= 2);
    panel.setContentSize({size.width, size.height + 50});
    CHECK(panel.contentSize() == (Size{size.width, size.height + 50}) && panel.frame().size == panel.contentSize());
    CHECK_EQ(sample.owner.outlets.at("ok")->frame().origin.y, y + 50);
}

TEST(BrokenInterfaceFilesAreRefused) {
    useApplication();
    ExpectWarning warning("Designer:");
    check::TemporaryFolder folder;
    auto bundle = linux::FolderBundle::open(TEST_DATA "/Sample.prefPane");
    for (std::string content : {"missing", "", "no markup", "<ui version=\"4.0\"><widget", "<plist/>"}) {
        CONTEXT(content);
        NotingOwner owner;
        std::string error;
        if (content != "missing") check::writeFile(folder / "broken.ui", content);
        CHECK(!loadInterface(folder / "broken.ui", *bundle, owner, error));
        CHECK(error.find("broken.ui") != std::string::npos);
    }
}

TEST(UriListsGiveLocalPaths) {
    for (const check::Case& c : check::casesIn(TEST_DATA "/uri-lists.txt")) {
        CONTEXT(c.label);
        CHECK_EQ(check::show(localFilesOfUriList(QByteArray::fromStdString(c.text))), c.expected);
    }
}
