// The toolkit's own list of fonts: from making it until its first rows are painted, and scrolling through it.
#include "bench/FrameTimes.h"

#include <QApplication>
#include <QFontComboBox>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QElapsedTimer timer;
    timer.start();
    QFontComboBox box;
    box.resize(300, box.sizeHint().height());
    box.show();
    box.showPopup();
    box.view()->viewport()->repaint();
    printMilliseconds("first rows", milliseconds(timer));
    printScrolling(*box.view());
    return 0;
}
