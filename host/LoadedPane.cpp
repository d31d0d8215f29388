#include "host/LoadedPane.h"

#include "linux/files/Paths.h"
#include "linux/texts/Localized.h"
#include "qt/QtToolkit.h"
#include "qt/controls/MessageLine.h"
#include "qt/texts/Utf8.h"

#include <QEvent>
#include <QGuiApplication>
#include <QLayout>
#include <QScreen>
#include <QStyle>
#include <QVBoxLayout>
#include <QVariant>

#include <algorithm>
#include <utility>

namespace host {

using namespace platform;
using linux::localized;

namespace {

struct ButtonTexts {
    std::string title, hint;
};

ButtonTexts textsOf(const Message& message) {
    switch (message.button) {
        case Message::Button::None:
            break;
        case Message::Button::Offered:
            return {message.offer.buttonTitle, message.offer.buttonHint};
        case Message::Button::TryAgain:
            return {localized("Try Again"), localized("Tries at once, instead of within a second")};
        case Message::Button::ShowInFolder:
            return {localized("Show in Folder"), localized("Opens the folder that the file is in")};
    }
    return {};
}

}  // namespace

// Hands everything on to the pane, and notes what the user does.
class LoadedPane::Owner final : public InterfaceOwner {
public:
    Owner(PreferencePane& pane, SettingsMessages& messages) : pane_(pane), messages_(messages) {}
    void setOutlet(std::string_view name, View& object) override { pane_.setOutlet(name, object); }
    void performAction(std::string_view selector, View& sender) override {
        messages_.userActed();
        pane_.performAction(selector, sender);
    }

private:
    PreferencePane& pane_;
    SettingsMessages& messages_;
};

LoadedPane::LoadedPane(HostPlatform& platform, PaneHost& host, QWidget& page)
    : platform_(platform), host_(host), page_(page) {
    connect(qApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state != Qt::ApplicationActive) wasElsewhere_ = true;
    });
}

LoadedPane::~LoadedPane() {
    platform_.toolkit().setFailureHandler({});
    messages_.reset();
    platform_.setWindow(nullptr);
    if (interface_) interface_->disconnectOwner();
    pane_.reset();
}

std::string LoadedPane::load(const std::string& bundlePath) {
    bundle_ = platform_.bundles().openBundle(bundlePath);
    if (!bundle_)
        return linux::localizedFormat("%@ is not a pane: it has no readable Contents/Info.plist.", bundlePath);
    std::string className(bundle_->infoValue("NSPrincipalClass").stringValue());
    std::string factoryName = className + "_create";
    auto factory = reinterpret_cast<PreferencePaneFactory>(bundle_->functionNamed(factoryName.c_str()));
    if (className.empty() || !factory)
        return formatted(
            bundle_->localizedString("%@ cannot be loaded: its code is missing, damaged or made for another machine."),
            {bundlePath});
    platform_.setWindow(&page_);
    messages_ =
        std::make_unique<SettingsMessages>(platform_.preferences(), platform_.runLoop(), [this] { showMessage(); });
    platform_.toolkit().setFailureHandler([this](const std::string& text) { messages_->sayOfAction({text}); });
    pane_.reset(factory(platform_.forPane(*bundle_, host_)));
    return loadInterface();
}

std::string LoadedPane::loadInterface() {
    std::string name = pane_->mainNibName();
    auto file = bundle_->resourcePath(name, "ui");
    if (!file)
        return formatted(bundle_->localizedString("%@ has no interface file \"%@.ui\"."), {bundle_->path(), name});
    std::string error;
    owner_ = std::make_unique<Owner>(*pane_, *messages_);
    interface_ = qt::loadInterface(*file, *bundle_, *owner_, error);
    if (!interface_) return error;
    interface_->followLinks([this](const QUrl& link) { platform_.toolkit().followLink(link); });
    placeInterface();
    pane_->awakeFromNib();
    pane_->mainViewDidLoad();
    platform_.saveChanges();
    return {};
}

