// The module that typeslatectl loads for its commands on the session bus.
#include "linux/system/SystemLog.h"
#include "qt/EndSignals.h"
#include "qt/QtRunLoop.h"
#include "qt/messages/DBusNotificationCenter.h"
#include "qt/messages/RuntimeMessages.h"
#include "qt/messages/SessionBus.h"
#include "tools/headless/BusModule.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusReply>

#include <optional>

namespace tools {
namespace {

int sArgumentCount = 1;
char sProgramName[] = "typeslatectl";
char* sArguments[] = {sProgramName, nullptr};

class QtBusModule final : public BusModule {
public:
    // On a connection of its own: the centre's would say in the log that changes are not announced, before there are
    // any.
    bool isConnected() override { return qt::sessionBusConnection(kProbe).isConnected(); }
    platform::DistributedNotificationCenter& notifications() override { return center_; }
    platform::RunLoop& runLoop() override { return runLoop_; }
    std::optional<std::int64_t> processOf(const std::string& sender) override {
        QDBusConnection bus = qt::sessionBusConnection(kProbe);
        if (!bus.isConnected() || sender.empty()) return std::nullopt;
        const QDBusReply<uint> process = bus.interface()->servicePid(QString::fromStdString(sender));
        return process.isValid() && process.value() > 0 ? std::optional(process.value()) : std::nullopt;
    }
    void observeBroadcasts(std::function<void(std::string_view, std::string_view)> handler) override {
        listener_.emplace([handler = std::move(handler)](const qt::RuntimeMessage& message) {
            handler(message.module, message.message);
        });
    }
    void run() override {
        endSignals_.setHandler([this] { stop(); });
        QDBusConnection bus = qt::sessionBusConnection(kProbe);
        bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                    QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), &application_,
                    SLOT(quit()));
        // A bus that went before there was anyone to be told has said so already.
        if (bus.isConnected()) application_.exec();
    }
    void stop() override { application_.quit(); }

private:
    const QString kProbe = QStringLiteral("typeslatectl-probe");
    qt::EndSignals endSignals_;
    QCoreApplication application_{sArgumentCount, sArguments};
    linux::SystemLog log_;
    qt::DBusNotificationCenter center_{log_};
    qt::QtRunLoop runLoop_;
    std::optional<qt::RuntimeMessageListener> listener_;
};

}  // namespace
}  // namespace tools

// Never deleted: the process ends with it, and Qt dislikes being taken down by static destructors.
extern "C" __attribute__((visibility("default"))) tools::BusModule* typeslatectl_busModule() {
    static auto* sModule = new tools::QtBusModule;
    return sModule;
}
