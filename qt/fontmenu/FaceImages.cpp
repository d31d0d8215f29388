#include "qt/fontmenu/FaceImages.h"

#include <QHash>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace qt {

using Clock = std::chrono::steady_clock;

std::size_t qHash(const FaceText& text, std::size_t seed) {
    const std::hash<std::string> bytes;
    return seed ^ bytes(text.file) ^ (bytes(text.text) * 3) ^ (text.index * 31U + static_cast<std::size_t>(text.size));
}

// What the thread shares with its owner. Either may end first.
struct FaceImages::Worker {
    std::mutex mutex;
    std::condition_variable isToGoOn, isDone;
    std::vector<FaceText> waiting;                   // the last one is next
    std::vector<std::pair<FaceText, QImage>> drawn;  // and not taken yet
    FaceText drawing;
    Clock::time_point since;
    bool isDrawing = false;
    FaceImages* owner = nullptr;                // null: the thread is to end
    std::shared_ptr<std::atomic<int>> givenUp;  // counts this thread; null: it was not given up
};

namespace {

// The face alone, in whatever size and colour.
FaceText faceOf(const FaceText& text) {
    FaceText face;
    face.file = text.file;
    face.modified = text.modified;
    face.index = text.index;
    return face;
}

}  // namespace

FaceImages::FaceImages(std::function<void()> changed, Draw draw, std::chrono::milliseconds limit)
    : changed_(std::move(changed)), draw_(std::move(draw)), limit_(limit) {
    connect(&watch_, &QTimer::timeout, this, &FaceImages::look);
    watch_.setInterval(limit / 2);
}

FaceImages::~FaceImages() {
    if (!worker_) return;
    std::unique_lock lock(worker_->mutex);
    worker_->owner = nullptr;
    worker_->isToGoOn.notify_one();
    worker_->isDone.wait_for(lock, limit_, [this] { return !worker_->isDrawing; });
}

void FaceImages::run(const std::shared_ptr<Worker>& worker, const Draw& draw) {
    std::unique_lock lock(worker->mutex);
    while (true) {
        worker->isToGoOn.wait(lock, [&] { return !worker->owner || !worker->waiting.empty(); });
        if (!worker->owner) break;
        worker->drawing = std::move(worker->waiting.back());
        worker->waiting.pop_back();
        worker->since = Clock::now();
        worker->isDrawing = true;
        lock.unlock();
        QImage image = draw(worker->drawing);
        lock.lock();
        worker->isDrawing = false;
        worker->isDone.notify_one();
        if (!worker->owner) break;
        worker->drawn.emplace_back(worker->drawing, std::move(image));
        if (worker->drawn.size() > 1) continue;
        QMetaObject::invokeMethod(
            worker->owner, [owner = worker->owner] { owner->takeDrawn(); }, Qt::QueuedConnection);
    }
    if (worker->givenUp) --*worker->givenUp;
}

void FaceImages::start() {
    auto worker = std::make_shared<Worker>();
    worker->owner = this;
    try {
        std::thread([worker, draw = draw_] { run(worker, draw); }).detach();
        worker_ = std::move(worker);
    } catch (const std::system_error&) {
        worker_.reset();
    }
}

QImage FaceImages::image(const FaceText& wanted) {
    if (const QImage* known = images_.object(wanted)) return *known;
    if (slow_.contains(faceOf(wanted))) return {};
    if (!worker_ && *givenUp_ < kMostGivenUp) start();
    if (!worker_) return {};
    const std::lock_guard lock(worker_->mutex);
    if (worker_->isDrawing && worker_->drawing == wanted) return {};
    const auto drawn = std::ranges::find(worker_->drawn, wanted, &std::pair<FaceText, QImage>::first);
    if (drawn != worker_->drawn.end()) return drawn->second;
    std::vector<FaceText>& waiting = worker_->waiting;
    std::erase(waiting, wanted);
    if (waiting.size() == kMostWaiting) waiting.erase(waiting.begin());
    waiting.push_back(wanted);
    worker_->isToGoOn.notify_one();
    if (!watch_.isActive()) watch_.start();
    return {};
}

void FaceImages::takeDrawn() {
    constexpr int kBytesBeside = 256;
    if (!worker_) return;
    std::unique_lock lock(worker_->mutex);
    for (auto& [text, image] : std::exchange(worker_->drawn, {}))
        images_.insert(text, new QImage(image), kBytesBeside + static_cast<int>(image.sizeInBytes()));
    lock.unlock();
    changed_();
}

void FaceImages::look() {
    if (!worker_) return watch_.stop();
    std::unique_lock lock(worker_->mutex);
    if (!worker_->isDrawing) {
        if (worker_->waiting.empty()) watch_.stop();
        return;
    }
    if (Clock::now() - worker_->since < limit_) return;
    slow_.insert(faceOf(worker_->drawing));
    worker_->owner = nullptr;
    worker_->givenUp = givenUp_;
    ++*givenUp_;
    lock.unlock();
    worker_.reset();
    // Whoever is in sight asks again.
    changed_();
}

}  // namespace qt
