#include "qt/sheets/QtPanel.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>
#include <vector>

namespace qt {

using namespace platform;

namespace {

// Under Wayland, where Qt may have to draw the frame itself, a sheet would have none.
Qt::WindowFlags sheetKind() {
    return QGuiApplication::platformName().startsWith(QStringLiteral("wayland")) ? Qt::Dialog : Qt::Sheet;
}

// Escape and the window's close button end the sheet; its code then takes it off the screen.
class SheetDialog final : public QDialog {
public:
    explicit SheetDialog(QWidget* parent) : QDialog(parent, sheetKind()) { setWindowModality(Qt::WindowModal); }
    void reject() override {
        if (panel) panel->closeByUser();
    }
    // A text there is ready to be typed over.
    void focusFirstControl() {
        if (!focusWidget()) focusNextChild();
        if (auto* field = qobject_cast<QLineEdit*>(focusWidget())) field->selectAll();
    }
    QtPanel* panel = nullptr;

private:
    // What it contains learns of the font after it.
    void changeEvent(QEvent* event) override {
        QDialog::changeEvent(event);
        if (event->type() == QEvent::FontChange && panel) QTimer::singleShot(0, this, [this] { panel->refitText(); });
    }
};

QDialog& makeDialog(QWidget& content) {
    auto* dialog = new SheetDialog(content.parentWidget());
    dialog->setObjectName(content.objectName() + QStringLiteral("Window"));
    dialog->setWindowTitle(content.windowTitle());
    return *dialog;
}

QList<QWidget*> directChildren(const QWidget& content) {
    return content.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
}

QRect scaled(const QRect& r, double factor) {
    auto times = [factor](int value) { return static_cast<int>(std::lround(value * factor)); };
    return {times(r.x()), times(r.y()), times(r.width()), times(r.height())};
}

void enlarge(QWidget& content, double factor) {
    for (QWidget* child : directChildren(content)) child->setGeometry(scaled(child->geometry(), factor));
    content.resize(scaled({QPoint(), content.size()}, factor).size());
}

// Buttons of the left half grow to the right; those of the right half push their left neighbours along.
void fitButtons(QWidget& content) {
    struct Placed {
        QAbstractButton* button;
        QRect designed;
    };
    std::vector<Placed> rightHand;
    for (QWidget* child : directChildren(content)) {
        auto* button = qobject_cast<QAbstractButton*>(child);
        if (!button) continue;
        QRect designed = button->geometry();
        if (designed.center().x() > content.width() / 2) rightHand.push_back({button, designed});
        button->resize(designed.size().expandedTo(button->sizeHint()));
    }
    std::ranges::sort(rightHand, std::greater(), [](const Placed& p) { return p.designed.x(); });
    int right = content.width(), designedRight = right;
    for (const auto& [button, designed] : rightHand) {
        right -= std::max(0, designedRight - designed.x() - designed.width()) + button->width();
        designedRight = designed.x();
        button->move(right, button->y());
    }
}

// Designed from left to right. A layout turns its widgets round by itself.
void mirror(QWidget& content) {
    for (QWidget* child : directChildren(content))
        child->move(content.width() - child->x() - child->width(), child->y());
}

// A button learns that it is the default one from the dialog it is in when told so.
void settleDefaultButton(QWidget& content) {
    for (auto* button : content.findChildren<QPushButton*>()) {
        if (!button->isDefault()) continue;
        button->setDefault(false);
        button->setDefault(true);
    }
}

}  // namespace

QtPanel::QtPanel(QWidget& content) : WidgetView(makeDialog(content)), content_(content) {
    static_cast<SheetDialog&>(widget_).panel = this;
    content.setParent(&widget_);
    content.move(0, 0);
    if (content.layout()) {
        auto* layout = new QVBoxLayout(&widget_);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(&content);
    } else {
        fitText();
        if (content.isRightToLeft()) mirror(content);
    }
    content.show();
    settleDefaultButton(content);
}

void QtPanel::fitText() {
    const double scale = std::max(1.0, double(content_.fontMetrics().height()) / kDesignLineHeight);
    enlarge(content_, scale / std::exchange(textScale_, scale));
    fitButtons(content_);
    widget_.setFixedSize(content_.size());
}

void QtPanel::refitText() {
    if (content_.layout()) return;
    if (content_.isRightToLeft()) mirror(content_);
    fitText();
    if (content_.isRightToLeft()) mirror(content_);
}

Size QtPanel::contentSize() const { return {double(content_.width()), double(content_.height())}; }

void QtPanel::setContentSize(const Size& size) {
    QSize whole(static_cast<int>(std::lround(size.width)), static_cast<int>(std::lround(size.height)));
    if (content_.layout()) {
        widget_.resize(whole);
    } else {
        content_.resize(whole);
        widget_.setFixedSize(whole);
    }
}

void QtPanel::beginSheet(std::function<void(int)> didEnd) {
    endSheet(0);
    didEnd_ = std::move(didEnd);
    if (QWidget* last = widget_.focusWidget()) last->clearFocus();
    widget_.show();
    widget_.activateWindow();
    static_cast<SheetDialog&>(widget_).focusFirstControl();
}

void QtPanel::beginSheetForWindowOf(View& view, std::function<void(int)> didEnd) {
    QWidget* sender = widgetOf(&view);
    if (sender && sender->window() != &widget_) widget_.setParent(sender->window(), widget_.windowFlags());
    beginSheet(std::move(didEnd));
}

// A sheet that its handler leaves on the screen would lock the window for good.
void QtPanel::endSheet(int returnCode) {
    if (!didEnd_) return;
    std::exchange(didEnd_, nullptr)(returnCode);
    if (!didEnd_) widget_.hide();
}

void QtPanel::runModal(std::function<void()> willClose) {
    if (modalLoop_) return;
    willClose_ = std::move(willClose);
    QWidget* active = QApplication::activeWindow();
    if (active && active != &widget_) widget_.setParent(active, widget_.windowFlags());
    widget_.setWindowModality(Qt::ApplicationModal);
    QEventLoop loop;
    modalLoop_ = &loop;
    widget_.show();
    widget_.activateWindow();
    loop.exec();
    modalLoop_ = nullptr;
    widget_.hide();
    widget_.setWindowModality(Qt::WindowModal);
}

void QtPanel::stopModal() {
    if (modalLoop_) modalLoop_->quit();
}

void QtPanel::closeByUser() {
    if (!modalLoop_) return endSheet(0);
    if (auto handler = std::exchange(willClose_, nullptr)) handler();
}

Panel* panelAround(const QWidget& widget) {
    auto* dialog = dynamic_cast<SheetDialog*>(widget.window());
    return dialog ? dialog->panel : nullptr;
}

}  // namespace qt
