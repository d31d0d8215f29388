#include "tests/qt/QtTest.h"

#include <QDialog>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>

using namespace platform;

namespace {

struct SheetSample : SampleInterface {
    SheetSample() : panel(*owner.outlets.at("sheet")->asPanel()), dialog(widget<QDialog>("sheet")) {
        owner.onAction = [this](View& sender) { panel.endSheet(sender.tag()); };
    }
    void begin() {
        panel.beginSheet([this](int code) {
            codes.push_back(code);
            wasVisible = dialog.isVisible();
            panel.orderOut();
        });
        settle();
    }
    Panel& panel;
    QDialog& dialog;
    std::vector<int> codes;
    bool wasVisible = false;
};

}  // namespace

TEST(ASheetEndsOnceWithItsButtonsTag) {
    SheetSample sample;
    CHECK(!sample.dialog.isVisible());
    sample.panel.endSheet(1);
    sample.begin();
    CHECK(sample.dialog.isVisible() && sample.dialog.windowModality() == Qt::WindowModal);
    CHECK(sample.dialog.parentWidget()->window() == sample.interface->root()->window());
    QTest::keyClick(&sample.dialog, Qt::Key_Return);
    CHECK(!sample.dialog.isVisible() && sample.wasVisible);
    sample.begin();
    sample.widget<QPushButton>("cancel").click();
    sample.begin();
    QTest::keyClick(&sample.dialog, Qt::Key_Escape);
    sample.begin();
    sample.dialog.close();
    sample.panel.endSheet(5);
    CHECK(!sample.dialog.isVisible());
    CHECK_EQ(sample.codes, std::vector<int>{1, 0, 0, 0});
}

TEST(ASheetMayBeginAgainFromItsEnd) {
    SheetSample sample;
    int ends = 0;
    sample.panel.beginSheet([&](int) {
        sample.panel.orderOut();
        sample.panel.beginSheet([&](int) { ++ends; });
    });
    sample.panel.endSheet(1);
    CHECK(sample.dialog.isVisible());
    sample.panel.endSheet(1);
    CHECK_EQ(ends, 1);
    CHECK(!sample.dialog.isVisible());
}

TEST(ButtonsOfASheetFitTheirLabelsAndKeepTheRightEdge) {
    SheetSample sample;
    auto& ok = sample.widget<QPushButton>("ok");
    auto& cancel = sample.widget<QPushButton>("cancel");
    double scale = sample.panel.contentSize().width / 400;
    CHECK(ok.width() >= ok.sizeHint().width());
    CHECK(std::abs(ok.geometry().right() + 1 - 380 * scale) <= 1);
    CHECK(std::abs(ok.x() - (cancel.geometry().right() + 1) - 20 * scale) <= 2);
}

TEST(FramesInASheetKeepTheirPlaceBelowTheTopWhenItGrows) {
    SheetSample sample;
    View& ok = *sample.owner.outlets.at("ok");
    Rect before = ok.frame();
    Size size = sample.panel.contentSize();
    sample.panel.setContentSize({size.width, size.height + 50});
    CHECK(sample.panel.contentSize() == (Size{size.width, size.height + 50}));
    CHECK(sample.panel.frame().size == sample.panel.contentSize());
    CHECK_EQ(ok.frame().origin.y, before.origin.y + 50);
}

TEST(TheClearTintDimsTheTabs) {
    SampleInterface sample;
    TabView& tabs = *sample.owner.outlets.at("tabs")->asTabView();
    QTabBar& bar = *sample.widget<QTabWidget>("tabs").tabBar();
    QColor designed = bar.tabTextColor(0);
    tabs.setControlTint(ControlTint::Clear);
    CHECK(bar.tabTextColor(0) != designed);
    tabs.setControlTint(ControlTint::Default);
    CHECK(bar.tabTextColor(0) == designed);
}
