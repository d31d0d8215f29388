// The module that typeslatectl loads for its commands on the session bus.
#include "platform/linux/SystemLog.h"
#include "platform/qt/QtRunLoop.h"
#include "platform/qt/dbus/DBusNotificationCenter.h"
#include "platform/qt/dbus/RuntimeMessages.h"
#include "tools/BusModule.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#include <optional>

namespace tools {
namespace {

int sArgumentCount = 1;
char sProgramName[] = "typeslatectl";
char* sArguments[] = {sProgramName, nullptr};

// Becomes readable when the process is asked to end.
int endSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    return signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

class QtBusModule final : public BusModule {
public:
    bool isConnected() override { return center_.isConnected(); }
    platform::DistributedNotificationCenter& notifications() override { return center_; }
    platform::RunLoop& runLoop() override { return runLoop_; }
    void observeBroadcasts(std::function<void(std::string_view, std::string_view)> handler) override {
        listener_.emplace([handler = std::move(handler)](const platform::qt::RuntimeMessage& message) {
            handler(message.module, message.message);
        });
    }
    void run() override {
        QSocketNotifier notifier(endSignals(), QSocketNotifier::Read);
        QObject::connect(&notifier, &QSocketNotifier::activated, &application_, &QCoreApplication::quit);
        application_.exec();
        ::close(static_cast<int>(notifier.socket()));
    }
    void stop() override { application_.quit(); }

private:
    QCoreApplication application_{sArgumentCount, sArguments};
    platform::posix::SystemLog log_;
    platform::qt::DBusNotificationCenter center_{log_};
    platform::qt::QtRunLoop runLoop_;
    std::optional<platform::qt::RuntimeMessageListener> listener_;
};

}  // namespace
}  // namespace tools

// Never deleted: the process ends with it, and Qt dislikes being taken down by static destructors.
extern "C" __attribute__((visibility("default"))) tools::BusModule* typeslatectl_busModule() {
    static auto* sModule = new tools::QtBusModule;
    return sModule;
}
