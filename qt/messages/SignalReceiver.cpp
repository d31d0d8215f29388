#include "qt/messages/SignalReceiver.h"

namespace qt {

SignalReceiver::SignalReceiver(QDBusConnection bus, const platform::SignalForm& form, const QStringList& arguments,
                               Handler handler)
    : bus_(std::move(bus)),
      path_(QLatin1String(form.path)),
      interface_(QLatin1String(form.interface)),
      member_(QLatin1String(form.member)),
      arguments_(arguments),
      signature_(QLatin1String(form.signature)),
      handler_(std::move(handler)) {
    bus_.connect(QString(), path_, interface_, member_, arguments_, QString(), this, SLOT(receive(QDBusMessage)));
}

void SignalReceiver::retire() {
    handler_ = nullptr;
    bus_.disconnect(QString(), path_, interface_, member_, arguments_, QString(), this, SLOT(receive(QDBusMessage)));
    if (handling_)
        deleteLater();
    else
        delete this;
}

void SignalReceiver::receive(const QDBusMessage& message) {
    if (!handler_ || message.signature() != signature_) return;
    Handler handler = handler_;  // it may end the observation that holds it
    ++handling_;
    handler(message);
    --handling_;
}

}  // namespace qt
