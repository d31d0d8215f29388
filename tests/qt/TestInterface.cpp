// Sample.ui on a screen that is not there: controls.txt, table.txt and sheet.txt say what is done to it, by the user
// and by code, and what is seen then.
#include "qt/UriList.h"
#include "qt/controls/Contrast.h"
#include "qt/controls/FirstPaint.h"
#include "tests/qt/QtTest.h"
#include "tests/support/Script.h"

#include <QAccessible>
#include <QApplication>
#include <QBitmap>
#include <QComboBox>
#include <QDialog>
#include <QDropEvent>
#include <QLabel>
#include <QMenu>
#include <QMetaEnum>
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
    bool tableView_opensRow(TableView&, int) override { return opens; }
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
        const bool isHeld = name == "Held";  // the Delete key
        const int code = isHeld ? Qt::Key_Delete : QMetaEnum::fromType<Qt::Key>().keyToValue(("Key_" + name).c_str());
        QKeyEvent press(QEvent::KeyPress, code, {}, {}, isHeld);
        QCoreApplication::sendEvent(&receiver, &press);
    }
    // As an assistive tool does it: no key is pressed and no mouse is moved.
    static void assist(QWidget& widget, const QString& what) {
        QAccessibleInterface& seen = *QAccessible::queryAccessibleInterface(&widget);
        if (auto* menu = qobject_cast<QComboBox*>(&widget)) {
            const QModelIndex item = menu->model()->index(what.toInt(), 0);
            return menu->view()->selectionModel()->select(item, QItemSelectionModel::ClearAndSelect);
        }
        if (auto* text = seen.editableTextInterface()) return text->replaceText(0, 9, what);
        seen.actionInterface()->doAction(what);
    }
    void turnWheel(QWidget& widget) {
        if ((widget.focusPolicy() & Qt::WheelFocus) == Qt::WheelFocus) told.emplace_back("takes the keyboard");
        QWheelEvent turn({5, 5}, widget.mapToGlobal(QPoint(5, 5)), {}, {0, 120}, {}, {}, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&widget, &turn);
        if (!turn.isAccepted()) told.emplace_back("the page scrolls");
    }
    void openMenu(const std::string& choice) {
        QWidget& view = *widgetOf(&table);
        QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
        QCoreApplication::sendEvent(&view, &event);
        for (QAction* action : view.findChild<QMenu*>()->actions()) {
            told.push_back(action->text().toStdString() + (action->isEnabled() ? "" : ", off"));
            if (told.back() == choice) action->trigger();
        }
        delete view.findChild<QMenu*>();
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
        if (what == "menu") return openMenu(w.next());
        if (what == "opens") return void(opens = w.value().boolValue());
        check::fail(__FILE__, __LINE__, "no such command: " + what);
    }
    static void type(QWidget& widget, const std::string& text) {
        widget.setFocus();
        if (auto* box = qobject_cast<QSpinBox*>(&widget)) box->selectAll();
        QTest::keyClicks(&widget, QString::fromStdString(text));
    }
    void perform(const std::string& what, Words& w) {
        if (what == "settle") return settle();
        if (what == "begin") return begin(w.next());
        if (what == "end") return sheet.endSheet(w.number());
        if (what == "close") return void(widget<QDialog>("sheet").close());
        if (what == "disconnect") return interface->disconnectOwner();
        if (what == "tint")
            return outlet("tabs").asTabView()->setControlTint(w.number() ? ControlTint::Clear : ControlTint{});
        if (named.find(" " + what + " ") == named.npos) return performOnTable(what, w);
        const std::string name = w.next();
        View& view = outlet(name);
        if (what == "click") return widget<QAbstractButton>(name).click();
        if (what == "press") return key(*widgetOf(&view), w.next());
        if (what == "type") return type(*widgetOf(&view), w.next());
        if (what == "again") return widget<QComboBox>(name).activated(view.selectedRow());
        if (what == "leave") return widgetOf(&view)->clearFocus();
        if (what == "focus") return widgetOf(&view)->setFocus();
        if (what == "assist") return assist(*widgetOf(&view), QString::fromStdString(w.next()));
        if (what == "wheel") return turnWheel(*widgetOf(&view));
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
            if (name == "push") all[name] += " tip \"" + widgetOf(view)->toolTip().toStdString() + "\"";
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

    const std::string named =
        " click press type leave state title text item number hide enable frame target focus "
        "assist wheel again ";
    TableView& table;
    Panel& sheet;
    int rows = 0;
    bool takesDrops = true, insists = false, opens = true;
    std::set<int> asked;
    std::vector<std::string> told;
    std::map<std::string, std::string> seen;
};

