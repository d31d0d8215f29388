// Pictures of names in their fonts, drawn on a thread of its own while the window goes on. Nothing that is in a font's
// file keeps the window waiting.
#pragma once

#include "qt/fontmenu/FacePainter.h"

#include <QCache>
#include <QObject>
#include <QSet>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>

namespace qt {

std::size_t qHash(const FaceText& text, std::size_t seed = 0);

class FaceImages final : public QObject {
public:
    static constexpr int kMostBytes = 32 << 20;              // of pictures; those that were shown last are kept
    static constexpr std::size_t kMostWaiting = 200;         // pictures; what was wished for before them is left
    static constexpr int kMostGivenUp = 4;                   // threads; while there are so many, nothing more is drawn
    static constexpr std::chrono::milliseconds kLimit{200};  // for one picture

    using Draw = std::function<QImage(const FaceText&)>;  // called on another thread
    // `changed` is called after pictures have come, and never from within image().
    explicit FaceImages(std::function<void()> changed, Draw draw = drawFaceText,
                        std::chrono::milliseconds limit = kLimit);
    // Waits for the picture that is being drawn no longer than the limit.
    ~FaceImages() override;

    // Null: there is none, either not yet, or for good. Those that are asked for last are drawn first. A face that
    // takes longer than the limit is not drawn again until its file has changed.
    QImage image(const FaceText& wanted);

private:
    struct Worker;
    static void run(const std::shared_ptr<Worker>& worker, const Draw& draw);
    void start();
    void look();
    void takeDrawn();

    const std::function<void()> changed_;
    const Draw draw_;
    const std::chrono::milliseconds limit_;
    QCache<FaceText, QImage> images_{kMostBytes};
    QSet<FaceText> slow_;  // without what is drawn
    std::shared_ptr<Worker> worker_;
    std::shared_ptr<std::atomic<int>> givenUp_ = std::make_shared<std::atomic<int>>(0);
    QTimer watch_;  // while there is something to draw
};

}  // namespace qt
