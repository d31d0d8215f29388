#include "host/LoadedPane.h"

#include "linux/system/Localized.h"

#include <QVBoxLayout>
#include <QVariant>

#include <utility>

namespace host {

using namespace platform;

LoadedPane::~LoadedPane() {
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
    pane_.reset(factory(platform_.forPane(*bundle_, host_)));
    return loadInterface();
}

std::string LoadedPane::loadInterface() {
    std::string name = pane_->mainNibName();
    auto file = bundle_->resourcePath(name, "ui");
    if (!file)
        return formatted(bundle_->localizedString("%@ has no interface file \"%@.ui\"."), {bundle_->path(), name});
    std::string error;
    interface_ = qt::loadInterface(*file, *bundle_, *pane_, error);
    if (!interface_) return error;
    placeInterface();
    pane_->awakeFromNib();
    pane_->mainViewDidLoad();
    return {};
}

void LoadedPane::placeInterface() {
    auto* layout = new QVBoxLayout(&page_);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(&root());
    // The interface file may name the object that has the keyboard at first.
    QString first = root().property("initialFirstResponder").toString();
    if (auto* widget = root().findChild<QWidget*>(first); widget && !first.isEmpty()) widget->setFocus();
}

View* LoadedPane::view(const std::string& name) const { return interface_ ? interface_->view(name) : nullptr; }

void LoadedPane::select() {
    if (interface_ && !std::exchange(isSelected_, true)) pane_->willSelect();
}

// A number that is still being typed counts as entered.
UnselectReply LoadedPane::askToLeave() {
    if (!isSelected_) return UnselectReply::Now;
    if (QWidget* focus = page_.focusWidget()) focus->clearFocus();
    return pane_->shouldUnselect();
}

void LoadedPane::unselect() {
    if (std::exchange(isSelected_, false)) pane_->willUnselect();
}

}  // namespace host
