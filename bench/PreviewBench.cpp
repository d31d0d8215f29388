// The preview of a font menu with as many faces as are told, 3,000 by default: what it takes from the menu's arrival
// until its first rows are painted, a change of an option, and each frame of scrolling through it at a page a frame,
// while a thread draws the faces. One of a hundred files is broken, one empty.
#include <QApplication>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "linux/system/FolderBundle.h"
#include "qt/fontmenu/QtFontMenuView.h"

namespace {

using namespace platform;

constexpr const char* kFolder = "/usr/share/fonts/truetype/dejavu";

std::shared_ptr<ListedFonts> generatedFonts(const std::filesystem::path& folder, std::size_t count) {
    std::vector<std::filesystem::path> real;
    for (const auto& file : std::filesystem::directory_iterator(kFolder)) real.push_back(file.path());
    auto fonts = std::make_shared<ListedFonts>();
    for (std::size_t i = 0; i < count; ++i) {
        const std::filesystem::path path = folder / (std::to_string(i) + ".ttf");
        if (i % 100 == 50)
            std::ofstream(path) << "no font";
        else if (i % 100 == 70)
            std::ofstream{path};
        else
            std::filesystem::create_symlink(real[i % real.size()], path);
        FontFace& face = fonts->faces.emplace_back();
        face.family = "Generated family " + std::to_string(i);
        face.file = path;
        fonts->modified.push_back(1);
    }
    return fonts;
}

std::vector<FontMenuItem> items(const ListedFonts& fonts, bool hasIcons) {
    std::vector<FontMenuItem> all;
    for (std::uint32_t i = 0; i < fonts.faces.size(); ++i)
        all.push_back({.kind = FontMenuItem::Kind::Face,
                       .title = fonts.faces[i].family,
                       .detail = {},
                       .face = i,
                       .icon = hasIcons ? FontKind::TrueType : FontKind::Unknown,
                       .drawing = FontMenuItem::Drawing::InFace,
                       .children = {}});
    return all;
}

double milliseconds(const QElapsedTimer& timer) { return timer.nsecsElapsed() / 1e6; }

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const std::size_t count = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 3000;
    const QTemporaryDir folder;
    const auto fonts = generatedFonts(folder.path().toStdString(), count);
    const std::unique_ptr<Bundle> texts = linux::LibraryBundle::load("libc.so.6", "");  // has no texts: English
    QTreeView widget;
    widget.resize(300, 500);
    qt::QtFontMenuView view(widget, *texts);
    widget.show();
    QCoreApplication::processEvents();
    widget.grab();
    QElapsedTimer timer;
    for (const bool hasIcons : {false, true}) {
        std::vector<FontMenuItem> menu = items(*fonts, hasIcons);
        timer.start();
        view.setMenu(fonts, std::move(menu));
        widget.grab();
        std::printf("%s with %zu faces: %.2f ms\n", hasIcons ? "an option changed" : "first rows", count,
                    milliseconds(timer));
    }
    std::vector<double> frames;
    QScrollBar& bar = *widget.verticalScrollBar();
    while (bar.value() < bar.maximum()) {
        timer.start();
        bar.setValue(bar.value() + bar.pageStep());
        widget.grab();
        QCoreApplication::processEvents();
        frames.push_back(milliseconds(timer));
    }
    std::ranges::sort(frames);
    std::printf("scrolled by a page, %zu times: median %.2f ms, worst %.2f ms\n", frames.size(),
                frames[frames.size() / 2], frames.back());
    timer.start();
    while (timer.elapsed() < 3000) QCoreApplication::processEvents({}, 20);
    timer.start();
    widget.grab();
    std::printf("the last page painted with its pictures: %.2f ms\n", milliseconds(timer));
    return 0;
}
