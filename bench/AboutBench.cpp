// One step of the rolling About text on the real text view: alone, and with the painting that it causes. Under a window
// system the question which keys are held counts, too; without a display there is nobody to ask.
#include <QApplication>
#include <QTextBrowser>

#include <cstdio>
#include <ctime>

#include "bench/EntriesWorld.h"
#include "qt/QtToolkit.h"
#include "qt/controls/QtTextView.h"

namespace {

template <typename Step>
void measure(const char* label, Step step) {
    constexpr int kSteps = 1000;
    std::clock_t began = std::clock();
    for (int i = 0; i < kSteps; ++i) step();
    double seconds = double(std::clock() - began) / CLOCKS_PER_SEC;
    std::printf("%s: %.3f ms of this process\n", label, seconds * 1000 / kSteps);
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("DISPLAY")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    qt::QtToolkit toolkit([](std::string_view) { return std::string(); });
    bench::EntriesWorld world(0, &toolkit);
    QTextBrowser widget;
    widget.resize(460, 360);
    qt::QtTextView view(widget);
    world.pane->setOutlet("aboutTextView", view);
    if (!view.loadRichText(BUNDLE "/Contents/Resources/About.rtfd")) return 1;
    widget.show();
    QCoreApplication::processEvents();
    measure("one step of the About text", [&] { world.pane->scrollAboutText(); });
    measure("the same, painted", [&] {
        world.pane->scrollAboutText();
        QCoreApplication::processEvents();
    });
    measure("reading the About text", [&] { view.loadRichText(BUNDLE "/Contents/Resources/About.rtfd"); });
    return 0;
}
