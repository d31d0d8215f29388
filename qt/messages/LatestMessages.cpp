#include "qt/messages/LatestMessages.h"

#include <utility>

namespace qt {

namespace {

constexpr int kFrame = 16;  // milliseconds

}  // namespace

LatestMessages::LatestMessages() {
    frame_.setSingleShot(true);
    frame_.setTimerType(Qt::PreciseTimer);
    frame_.callOnTimeout([this] { handOver(); });
}

void LatestMessages::hold(const Handler& handler, const QDBusMessage& message) {
    forget(handler);
    held_.push_back({&handler, message});
    if (!frame_.isActive()) frame_.start(kFrame);
}

void LatestMessages::forget(const Handler& handler) {
    std::erase_if(held_, [&](const Held& held) { return held.handler == &handler; });
}

// A handler may end any receiver, its own included.
void LatestMessages::handOver() {
    while (!held_.empty()) {
        Held first = std::move(held_.front());
        held_.erase(held_.begin());
        Handler handler = *first.handler;
        handler(first.message);
    }
}

}  // namespace qt
