// The chooser's list: icon, name with a mark beside it, and a small second line; in words when it is empty. Works with
// the field above it: what is typed in the list goes there.
#pragma once

#include <QLabel>
#include <QListView>

#include <functional>

class QLineEdit;

namespace qt {

class ApplicationList final : public QListView {
public:
    // The field, which outlives the list, moves in the list by the keys that a line for typing has no use for.
    ApplicationList(QLineEdit& search, QWidget* parent);

    // Shown, and told to a screen reader, in place of rows; empty while there are some.
    void sayWhyEmpty(const QString& text);
    // While a key without modifiers moves from row to row. That by itself selects nothing, and deselects nothing.
    bool isPassing() const { return isPassing_; }
    // The blank key: the row under the cursor is to be selected, or not any more.
    void setToggleHandler(std::function<void()> handler) { onToggle_ = std::move(handler); }

private:
    bool eventFilter(QObject* object, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index, const QEvent* event) const override;
    void resizeEvent(QResizeEvent* event) override;
    void moveFromSearch(QKeyEvent& event);

    QLineEdit& search_;
    QLabel& whyEmpty_;
    std::function<void()> onToggle_;
    bool isPassing_ = false;
};

}  // namespace qt