// What is painted of a row's second line, cut out, and its greatest contrast with what lies behind it.
std::pair<QImage, double> smallLine(QTableView& view, int row) {
    const QRect cell = view.visualRect(view.model()->index(row, 1));
    const QImage seen = view.viewport()->grab(cell.adjusted(0, cell.height() / 2 + 4, 0, -1)).toImage();
    const QBitmap ink = QBitmap::fromImage(seen.createMaskFromColor(seen.pixel(0, 0), Qt::MaskInColor));
    double contrast = 1;
    for (int i = 0; i < seen.width() * seen.height(); ++i)
        contrast = std::max(contrast, contrastOf(seen.pixel(i % seen.width(), i / seen.width()), seen.pixel(0, 0)));
    return {seen.copy(QRegion(ink).boundingRect()), contrast};
}

}  // namespace

TEST(WhatWaitsForTheFirstPaintIsDoneOnceThoughThePaintIsLate) {
    useApplication();
    QWidget window;
    int done = 0;
    FirstPaint first(window, [&] { ++done; });
    QShowEvent shown;
    QCoreApplication::sendEvent(&window, &shown);
    CHECK(waitFor([&] { return done == 1; }));
    for (int i = 0; i < 2; ++i) {
        QPaintEvent painted(window.rect());
        QCoreApplication::sendEvent(&window, &painted);
        settle();
    }
    CHECK(first.isOver() && done == 1);
}

TEST(TheSmallLineOfARowCanBeReadAndRunsFromLeftToRight) {
    Stage stage;
    stage.rows = 3;
    stage.table.reloadData();
    stage.table.selectRow(0);
    auto& view = stage.widget<QTableView>("table");
    QFont font = view.font();
    font.setHintingPreference(QFont::PreferFullHinting);  // the same letters at any place
    view.setFont(font);
    QPalette dark(QColor(58, 64, 70), QColor(42, 46, 50)), glaring;
    glaring.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 20));
    glaring.setColor(QPalette::Highlight, Qt::yellow);
    for (const QPalette& palette : {QPalette(), dark, glaring})
        for (int row : {0, 1}) {
            view.setPalette(palette);
            CHECK(smallLine(view, row).second >= 4.5);
        }
    const QImage ink = smallLine(view, 1).first;
    QApplication::setLayoutDirection(Qt::RightToLeft);
    CHECK(smallLine(view, 1).first == ink && ink.width() > 100);
    QApplication::setLayoutDirection(Qt::LeftToRight);
}

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
    // Where it becomes lower, a selected row that was in sight stays there, and one that was not stays away.
    auto& view = stage.widget<QTableView>("table");
    auto isInSight = [&](int row) {
        return view.viewport()->rect().contains(view.visualRect(view.model()->index(row, 1)));
    };
    for (int row : {2007, 3}) {
        view.resize(view.width(), 600);
        stage.table.scrollRowToVisible(2000);
        stage.table.selectRow(row);
        settle();
        view.resize(view.width(), 150);
        settle();
        CHECK_EQ(isInSight(row), row == 2007);
    }
}

TEST(LabelsShowTextAsItIsAndAlertsInRed) {
    SampleInterface sample;
    TextField& text = *sample.owner.outlets.at("label")->asTextField();
    auto& label = sample.widget<QLabel>("label");
    auto colour = [&] { return label.palette().color(QPalette::WindowText); };
    text.setStringValue("<b>bold</b> & plain", TextTone::Alert);
    CHECK(label.textFormat() == Qt::PlainText && label.alignment() == Qt::AlignCenter);
    const QAccessibleInterface& alert = *QAccessible::queryAccessibleInterface(&label);
    CHECK(alert.role() == QAccessible::AlertMessage && alert.text(QAccessible::Name) == label.text());
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
    CHECK(text.cellSizeForBounds({{}, {200, 10}}).height >= 2.5 * low);
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
