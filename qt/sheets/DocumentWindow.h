// A window that shows one of the bundle's rich texts, beside the pane's and never in its way: for documents that no
// application of the desktop's opens.
#pragma once

#include "qt/controls/MessageLine.h"
#include "qt/controls/QtTextView.h"

#include <QDialog>
#include <QTextBrowser>

#include <functional>

namespace qt {

// Escape and Ctrl+W close it, which deletes it. Its title is the text's first heading. It is nobody's child, so that a
// sheet on the pane's window does not block it, and does not keep the program running.
class DocumentWindow final : public QDialog {
public:
    DocumentWindow(const QString& closeHint, std::function<void(const QUrl& link)> follow);

    // False when the folder has no text that can be shown (QtTextView::loadRichText).
    bool load(const QString& folder);
    // In a line below the text, until it is closed or says something else.
    void say(const QString& message);

private:
    QTextBrowser& text_;
    QtTextView view_;
    MessageLine& line_;
};

}  // namespace qt
