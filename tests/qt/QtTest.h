// An application without a screen, an interface file and an owner that notes what it hears. A warning of the toolkit
// fails the test at hand.
#pragma once

#include "linux/system/FolderBundle.h"
#include "qt/controls/InterfaceLoader.h"
#include "qt/controls/WidgetView.h"
#include "tests/support/Check.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// The one application of the test program.
void useApplication();
// Runs the event loop until the condition holds; false when it does not within ten seconds.
bool waitFor(const std::function<bool()>& condition);
// Runs what is due now.
void settle();

// A session bus of the test's own, gone with it.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();

private:
    QProcess daemon_;
    std::optional<check::ScopedEnvironment> address_;
};

// Until the end of its scope, warnings with this part are expected.
struct ExpectWarning {
    explicit ExpectWarning(std::string part);
    ~ExpectWarning();
};

struct NotingOwner : platform::InterfaceOwner {
    void setOutlet(std::string_view name, platform::View& object) override { outlets[std::string(name)] = &object; }
    void performAction(std::string_view selector, platform::View& sender) override {
        actions.push_back(std::string(selector) + " " + std::to_string(sender.tag()));
        if (onAction) onAction(sender);
    }
    std::vector<std::string> takeActions() { return std::exchange(actions, {}); }

    std::map<std::string, platform::View*> outlets;
    std::vector<std::string> actions;
    std::function<void(platform::View&)> onAction;
};

// An interface file, loaded and on the screen that is not there.
struct SampleInterface {
    explicit SampleInterface(const char* bundlePath = TEST_DATA "/Sample.prefPane", const char* name = "Sample");
    template <typename Widget>
    Widget& widget(const std::string& name) {
        return *qobject_cast<Widget*>(qt::widgetOf(owner.outlets.at(name)));
    }

    NotingOwner owner;
    std::unique_ptr<platform::Bundle> bundle;
    std::unique_ptr<qt::Interface> interface;
};
