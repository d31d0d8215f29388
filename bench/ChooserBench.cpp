// A keystroke in the chooser's search field with so many applications: found, laid out and painted. In processor time,
// so that other programs do not count.
#include <QApplication>
#include <QDialog>
#include <QLineEdit>

#include <algorithm>
#include <cstdio>
#include <ctime>

#include "qt/sheets/ApplicationChooser.h"

namespace {

// Names, kinds and keywords as long as installed applications have them, every fourth in letters with accents.
std::vector<qt::ChoosableApplication> applications(int count) {
    std::vector<qt::ChoosableApplication> all;
    for (int i = 0; i < count; ++i) {
        const std::string number = std::to_string(i),
                          name = (i % 4 ? "Example Editor " : "Éditeur d’exemples ") + number;
        all.push_back({.path = "/usr/share/applications/org.example.Application" + number + ".desktop",
                       .name = name,
                       .location = "/usr/share/applications/org.example.Application" + number + ".desktop",
                       .identifier = "org.example.Application" + number,
                       .genericName = "Text Editor",
                       .searchTexts = name + "\nText Editor\nplain;notes;document;write;markdown;code;"});
    }
    return all;
}

double millisecondsSince(std::clock_t start) {
    return static_cast<double>(std::clock() - start) * 1e3 / CLOCKS_PER_SEC;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    for (int count : {100, 10'000}) {
        QWidget window;
        window.show();
        std::clock_t start = std::clock();
        qt::openApplicationChooser(
            &window, {}, applications(count), [](const std::string&) { return QIcon(); }, nullptr,
            [](std::vector<std::string>) {});
        auto* chooser = window.findChild<QDialog*>();
        auto* search = chooser->findChild<QLineEdit*>();
        chooser->grab();
        std::printf("%d applications: opened in %.1f ms;", count, millisecondsSince(start));
        double slowest = 0;
        bool isReady = false;
        for (const char* text :
             {"e", "ed", "edi", "edit", "edit ", "edit 9", "edit 99", "", "x", "xy", "", "notes 7"}) {
            start = std::clock();
            search->setText(QString::fromLatin1(text));
            QApplication::processEvents();
            chooser->grab();
            const double passed = millisecondsSince(start);
            if (isReady) slowest = std::max(slowest, passed);
            if (!isReady) std::printf(" first keystroke, nothing made ready, %.1f ms;", passed);
            isReady = true;
        }
        std::printf(" slowest of the others %.1f ms\n", slowest);
        chooser->reject();
    }
    return 0;
}
