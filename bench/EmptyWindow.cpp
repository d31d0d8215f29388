// The least that a window of the toolkit takes, and what one line of text adds: the peers of the settings pane's
// window. With an argument it shows that text.
#include <QApplication>
#include <QLabel>
#include <QWidget>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QWidget window;
    window.resize(760, 660);
    if (argc > 1) new QLabel(QString::fromLocal8Bit(argv[1]), &window);
    window.show();
    return application.exec();
}
