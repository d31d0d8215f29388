#include "qt/controls/QtControls.h"
#include "tests/qt/QtTest.h"

#include <QApplication>
#include <QCheckBox>
#include <QPushButton>

using namespace platform;
using namespace qt;
using Actions = std::vector<std::string>;

TEST(EveryNamedObjectReachesItsOwnerAsItsKind) {
    SampleInterface sample;
    auto& outlets = sample.owner.outlets;
    CHECK(outlets.at("box")->asButton() && outlets.at("push")->asButton());
    CHECK(outlets.at("number")->asTextField() && outlets.at("label")->asTextField() &&
          outlets.at("edit")->asTextField());
    CHECK(outlets.at("menu")->asPopUpButton() && outlets.at("table")->asTableView());
    CHECK(outlets.at("tabs")->asTabView() && outlets.at("sheet")->asPanel());
    CHECK(outlets.contains("group") && outlets.contains("inner") && outlets.contains("ok"));
    CHECK(!outlets.contains("qt_spinbox_lineedit"));
    CHECK_EQ(outlets.at("menu")->tag(), 11);
    CHECK_EQ(outlets.at("group")->tag(), 0);
    CHECK_EQ(outlets.at("box")->title(), "Arrange & sort");
}

TEST(OnlyTheUsersChangesPerformActions) {
    SampleInterface sample;
    auto& outlets = sample.owner.outlets;
    auto& number = sample.widget<QSpinBox>("number");

    outlets.at("box")->asButton()->setState(true);
    outlets.at("number")->asTextField()->setIntegerValue(12);
    outlets.at("menu")->asPopUpButton()->selectItem(2);
    outlets.at("edit")->asTextField()->setStringValue("text");
    settle();
    CHECK_EQ(sample.owner.takeActions(), Actions{});
    CHECK_EQ(outlets.at("box")->integerValue(), 1);
    CHECK_EQ(outlets.at("number")->integerValue(), 12);
    CHECK_EQ(outlets.at("menu")->selectedRow(), 2);

    sample.widget<QCheckBox>("box").click();
    sample.widget<QPushButton>("push").click();
    QTest::keyClick(&sample.widget<QComboBox>("menu"), Qt::Key_Up);
    QTest::keyClick(&number, Qt::Key_Up);
    CHECK_EQ(sample.owner.takeActions(), Actions{"toggle: 3", "go: 7", "choose: 11", "size: 5"});
    CHECK_EQ(outlets.at("box")->integerValue(), 0);
    CHECK_EQ(outlets.at("menu")->selectedRow(), 1);

    number.selectAll();
    QTest::keyClicks(&number, QStringLiteral("144"));
    CHECK_EQ(sample.owner.takeActions(), Actions{});
    QTest::keyClick(&number, Qt::Key_Return);
    QTest::keyClick(&sample.widget<QLineEdit>("edit"), Qt::Key_Return);
    CHECK_EQ(sample.owner.takeActions(), Actions{"size: 5", "enter: 12"});
    CHECK_EQ(outlets.at("number")->integerValue(), 144);

    sample.interface->disconnectOwner();
    sample.widget<QPushButton>("push").click();
    CHECK_EQ(sample.owner.takeActions(), Actions{});
}

TEST(ControlsKeepToWhatTheyCanShow) {
    SampleInterface sample;
    auto& outlets = sample.owner.outlets;
    outlets.at("number")->asTextField()->setIntegerValue(1'000'000'000'000);
    CHECK_EQ(outlets.at("number")->integerValue(), 255);
    PopUpButton& menu = *outlets.at("menu")->asPopUpButton();
    menu.selectItem(1);
    menu.selectItem(7);
    menu.selectItem(-1);
    CHECK_EQ(menu.selectedRow(), 1);
    CHECK_EQ(menu.itemCount(), 3);
    CHECK_EQ(menu.itemTitle(2) + menu.itemTitle(3) + menu.itemTitle(-1), "Two");

    View& inner = *outlets.at("inner");
    outlets.at("group")->setEnabled(false);
    CHECK(inner.isEnabled());
    inner.setEnabled(false);
    outlets.at("group")->setEnabled(true);
    CHECK(!inner.isEnabled());
}

TEST(LabelsShowTextAsItIsAndAlertsInRed) {
    SampleInterface sample;
    TextField& text = *sample.owner.outlets.at("label")->asTextField();
    auto& label = sample.widget<QLabel>("label");
    text.setStringValue("<b>bold</b> & plain", TextTone::Alert);
    CHECK_EQ(text.stringValue(), "<b>bold</b> & plain");
    CHECK(label.textFormat() == Qt::PlainText && label.alignment() == Qt::AlignCenter);
    QColor red = label.palette().color(QPalette::WindowText);
    CHECK(red.red() > red.green() + 80);

    QApplication::setPalette(QPalette(QColor(40, 40, 40), QColor(30, 30, 30)));
    settle();
    CHECK(label.palette().color(QPalette::WindowText).lightness() > red.lightness());
    QApplication::setPalette(QPalette());
    settle();

    text.setStringValue("calm");
    CHECK(label.palette().color(QPalette::WindowText) == QApplication::palette().color(QPalette::WindowText));
    CHECK(label.alignment() == (Qt::AlignLeft | Qt::AlignTop));

    auto& status = sample.widget<QLabel>("status");
    CHECK(status.isHidden());
    sample.owner.outlets.at("status")->asTextField()->setStringValue("there");
    CHECK(status.isVisible());
}

TEST(FramesGrowUpwardFromTheSuperviewsLowerLeftCorner) {
    SampleInterface sample;
    auto& outlets = sample.owner.outlets;
    const std::pair<const char*, Rect> cases[] = {
        {"box", {{10, 370}, {200, 20}}},
        {"inner", {{20, 45}, {100, 25}}},
        {"group", {{10, 20}, {200, 100}}},
    };
    for (const auto& [name, frame] : cases) {
        CONTEXT(name);
        CHECK(outlets.at(name)->frame() == frame);
        Rect moved = {{frame.origin.x + 1, frame.origin.y + 9}, {frame.size.width + 5, 31}};
        outlets.at(name)->setFrame(moved);
        CHECK(outlets.at(name)->frame() == moved);
    }
    TextField& text = *outlets.at("label")->asTextField();
    text.setStringValue("one line");
    double low = text.cellSizeForBounds({{}, {200, 10}}).height;
    text.setStringValue("many words that do not fit into a single line of two hundred points, nor into two of them");
    CHECK(text.cellSizeForBounds({{}, {200, 10}}).height >= 2.5 * low);
    CHECK_EQ(text.cellSizeForBounds({{}, {200, 10}}).width, 200.0);
}

TEST(BrokenInterfaceFilesAreRefused) {
    useApplication();
    ExpectWarning warning("Designer:");
    check::TemporaryFolder folder;
    auto bundle = linux::FolderBundle::open(TEST_DATA "/Sample.prefPane");
    for (const char* content : {"", "no markup", "<ui version=\"4.0\"><widget", "<plist/>"}) {
        CONTEXT(content);
        NotingOwner owner;
        std::string error;
        REQUIRE(check::writeFile(folder / "broken.ui", content));
        CHECK(!loadInterface(folder / "broken.ui", *bundle, owner, error));
        CHECK(error.find("broken.ui") != std::string::npos);
    }
    NotingOwner owner;
    std::string error;
    CHECK(!loadInterface(folder / "missing.ui", *bundle, owner, error));
    CHECK(!error.empty());
}
