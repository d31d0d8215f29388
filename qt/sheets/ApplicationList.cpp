#include "qt/sheets/ApplicationList.h"

#include "qt/controls/CellDelegate.h"
#include "qt/sheets/ApplicationModel.h"

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QStyledItemDelegate>

#include <algorithm>

namespace qt {

namespace {

constexpr int kMargin = CellDelegate::kMargin;

class RowDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override {
        return {option.fontMetrics.averageCharWidth() * 20, CellDelegate::rowHeight(option.font)};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const QStyle* style = option.widget ? option.widget->style() : QApplication::style();
        QStyleOptionViewItem shown = withReadableSelection(option);
        style->drawPrimitive(QStyle::PE_PanelItemViewItem, &shown, painter, option.widget);
        auto mirrored = [&](const QRect& place) { return QStyle::visualRect(option.direction, option.rect, place); };
        constexpr int kExtent = CellDelegate::kIconExtent;
        painter->save();
        const QRect iconPlace =
            mirrored({option.rect.left() + kMargin, option.rect.top(), kExtent, option.rect.height()});
        qvariant_cast<QIcon>(index.data(Qt::DecorationRole)).paint(painter, iconPlace);
        shown.rect = mirrored(option.rect.adjusted(kMargin + kExtent, 0, 0, 0));
        drawLines(painter, shown, contents(index));
        painter->restore();
        shown.rect = option.rect;
        if (option.state & QStyle::State_HasFocus) drawFocus(painter, shown, *style);
    }

private:
    static platform::CellValue contents(const QModelIndex& index) {
        platform::CellValue value;
        auto text = [&](int role) { return index.data(role).toString().toStdString(); };
        value.lines.push_back({text(Qt::DisplayRole)});
        if (std::string second = text(ApplicationModel::kSecondLineRole); !second.empty())
            value.lines.push_back({second, true});
        if (std::string mark = text(ApplicationModel::kMarkRole); !mark.empty()) value.marks.push_back(mark);
        return value;
    }

    static void drawFocus(QPainter* painter, const QStyleOptionViewItem& option, const QStyle& style) {
        QStyleOptionFocusRect focus;
        static_cast<QStyleOption&>(focus) = option;
        focus.state |= QStyle::State_KeyboardFocusChange | QStyle::State_Item;
        focus.backgroundColor =
            option.palette.color(option.state & QStyle::State_Selected ? QPalette::Highlight : QPalette::Base);
        style.drawPrimitive(QStyle::PE_FrameFocusRect, &focus, painter, option.widget);
    }
};

bool movesBetweenRows(int key) {
    constexpr int kKeys[] = {Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown};
    return std::find(std::begin(kKeys), std::end(kKeys), key) != std::end(kKeys);
}

bool isModified(const QKeyEvent& event) {
    return event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
}

}  // namespace

ApplicationList::ApplicationList(QLineEdit& search, QWidget* parent)
    : QListView(parent), search_(search), whyEmpty_(*new QLabel(this)) {
    setUniformItemSizes(true);
    setItemDelegate(new RowDelegate(this));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    whyEmpty_.setObjectName(QStringLiteral("applicationsEmpty"));
    whyEmpty_.setTextFormat(Qt::PlainText);
    whyEmpty_.setAlignment(Qt::AlignCenter);
    whyEmpty_.setWordWrap(true);
    whyEmpty_.setAttribute(Qt::WA_TransparentForMouseEvents);
    whyEmpty_.hide();
    search.installEventFilter(this);
}

void ApplicationList::sayWhyEmpty(const QString& text) {
    const bool isNew = !text.isEmpty() && text != whyEmpty_.text();
    whyEmpty_.setText(text);
    whyEmpty_.setVisible(!text.isEmpty());
    if (!isNew) return;
    QAccessibleEvent event(&whyEmpty_, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void ApplicationList::resizeEvent(QResizeEvent* event) {
    QListView::resizeEvent(event);
    whyEmpty_.setGeometry(rect().adjusted(kMargin, kMargin, -kMargin, -kMargin));
}

// The focus goes along, for a screen reader tells of the row that has it.
bool ApplicationList::eventFilter(QObject* object, QEvent* event) {
    if (object != &search_ || event->type() != QEvent::KeyPress) return QListView::eventFilter(object, event);
    auto& key = static_cast<QKeyEvent&>(*event);
    if (!movesBetweenRows(key.key()) || isModified(key) || !model() || model()->rowCount() == 0) return false;
    moveFromSearch(key);
    return true;
}

// What the search has found first is under the cursor already; without it the first key comes to the first row.
void ApplicationList::moveFromSearch(QKeyEvent& event) {
    const bool isFresh = !currentIndex().isValid();
    setFocus(Qt::OtherFocusReason);
    isPassing_ = true;
    if (isFresh)
        setCurrentIndex(model()->index(0, 0));
    else
        QListView::keyPressEvent(&event);
    isPassing_ = false;
}

QItemSelectionModel::SelectionFlags ApplicationList::selectionCommand(const QModelIndex& index,
                                                                      const QEvent* event) const {
    return isPassing_ ? QItemSelectionModel::NoUpdate : QListView::selectionCommand(index, event);
}

void ApplicationList::keyPressEvent(QKeyEvent* event) {
    const bool isPlain = !isModified(*event);
    if (isPlain && event->key() == Qt::Key_Up && currentIndex().row() <= 0) return search_.setFocus();
    if (event->key() == Qt::Key_Space && onToggle_) return onToggle_();
    const bool isText = !event->text().isEmpty() && event->text().at(0).isPrint();
    if (isPlain && (isText || event->key() == Qt::Key_Backspace)) {
        search_.setFocus();
        search_.deselect();
        QApplication::sendEvent(&search_, event);
        return;
    }
    isPassing_ = isPlain && !(event->modifiers() & Qt::ShiftModifier) && event->key() != Qt::Key_Return;
    QListView::keyPressEvent(event);
    isPassing_ = false;
}

}  // namespace qt
