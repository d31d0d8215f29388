#include "qt/controls/InterfaceLoader.h"

#include "qt/controls/FittingScrollArea.h"
#include "qt/controls/FittingSplitter.h"
#include "qt/controls/MeasuredLabel.h"
#include "qt/controls/PageKeys.h"
#include "qt/controls/QtAction.h"
#include "qt/controls/QtControls.h"
#include "qt/controls/QtProgressIndicator.h"
#include "qt/controls/QtTableView.h"
#include "qt/controls/QtTextView.h"
#include "qt/controls/SearchField.h"
#include "qt/controls/StatusText.h"
#include "qt/controls/UserActions.h"
#include "qt/fontmenu/QtFontMenuView.h"
#include "qt/images/FileIcons.h"
#include "qt/sheets/QtPanel.h"
#include "qt/texts/InterfaceTexts.h"
#include "qt/texts/PlainToolTips.h"

#include <QCoreApplication>
#include <QFile>
#include <QKeyEvent>
#include <QTextBrowser>
#include <QUiLoader>

namespace qt {

using namespace platform;

namespace {

std::string nameOf(const QWidget& widget) { return widget.objectName().toStdString(); }

bool isSheet(const QWidget& widget) { return widget.property("sheet").toBool(); }

std::unique_ptr<View> makeView(QWidget& widget, InterfaceOwner& owner, const Bundle& texts) {
    if (isSheet(widget)) return std::make_unique<QtPanel>(widget);
    if (auto* button = qobject_cast<QAbstractButton*>(&widget)) return std::make_unique<QtButton>(*button);
    if (auto* text = dynamic_cast<StatusText*>(&widget)) return std::make_unique<QtStatusText>(*text);
    if (auto* label = qobject_cast<QLabel*>(&widget)) return std::make_unique<QtLabel>(*label);
    if (auto* edit = qobject_cast<QLineEdit*>(&widget)) return std::make_unique<QtLineEdit>(*edit);
    if (auto* box = qobject_cast<QSpinBox*>(&widget)) return std::make_unique<QtSpinBox>(*box);
    if (auto* menu = qobject_cast<QComboBox*>(&widget)) return std::make_unique<QtPopUpButton>(*menu);
    if (auto* table = qobject_cast<QTableView*>(&widget)) return std::make_unique<QtTableView>(*table, owner);
    if (auto* tree = qobject_cast<QTreeView*>(&widget)) return std::make_unique<QtFontMenuView>(*tree, texts);
    if (auto* tabs = qobject_cast<QTabWidget*>(&widget)) return std::make_unique<QtTabView>(*tabs);
    if (auto* bar = qobject_cast<QProgressBar*>(&widget)) return std::make_unique<QtProgressIndicator>(*bar);
    if (auto* text = qobject_cast<QTextEdit*>(&widget)) return std::make_unique<QtTextView>(*text);
    return std::make_unique<QtPlainView>(widget);
}

void connectAction(QWidget& widget, View& view, InterfaceOwner& owner, QObject& context) {
    std::string selector = widget.property("action").toString().toStdString();
    if (!selector.empty())
        onUserAction(widget, context, [&owner, &view, selector] { owner.performAction(selector, view); });
}

// For each change of a text that is not the owner's own.
void connectTyping(QWidget& widget, View& view, InterfaceOwner& owner, QObject& context) {
    auto* line = qobject_cast<QLineEdit*>(&widget);
    std::string selector = widget.property("typingAction").toString().toStdString();
    if (line && !selector.empty())
        QObject::connect(line, &QLineEdit::textChanged, &context,
                         [&owner, &view, selector] { owner.performAction(selector, view); });
}

void connectSearch(QWidget& widget, View& view, InterfaceOwner& owner, QObject& context) {
    auto* line = qobject_cast<QLineEdit*>(&widget);
    auto* list = widget.window()->findChild<QWidget*>(widget.property("searches").toString());
    std::string selector = widget.property("action").toString().toStdString();
    if (line && list)
        makeSearchField(*line, *list, context, [&owner, &view, selector] { owner.performAction(selector, view); });
}

void showImage(QWidget& widget, const Bundle& resources) {
    auto* label = qobject_cast<QLabel*>(&widget);
    std::string file = widget.property("image").toString().toStdString();
    if (!label || file.empty()) return;
    auto path = resources.resourcePath(file, "");
    int extent = widget.property("imageExtent").toInt();
    if (path) label->setPixmap(iconOfImageFile(toQString(*path)).pixmap(extent, extent));
}

// A line whose file gives it a direction has texts that run so whichever letters are in them, such as expressions. Of a
// text's direction it hears by the key for it alone.
void keepDirection(QWidget& widget) {
    if (!qobject_cast<QLineEdit*>(&widget) || !widget.testAttribute(Qt::WA_SetLayoutDirection)) return;
    QKeyEvent key(QEvent::KeyPress, widget.isRightToLeft() ? Qt::Key_Direction_R : Qt::Key_Direction_L, {});
    QCoreApplication::sendEvent(&widget, &key);
}

// The bold letters of a title, in proportion to those around it, also when those change.
class TitleFont final : public QObject {
public:
    TitleFont(QWidget& title, double scale) : QObject(&title), title_(title), scale_(scale) {
        title.parentWidget()->installEventFilter(this);
        apply();
    }

private:
    bool eventFilter(QObject* around, QEvent* event) override {
        if (event->type() == QEvent::FontChange) apply();
        return QObject::eventFilter(around, event);
    }
    void apply() {
        QFont font = title_.parentWidget()->font();
        font.setPointSizeF(font.pointSizeF() * scale_);
        font.setBold(true);
        title_.setFont(font);
    }

