// Being asked to end: SIGINT and SIGTERM as events.
#pragma once

#include <QObject>

#include <functional>

namespace qt {

// Calls the handler on the event loop, once for each signal. Made before any other thread is, because a thread that has
// the signals open would be killed by them; programs started later get them back only if whoever starts them does so.
class EndSignals final : public QObject {
public:
    EndSignals();
    ~EndSignals() override;
    void setHandler(std::function<void()> handler);  // needs the application object

private:
    int file_;
};

}  // namespace qt
