// A full repaint of the entry table with 5,000 entries, and one of the same table with 50; and what a keystroke in the
// search field takes, until the found rows are painted, with 10,000.
#include <QApplication>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QTableView>

#include <cstdio>

#include "bench/EntriesWorld.h"
#include "qt/QtToolkit.h"
#include "qt/controls/QtControls.h"
#include "qt/controls/QtTableView.h"

namespace {

void searchByKeystrokes(bench::EntriesWorld& world, QTableView& widget) {
    QLineEdit line;
    qt::QtLineEdit field(line);
    world.pane->setOutlet("listSearch", field);
    world.pane->performAction("searchEntries:", field);  // as when the field gets the keyboard
    world.pass(1);
    for (const char* typed : {"a", "ap", "app", "app 9", "app 99", "app 99x", "app 9", ""}) {
        QElapsedTimer timer;
        timer.start();
        line.setText(QLatin1String(typed));
        world.pane->performAction("searchEntries:", field);
        QCoreApplication::processEvents();
        widget.grab();
        std::printf("\"%s\" typed, %d rows found: %.2f ms\n", typed, widget.model()->rowCount(),
                    timer.nsecsElapsed() / 1e6);
    }
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    for (std::size_t count : {50, 5000, 10000}) {
        qt::QtToolkit toolkit([](std::string_view) { return std::string(); });
        bench::EntriesWorld world(10000, &toolkit);
        world.clear();
        world.add(count);
        QTableView widget;
        widget.resize(400, 500);
        widget.setProperty("columnIdentifiers", QStringList{QStringLiteral("13"), QStringLiteral("entry")});
        widget.setProperty("columnTitles", QStringList{QStringLiteral("Icon"), QStringLiteral("Entry")});
        qt::QtTableView table(widget, *world.pane);
        world.pane->setOutlet("exTableView", table);
        table.setImageColumn("13");
        table.setDataSource(&*world.pane);
        table.reloadData();
        widget.show();
        QCoreApplication::processEvents();
        widget.grab();
        constexpr int kRounds = 50;
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < kRounds; ++i) widget.grab();
        std::printf("full repaint with %zu entries: %.2f ms\n", count, timer.nsecsElapsed() / 1e6 / kRounds);
        if (count == 10000) searchByKeystrokes(world, widget);
        table.setDataSource(nullptr);
    }
    return 0;
}
