#include "qt/controls/SearchField.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPointer>

#include <utility>

namespace qt {

namespace {

class SearchKeys final : public QObject {
public:
    SearchKeys(QLineEdit& line, QWidget& list, std::function<void()> gotKeyboard)
        : QObject(&line), line_(line), list_(&list), gotKeyboard_(std::move(gotKeyboard)) {
        line.installEventFilter(this);
    }

private:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::FocusIn && line_.text().isEmpty()) gotKeyboard_();
        // What the window would do with the key is not meant here.
        const bool isAsked = event->type() == QEvent::ShortcutOverride;
        if ((!isAsked && event->type() != QEvent::KeyPress) || !list_) return false;
        auto& key = static_cast<QKeyEvent&>(*event);
        if (!isOurs(key.key())) return false;
        if (isAsked)
            event->accept();
        else
            take(key);
        return true;
    }
    bool isOurs(int key) const {
        switch (key) {
            case Qt::Key_Escape:
                return !line_.text().isEmpty();
            case Qt::Key_Up:
            case Qt::Key_Down:
            case Qt::Key_PageUp:
            case Qt::Key_PageDown:
            case Qt::Key_Return:
            case Qt::Key_Enter:
                return true;
            default:
                return false;
        }
    }
    void take(QKeyEvent& key) {
        if (key.key() == Qt::Key_Escape) return line_.clear();
        if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) return list_->setFocus(Qt::ShortcutFocusReason);
        QKeyEvent moved(key.type(), key.key(), key.modifiers());
        QCoreApplication::sendEvent(list_, &moved);
    }

    QLineEdit& line_;
    const QPointer<QWidget> list_;
    const std::function<void()> gotKeyboard_;
};

}  // namespace

void makeSearchField(QLineEdit& line, QWidget& list, QObject& context, const std::function<void()>& perform) {
    new SearchKeys(line, list, [alive = QPointer<QObject>(&context), perform] {
        if (alive) perform();
    });
    QObject::connect(&line, &QLineEdit::textChanged, &context, [&line, perform] {
        line.setClearButtonEnabled(true);
        perform();
    });
}

}  // namespace qt
