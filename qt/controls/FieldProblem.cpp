#include "qt/controls/FieldProblem.h"

#include "qt/controls/AlertTone.h"

#include <QAction>
#include <QEvent>
#include <QPainter>

namespace qt {

namespace {

constexpr int kWidth = 2;  // of the frame, in points
const char* const kName = "fieldProblem";

// The frame lies over the field's own, whatever style draws that.
class FieldProblem final : public QWidget {
public:
    FieldProblem(QLineEdit& field, const QString& problem)
        : QWidget(&field), field_(field), ownDescription_(field.accessibleDescription()), sign_(new QAction(this)) {
        setObjectName(QLatin1String(kName));
        setAttribute(Qt::WA_TransparentForMouseEvents);
        sign_->setText(problem);
        sign_->setToolTip(problem);
        field.addAction(sign_, QLineEdit::TrailingPosition);
        field.setAccessibleDescription(problem);
        field.installEventFilter(this);
        connect(&field, &QLineEdit::textChanged, this, &FieldProblem::remove);
        showSign();
        resize(field.size());
        show();
    }
    void remove() {
        // Which may have been given another meanwhile.
        if (field_.accessibleDescription() == sign_->text()) field_.setAccessibleDescription(ownDescription_);
        field_.removeAction(sign_);
        setObjectName({});
        hide();
        deleteLater();
    }

private:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Resize) resize(field_.size());
        if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) showSign();
        return false;
    }
    void showSign() {
        sign_->setIcon(warningSign(field_.fontMetrics().height(), devicePixelRatioF(), alertColor(field_.palette())));
    }
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setPen(QPen(alertColor(field_.palette()), kWidth, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
        painter.drawRect(rect().adjusted(kWidth / 2, kWidth / 2, -kWidth / 2, -kWidth / 2));
    }

    QLineEdit& field_;
    const QString ownDescription_;
    QAction* sign_;
};

}  // namespace

void showProblem(QLineEdit& field, const QString& problem) {
    if (auto* old = field.findChild<QWidget*>(QLatin1String(kName), Qt::FindDirectChildrenOnly))
        static_cast<FieldProblem*>(old)->remove();
    if (!problem.isEmpty()) new FieldProblem(field, problem);
}

}  // namespace qt
