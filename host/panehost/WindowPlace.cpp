#include "host/panehost/WindowPlace.h"

#include <QEvent>
#include <QScreen>
#include <QWidget>

namespace host {

using platform::PropertyList;

WindowPlace::WindowPlace(QWidget& window, platform::PreferenceService& preferences, std::string domain, std::string key)
    : window_(window), preferences_(preferences), domain_(std::move(domain)), key_(std::move(key)) {
    const PropertyList stored = preferences_.copyValue(key_, domain_);
    const std::string_view bytes = stored.dataValue();
    window_.restoreGeometry(QByteArray(bytes.data(), static_cast<int>(bytes.size())));
    // Not every window manager shrinks what comes from a larger screen.
    window_.resize(window_.size().boundedTo(window_.screen()->availableSize()));
    window_.installEventFilter(this);
}

bool WindowPlace::eventFilter(QObject* object, QEvent* event) {
    // Minimising hides it too, in the eyes of some.
    if (event->type() == QEvent::Hide && !event->spontaneous()) {
        const QByteArray place = window_.saveGeometry();
        preferences_.setValue(key_, PropertyList::data({place.data(), static_cast<std::size_t>(place.size())}),
                              domain_);
        preferences_.synchronize(domain_);
    }
    return QObject::eventFilter(object, event);
}

}  // namespace host
