// The least that a window of the toolkit takes: the peer of the settings pane's window.
#include <QApplication>
#include <QWidget>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QWidget window;
    window.resize(760, 660);
    window.show();
    return application.exec();
}
