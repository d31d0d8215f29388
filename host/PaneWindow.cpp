#include "host/PaneWindow.h"

#include "platform/qt/Text.h"

#include <QApplication>
#include <QCloseEvent>
#include <QTimer>
#include <QVBoxLayout>

#include <utility>

namespace host {

using namespace platform;
using platform::qt::toQString;

PaneWindow::~PaneWindow() {
    platform_.setWindow(nullptr);
    if (interface_) interface_->disconnectOwner();
    pane_.reset();
}

std::string PaneWindow::load(const std::string& bundlePath) {
    bundle_ = platform_.bundles().openBundle(bundlePath);
    if (!bundle_) return bundlePath + " is not a pane: it has no readable Contents/Info.plist.";
    std::string className(bundle_->infoValue("NSPrincipalClass").stringValue());
    std::string factoryName = className + "_create";
    auto factory = reinterpret_cast<PreferencePaneFactory>(bundle_->functionNamed(factoryName.c_str()));
    if (className.empty() || !factory)
        return bundlePath + " cannot be loaded: its code is missing, damaged or made for another machine.";
    platform_.setWindow(this);
    pane_.reset(factory(platform_.forPane(*bundle_, *this)));
    return loadInterfaceOf(*bundle_);
}

std::string PaneWindow::loadInterfaceOf(Bundle& bundle) {
    std::string name = pane_->mainNibName();
    auto file = bundle.resourcePath(name, "ui");
    if (!file) return bundle.path() + " has no interface file \"" + name + ".ui\".";
    std::string error;
    interface_ = qt::loadInterface(*file, bundle, *pane_, error);
    if (!interface_) return error;
    placeInterface();
    pane_->awakeFromNib();
    pane_->mainViewDidLoad();
    return {};
}

void PaneWindow::placeInterface() {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(interface_->root());
    setWindowTitle(toQString(bundle_->infoValue("CFBundleName").stringValue()));
    resize(interface_->root()->size().expandedTo(sizeHint()));
    // The interface file may name the object that has the keyboard at first.
    QString first = interface_->root()->property("initialFirstResponder").toString();
    if (auto* widget = interface_->root()->findChild<QWidget*>(first); widget && !first.isEmpty()) widget->setFocus();
}

View* PaneWindow::view(const std::string& name) const { return interface_ ? interface_->view(name) : nullptr; }

void PaneWindow::showEvent(QShowEvent* event) {
    if (pane_ && !std::exchange(isSelected_, true)) pane_->willSelect();
    QWidget::showEvent(event);
}

// A number that is still being typed counts as entered.
bool PaneWindow::mayLeave() {
    if (wasAllowedToLeave_ || !isSelected_) return true;
    if (QWidget* focus = focusWidget()) focus->clearFocus();
    return pane_->shouldUnselect() == UnselectReply::Now;
}

void PaneWindow::closeEvent(QCloseEvent* event) {
    if (!mayLeave()) return event->ignore();
    wasAllowedToLeave_ = false;
    if (std::exchange(isSelected_, false)) pane_->willUnselect();
    event->accept();
}

// Not at once: the pane is still in the middle of ending its sheet.
void PaneWindow::replyToShouldUnselect(bool mayUnselect) {
    if (!mayUnselect) return;
    wasAllowedToLeave_ = true;
    QTimer::singleShot(0, this, &QWidget::close);
}

}  // namespace host
