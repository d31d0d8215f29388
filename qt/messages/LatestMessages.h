// Stands between a bus that may be flooded and receivers that show a state: each of them gets the last of what came for
// it, once a frame. A message that is held costs no decoding.
#pragma once

#include <QDBusMessage>
#include <QTimer>

#include <functional>
#include <vector>

namespace qt {

class LatestMessages final {
public:
    using Handler = std::function<void(const QDBusMessage&)>;

    LatestMessages();
    // The handler is called within a frame's time, unless a later message for the same one comes or it is forgotten
    // before. Receivers are called in the order of their messages. The handler must live until then.
    void hold(const Handler& handler, const QDBusMessage& message);
    void forget(const Handler& handler);

private:
    struct Held {
        const Handler* handler;
        QDBusMessage message;
    };
    void handOver();

    std::vector<Held> held_;
    QTimer frame_;
};

}  // namespace qt