    QWidget& title_;
    const double scale_;
};

void scaleFont(QWidget& widget) {
    if (double scale = widget.property("fontScale").toDouble(); scale > 0 && widget.parentWidget())
        new TitleFont(widget, scale);
}

class WidgetLoader final : public QUiLoader {
public:
    // A loader searches for Designer's plug-ins as it is made, and loads them all, which costs more than all the rest:
    // let it find none.
    static std::unique_ptr<WidgetLoader> make() {
        const QStringList paths = QCoreApplication::libraryPaths();
        QCoreApplication::setLibraryPaths({});
        std::unique_ptr<WidgetLoader> loader(new WidgetLoader);
        QCoreApplication::setLibraryPaths(paths);
        return loader;
    }
    QWidget* createWidget(const QString& className, QWidget* parent, const QString& name) override {
        QWidget* widget = createOurs(className, parent);
        if (!widget) return QUiLoader::createWidget(className, parent, name);
        widget->setObjectName(name);
        return widget;
    }

private:
    static QWidget* createOurs(const QString& className, QWidget* parent) {
        if (className == QStringLiteral("QScrollArea")) return new FittingScrollArea(parent);
        if (className == QStringLiteral("QSplitter")) return new FittingSplitter(parent);
        if (className == QStringLiteral("QLabel")) return new MeasuredLabel(parent);
        if (className == QStringLiteral("QPlainTextEdit")) return new StatusText(parent);
        return nullptr;
    }
};

// Children that widgets make for themselves have no name, or one that begins with "qt_".
bool isNamed(const QWidget& widget) {
    return !widget.objectName().isEmpty() && !widget.objectName().startsWith(QStringLiteral("qt_"));
}

}  // namespace

class InterfaceLoader {
public:
    InterfaceLoader(InterfaceOwner& owner, const Bundle& resources) : owner_(owner), resources_(resources) {}

    std::unique_ptr<Interface> load(const std::string& path, std::string& error) {
        QFile file(toQString(path));
        if (!file.open(QIODevice::ReadOnly)) {
            error = path + ": " + file.errorString().toStdString();
            return nullptr;
        }
        auto loader = WidgetLoader::make();
        QWidget* root = loader->load(&file);
        if (!root) {
            error = path + ": " + loader->errorString().toStdString();
            return nullptr;
        }
        result_->root_ = root;
        showPlainToolTips(*root);
        connectAll();
        return std::move(result_);
    }

private:
    // Wrappers of sheets move their widgets, so all are listed first.
    void connectAll() {
        QList<QWidget*> widgets = result_->root_->findChildren<QWidget*>();
        widgets.prepend(result_->root_);
        for (QWidget* widget : widgets)
            if (isNamed(*widget)) add(*widget);
        for (QAction* action : result_->root_->actions()) add(*action);
        servePageKeys(*result_->root_);
        // Texts of another length ask for other sizes, which a window is made for before it is shown: from the leaves
        // up.
        for (auto widget = widgets.crbegin(); widget != widgets.crend(); ++widget) (*widget)->updateGeometry();
        for (auto& [name, view] : result_->views_) owner_.setOutlet(name, *view);
    }

    void add(QWidget& widget) {
        showInUsersLanguage(widget, resources_);
        auto& view = result_->views_[nameOf(widget)];
        view = makeView(widget, owner_, resources_);
        if (widget.property("searches").isValid())
            connectSearch(widget, *view, owner_, *result_->connections_);
        else
            connectAction(widget, *view, owner_, *result_->connections_);
        connectTyping(widget, *view, owner_, *result_->connections_);
        takeEveryInput(widget);
        showImage(widget, resources_);
        scaleFont(widget);
        keepDirection(widget);
        if (auto* area = dynamic_cast<FittingScrollArea*>(&widget)) area->showWhatLiesBehind();
    }

    void add(QAction& action) {
        showInUsersLanguage(action, resources_);
        auto& view = result_->views_[action.objectName().toStdString()];
        view = std::make_unique<QtAction>(action);
        std::string selector = action.property("action").toString().toStdString();
        QObject::connect(&action, &QAction::triggered, result_->connections_.get(),
                         [&owner = owner_, &sender = *view, selector] { owner.performAction(selector, sender); });
    }

    InterfaceOwner& owner_;
    const Bundle& resources_;
    std::unique_ptr<Interface> result_{new Interface};
};

std::unique_ptr<Interface> loadInterface(const std::string& path, const Bundle& resources, InterfaceOwner& owner,
                                         std::string& error) {
    return InterfaceLoader(owner, resources).load(path, error);
}

Interface::~Interface() {
    disconnectOwner();
    views_.clear();
    delete root_;
}

View* Interface::view(const std::string& name) const {
    auto found = views_.find(name);
    return found == views_.end() ? nullptr : found->second.get();
}

void Interface::followLinks(const std::function<void(const QUrl& link)>& follow) {
    for (auto& [name, view] : views_)
        if (auto* text = qobject_cast<QTextBrowser*>(widgetOf(view.get()))) {
            text->setOpenLinks(false);
            QObject::connect(text, &QTextBrowser::anchorClicked, connections_.get(), follow);
        }
}

void Interface::disconnectOwner() {
    connections_.reset();
    for (auto& [name, view] : views_)
        if (TableView* table = view->asTableView()) {
            table->setDataSource(nullptr);
            table->setSelectionObserver(nullptr);
            table->setDoubleAction({});
        }
}

}  // namespace qt
