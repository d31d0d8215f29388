// The preview in the settings window: from the click that opens it until its first rows are painted, listing the fonts
// and loading the drawer included; the same for a click on an option; and each frame of scrolling while a thread draws
// the faces.
//   bench_preview BUNDLE, with a home, a session bus and fonts as the environment says
#include "bench/FrameTimes.h"
#include "host/HostPlatform.h"
#include "host/PaneWindow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QTreeView>

namespace {

QAbstractButton& button(QWidget& window, const char* name) {
    return *window.findChild<QAbstractButton*>(QLatin1String(name));
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    host::HostPlatform platform;
    host::PaneWindow window(platform);
    platform.setWindow(&window);
    if (const std::string error = window.load(argc > 1 ? argv[1] : ""); !error.empty()) {
        std::fprintf(stderr, "%s\n", error.c_str());
        return 1;
    }
    window.resize(1100, 700);
    window.show();
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 500) QCoreApplication::processEvents({}, 20);
    timer.start();
    button(window, "previewButton").click();
    auto& list = *window.findChild<QTreeView*>(QStringLiteral("previewMenu"));
    while (list.model()->rowCount() == 0) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    list.viewport()->repaint();
    printMilliseconds("first rows", milliseconds(timer));
    timer.start();
    button(window, "perAppHierarchicalMenu").click();
    list.viewport()->repaint();
    printMilliseconds("an option", milliseconds(timer));
    printScrolling(list);
    button(window, "previewButton").click();  // is remembered, and the next run opens it again
    return 0;
}
