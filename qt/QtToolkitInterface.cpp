// Interface files that a controller loads for itself.
#include "qt/QtToolkit.h"
#include "qt/controls/InterfaceLoader.h"

#include <vector>

namespace qt {

using namespace platform;

namespace {

// Some of the widgets may have moved into another window, which lives on.
class OwnedInterface final : public LoadedInterface {
public:
    explicit OwnedInterface(std::unique_ptr<Interface> interface) : interface_(std::move(interface)) {
        for (QWidget* widget : interface_->root()->findChildren<QWidget*>()) widgets_.emplace_back(widget);
    }
    ~OwnedInterface() override {
        interface_.reset();
        for (const QPointer<QWidget>& widget : widgets_) delete widget.data();
    }

private:
    std::unique_ptr<Interface> interface_;
    std::vector<QPointer<QWidget>> widgets_;
};

}  // namespace

std::unique_ptr<LoadedInterface> QtToolkit::loadInterface(const Bundle& bundle, std::string_view nibName,
                                                          InterfaceOwner& owner) {
    auto file = bundle.resourcePath(nibName, "ui");
    if (!file) return nullptr;
    std::string error;
    auto interface = qt::loadInterface(*file, bundle, owner, error);
    return interface ? std::make_unique<OwnedInterface>(std::move(interface)) : nullptr;
}

}  // namespace qt
