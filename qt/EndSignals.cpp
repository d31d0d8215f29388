#include "qt/EndSignals.h"

#include <QSocketNotifier>

#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>

namespace qt {

EndSignals::EndSignals() {
    sigset_t mask;
    sigemptyset(&mask);
    sigaddset(&mask, SIGINT);
    sigaddset(&mask, SIGTERM);
    sigprocmask(SIG_BLOCK, &mask, nullptr);
    file_ = signalfd(-1, &mask, SFD_CLOEXEC | SFD_NONBLOCK);
}

EndSignals::~EndSignals() { ::close(file_); }

void EndSignals::setHandler(std::function<void()> handler) {
    auto* notifier = new QSocketNotifier(file_, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, handler = std::move(handler)] {
        signalfd_siginfo signal;
        while (::read(file_, &signal, sizeof signal) == sizeof signal) handler();
    });
}

}  // namespace qt