void LoadedPane::placeInterface() {
    auto* layout = new QVBoxLayout(&page_);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(&root(), 1);
    line_ = new qt::MessageLine(
        page_, qt::toQString(localized("Close this message")), [this] { performButton(); },
        [this] { messages_->closeCurrent(); });
    layout->addWidget(line_);
    page_.installEventFilter(this);
    // The interface file may name the object that has the keyboard at first.
    QString first = root().property("initialFirstResponder").toString();
    if (auto* widget = root().findChild<QWidget*>(first); widget && !first.isEmpty()) widget->setFocus();
}

View* LoadedPane::view(const std::string& name) const { return interface_ ? interface_->view(name) : nullptr; }

void LoadedPane::select() {
    if (!interface_ || std::exchange(isSelected_, true)) return;
    pane_->willSelect();
    showMessage();
}

// A number that is still being typed counts as entered.
UnselectReply LoadedPane::askToLeave() {
    if (!isSelected_) return UnselectReply::Now;
    if (QWidget* focus = page_.focusWidget()) focus->clearFocus();
    return pane_->shouldUnselect();
}

void LoadedPane::unselect() {
    if (!std::exchange(isSelected_, false)) return;
    pane_->willUnselect();
    showMessage();
}

void LoadedPane::entryWasRemoved(std::string_view name) {
    messages_->sayOfAction(
        {linux::localizedFormat("Another program has removed “%@”. Nothing was changed.", std::string(name))});
}

void LoadedPane::say(const ActionMessage& message) { messages_->sayOfAction(message); }

void LoadedPane::explain(const ActionMessage& message, std::function<void()> closed) {
    messages_->explain(message, std::move(closed));
}

void LoadedPane::fontManagerIsMissing() {
    messages_->sayOfAction(
        {localized("No font manager was found. Font Manager is one that many systems offer for installation.")});
}

// A page that nobody looks at has no message either: a window keeps the size in mind that it has without.
void LoadedPane::showMessage() {
    if (!line_) return;
    if (const Message* message = isSelected_ ? messages_->current() : nullptr) {
        // In line with the pane, which stands in the margins that this page has.
        QMargins margins = root().layout() ? root().layout()->contentsMargins() : QMargins();
        margins.setTop(margins.bottom() > 0 ? 0 : page_.style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing));
        line_->setContentsMargins(margins);
        const ButtonTexts texts = textsOf(*message);
        const bool isWarning = message->tone == Message::Tone::Warning;
        line_->say(isWarning ? qt::MessageLine::Tone::Warning : qt::MessageLine::Tone::Information,
                   qt::toQString(message->text), {qt::toQString(texts.title), qt::toQString(texts.hint)});
    } else {
        line_->sayNothing();
    }
    makeRoomForMessage();
}

void LoadedPane::performButton() {
    const Message* message = messages_->current();
    if (!message) return;
    if (message->button == Message::Button::TryAgain) return messages_->tryAgain();
    if (message->button == Message::Button::Offered) {
        const std::function<void()> perform = message->offer.perform;
        messages_->userActed();
        return perform();
    }
    platform_.toolkit().openFile(linux::folderOf(message->path));
}

void LoadedPane::makeRoomForMessage() {
    constexpr auto kFixed = Qt::WindowMaximized | Qt::WindowFullScreen;
    if (!page_.isWindow() || !page_.isVisible() || (page_.windowState() & kFixed)) return;
    page_.layout()->activate();
    const int wanted = line_->isHidden() ? 0 : line_->heightForWidth(page_.width());
    const int below = page_.screen()->availableGeometry().bottom() - page_.frameGeometry().bottom();
    const int growth = std::min(wanted - roomMade_, std::max(0, below));
    page_.resize(page_.width(), page_.height() + growth);
    roomMade_ += growth;
}

// The window's own sheets make it active again too when they end, and then nobody was elsewhere.
bool LoadedPane::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::WindowActivate && isSelected_ && std::exchange(wasElsewhere_, false))
        pane_->hostDidBecomeActive();
    return false;
}

}  // namespace host
