// Hands each signal of one kind to a function, on the thread that made the receiver.
#pragma once

#include "platform/MessageForms.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <functional>

namespace qt {

class SignalReceiver final : public QObject {
    Q_OBJECT

public:
    using Handler = std::function<void(const QDBusMessage&)>;
    // Signals of another D-Bus signature than the form's are left out. The arguments are those that a signal's first
    // arguments must equal; a null text accepts any. Where the bus is not connected nothing is ever heard.
    SignalReceiver(QDBusConnection bus, const platform::SignalForm& form, const QStringList& arguments,
                   Handler handler);

    // Nothing is handed on from now on, signals on their way included. Deletes the receiver: at once, or later when
    // this is its own handler's doing. A bus asks its thread about each receiver that goes, and waits for ever once
    // that thread has ended, so none may be left to the end of the application.
    void retire();

private Q_SLOTS:
    void receive(const QDBusMessage& message);

private:
    QDBusConnection bus_;
    QString path_, interface_, member_;
    QStringList arguments_;
    QString signature_;
    Handler handler_;
    int handling_ = 0;  // depth
};

}  // namespace qt
