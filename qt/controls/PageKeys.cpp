#include "qt/controls/PageKeys.h"

#include <algorithm>

namespace qt {

namespace {

QAction* actionFor(const QList<QAction*>& actions, const QKeyEvent& key) {
    const QKeySequence pressed(key.key() | int(key.modifiers() & ~Qt::KeypadModifier));
    for (QAction* action : actions)
        if (action->isEnabled() && action->shortcuts().contains(pressed)) return action;
    return nullptr;
}

class PageKeys final : public QObject {
public:
    explicit PageKeys(QWidget& page) : QObject(&page), page_(page) {
        page.installEventFilter(this);
        // The keys are shown beside the titles, and served here.
        for (QAction* action : page.actions()) action->setShortcutContext(Qt::WidgetShortcut);
    }

private:
    bool eventFilter(QObject*, QEvent* event) override {
        const bool isAsked = event->type() == QEvent::ShortcutOverride;
        if (!isAsked && event->type() != QEvent::KeyPress) return false;
        const auto& key = static_cast<QKeyEvent&>(*event);
        const bool isOurs = isAsked ? actionFor(page_.actions(), key) != nullptr : triggerByKey(page_.actions(), key);
        if (isOurs) event->accept();
        return isOurs;
    }

    const QWidget& page_;
};

}  // namespace

bool triggerByKey(const QList<QAction*>& actions, const QKeyEvent& key) {
    QAction* action = actionFor(actions, key);
    if (action) action->trigger();
    return action;
}

void servePageKeys(QWidget& page) {
    if (!page.actions().isEmpty()) new PageKeys(page);
}

}  // namespace qt
