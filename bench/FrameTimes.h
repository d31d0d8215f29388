// What a list of fonts takes to appear and to be scrolled through, printed for preview_peers.py.
#pragma once

#include <QAbstractItemView>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QScrollBar>

#include <algorithm>
#include <cstdio>
#include <vector>

inline void printMilliseconds(const char* what, double milliseconds) { std::printf("%s\t%.3f\n", what, milliseconds); }
inline double milliseconds(const QElapsedTimer& timer) { return static_cast<double>(timer.nsecsElapsed()) / 1e6; }

// A page a frame, at most the first so many pages.
inline void printScrolling(QAbstractItemView& list, std::size_t mostPages = 300) {
    QScrollBar& bar = *list.verticalScrollBar();
    std::vector<double> frames;
    QElapsedTimer timer;
    while (bar.value() < bar.maximum() && frames.size() < mostPages) {
        timer.start();
        bar.setValue(bar.value() + bar.pageStep());
        list.viewport()->repaint();
        QCoreApplication::processEvents();
        frames.push_back(milliseconds(timer));
    }
    std::ranges::sort(frames);
    if (frames.empty()) return;
    printMilliseconds("page", frames[frames.size() / 2]);
    printMilliseconds("worst page", frames.back());
}
