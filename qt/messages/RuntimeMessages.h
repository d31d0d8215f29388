// Listening to the messages that the sample runtime library sends; docs/messages.md has their form.
#pragma once

#include <QDBusConnection>

#include <functional>
#include <memory>
#include <string>

namespace qt {

struct RuntimeMessage {
    std::string module, message, data;
};

class SignalReceiver;

// Hears every message from its construction to its end, on the thread that made it. A QCoreApplication must exist.
class RuntimeMessageListener {
public:
    explicit RuntimeMessageListener(std::function<void(const RuntimeMessage&)> handler);
    ~RuntimeMessageListener();
    bool isConnected() const { return bus_.isConnected(); }  // false: there is no session bus, and nothing is heard

private:
    QString connectionName_;
    QDBusConnection bus_;
    std::unique_ptr<SignalReceiver> receiver_;
};

}  // namespace qt
