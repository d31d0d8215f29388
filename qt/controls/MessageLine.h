// A line with a message, below what it is about: a sign, a text of up to a few lines, a button for what can be done,
// and one that closes it.
//
// It takes room in its layout only while it says something, and asks for the same least width whatever it says: a text
// is broken anywhere if need be, and what does not fit into its last line is in the tool tip. A screen reader is told
// of an alert. The text is plain.
#pragma once

#include <QFrame>
#include <QLabel>
#include <QPushButton>

#include <functional>

namespace qt {

class MessageLine final : public QFrame {
public:
    enum class Tone { Information, Warning };
    struct Button {
        QString title, hint;  // without a title there is no button
    };

    // Says nothing yet. The handlers are called from the buttons' clicks.
    MessageLine(QWidget& parent, const QString& closeHint, std::function<void()> onButton,
                std::function<void()> onClose);

    void say(Tone tone, const QString& text, const Button& button);
    void sayNothing();

    QSize sizeHint() const override;

private:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    QColor color() const;
    void showSign();

    Tone tone_ = Tone::Information;
    QLabel& sign_;
    QLabel& text_;
    QPushButton& button_;
};

}  // namespace qt
