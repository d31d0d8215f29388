#include "qt/QtToolkit.h"

#include <QFontInfo>
#include <QGuiApplication>
#include <QLocale>

#include <mutex>
#include <system_error>
#include <thread>

namespace qt {

using namespace platform;

// Where a listing is told of; it may come when the toolkit has gone.
struct QtToolkit::FontReceiver {
    void close() {
        const std::lock_guard lock(mutex);
        context.reset();
    }
    void tell(const std::function<void()>& news) {
        const std::lock_guard lock(mutex);
        if (context) QMetaObject::invokeMethod(context.get(), news, Qt::QueuedConnection);
    }

    std::mutex mutex;
    std::unique_ptr<QObject> context = std::make_unique<QObject>();
};

void QtToolkit::stopListingFonts() {
    if (fontReceiver_) fontReceiver_->close();
}

std::string QtToolkit::numberText(std::size_t number) {
    return QLocale().toString(static_cast<qulonglong>(number)).toStdString();
}

void QtToolkit::listFonts(std::function<void(ListedFonts fonts)> handler) {
    if (!fontReceiver_) fontReceiver_ = std::make_shared<FontReceiver>();
    auto start = [receiver = fontReceiver_, list = fontLister_, handler = std::move(handler)] {
        const std::string family = QFontInfo(QGuiApplication::font()).family().toStdString();
        auto work = [receiver, list, handler, family] {
            auto fonts = std::make_shared<ListedFonts>(list ? list() : ListedFonts());
            fonts->interfaceFamily = family;
            receiver->tell([handler, fonts] { handler(std::move(*fonts)); });
        };
        try {
            std::thread(work).detach();
        } catch (const std::system_error&) {
            receiver->tell([handler] { handler({}); });
        }
    };
    if (!window_ || firstPaint_->isOver()) return start();
    listingDue_ = start;
}

}  // namespace qt
