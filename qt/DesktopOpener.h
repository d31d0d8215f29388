// Opening files and addresses with whatever the desktop has for them.
#pragma once

#include <QObject>
#include <QUrl>

#include <functional>

namespace qt {

// Asks the desktop (xdg-open, else the toolkit's own ways), which says some time later when it has nothing for it:
// `failed` is called then, at most once, from the event loop or at once, and not after the context has gone. What is
// opened outlives this process.
void openWithDesktop(const QUrl& address, QObject& context, std::function<void()> failed);

}  // namespace qt
