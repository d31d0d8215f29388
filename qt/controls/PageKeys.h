// The keys of the actions that an interface file gives a page.
#pragma once

#include <QAction>
#include <QKeyEvent>
#include <QWidget>

namespace qt {

// Triggers that of the actions which has the key that was pressed. False when none has, or it cannot be used.
bool triggerByKey(const QList<QAction*>& actions, const QKeyEvent& key);

// The page's actions are triggered by their keys while the keyboard is somewhere in the page, unless what has it takes
// the key itself, as a line of text takes those of its own undo. The page comes before the window around it, which may
// have the same keys.
void servePageKeys(QWidget& page);

}  // namespace qt
