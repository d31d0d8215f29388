// Interface objects that remember what was done to them.
#pragma once

#include "platform/Controls.h"

#include <cmath>
#include <map>
#include <memory>
#include <string>

namespace fake {

// Adds the state that every control has to one of the inert classes.
template <typename Base>
struct Control : Base {
    bool isEnabled() const override { return enabled; }
    void setEnabled(bool value) override { enabled = value; }
    void setToolTip(std::string_view text) override { toolTip = text; }
    platform::Rect frame() const override { return rect; }
    void setFrame(const platform::Rect& value) override { rect = value; }
    int tag() const override { return tagValue; }
    bool isHidden() const override { return hidden; }
    void setHidden(bool value) override { hidden = value; }
    void setNeedsDisplay() override { needsDisplay = true; }
    void display() override { ++displays; }
    void replaceInSuperview(platform::View& other) override { replacement = &other; }
    platform::Panel* panel() override { return window; }
    void setMark(const std::optional<platform::ControlMark>& value) override { mark = value; }
    void takeFocus() override { isFocused = true; }

    bool enabled = true, hidden = false, needsDisplay = false, isFocused = false;
    std::optional<platform::ControlMark> mark;
    int displays = 0;
    platform::View* replacement = nullptr;
    platform::Panel* window = nullptr;
    int tagValue = 0;
    std::string toolTip;
    platform::Rect rect;
};

struct Button final : Control<platform::Button> {
    bool state() const override { return on; }
    void setState(bool value) override { on = value; }
    std::int64_t integerValue() const override { return on; }
    std::string title() const override { return titleText; }
    void setTitle(std::string_view text) override { titleText = text; }
    void setTag(int value) override { tagValue = value; }
    void setTarget(platform::InterfaceOwner* newTarget, std::string_view newSelector) override {
        target = newTarget;
        selector = newSelector;
    }
    // As the user does, through the target.
    void click() {
        if (target && enabled) target->performAction(selector, *this);
    }
    platform::InterfaceOwner* target = nullptr;
    bool on = false;
    std::string selector, titleText;
};

struct TextField final : Control<platform::TextField> {
    std::string stringValue() const override { return text; }
    void setStringValue(std::string_view value, platform::TextTone newTone) override {
        text = value;
        tone = newTone;
    }
    std::int64_t integerValue() const override { return number; }
    void setIntegerValue(std::int64_t value) override {
        number = value;
        text = std::to_string(value);
    }
    void setSelectable(bool value) override { selectable = value; }
    bool isBeingEdited() const override { return edited; }
    // Ten points for each line of twenty characters at width 200.
    platform::Size cellSizeForBounds(const platform::Rect& bounds) const override {
        return {bounds.size.width, 10 * std::floor(static_cast<double>(text.size()) * 10 / bounds.size.width + 1)};
    }
    std::string text;
    std::int64_t number = 0;
    bool selectable = false, edited = false;
    platform::TextTone tone = platform::TextTone::Normal;
};

struct PopUpButton final : Control<platform::PopUpButton> {
    void selectItem(int index) override { row = index >= 0 && index < itemCount() ? index : -1; }
    std::string itemTitle(int index) const override {
        return index >= 0 && index < itemCount() ? titles[static_cast<std::size_t>(index)] : "";
    }
    int itemCount() const override { return static_cast<int>(titles.size()); }
    int selectedRow() const override { return row; }
    int itemTag(int index) const override {
        return index >= 0 && index < static_cast<int>(tags.size()) ? tags[static_cast<std::size_t>(index)] : 0;
    }
    std::vector<int> tags;
    std::vector<std::string> titles{"Zero", "One", "Two"};
    int row = 0;
};

struct TabView final : Control<platform::TabView> {
    void setControlTint(platform::ControlTint value) override { tint = value; }
    platform::ControlTint tint = platform::ControlTint::Default;
};

// Asks its source lazily, as a real table does, and keeps the selection within its rows.
struct TableView final : Control<platform::TableView> {
    void setDataSource(platform::TableDataSource* value) override { source = value; }
    void setSelectionObserver(std::function<void(const platform::InterfaceNotification&)> value) override {
        observer = std::move(value);
    }
    void setDoubleAction(std::string_view selector) override { doubleAction = selector; }
    void registerForFileNameDrags() override { takesFiles = true; }
    void setImageColumn(std::string_view identifier) override { imageColumn = identifier; }
    void reloadData() override { rows = -1; }
    int numberOfRows() override {
        while (rows < 0) {
            rows = 0;
            rows = source ? source->numberOfRowsInTableView(*this) : 0;
        }
        return rows;
    }
    int selectedRow() const override { return selected; }
    void selectRow(int row) override {
        asked.push_back(row);
        if (row == selected || row >= numberOfRows()) return;
        selected = row;
        if (observer) observer({platform::kTableViewSelectionDidChange, this});
    }
    void scrollRowToVisible(int row) override { visible = row; }
    void setPlaceholder(std::string_view text) override { placeholder = text; }

    std::string placeholder;
    platform::TableDataSource* source = nullptr;
    std::function<void(const platform::InterfaceNotification&)> observer;
    std::string imageColumn, doubleAction;
    std::vector<int> asked;  // to select
    bool takesFiles = false;
    int rows = -1, selected = -1, visible = -1;
};

struct Panel final : Control<platform::Panel> {
    platform::Size contentSize() const override { return content; }
    void setContentSize(const platform::Size& size) override { content = rect.size = size; }
    void beginSheet(std::function<void(int)> handler) override {
        isOpen = true;
        didEnd = std::move(handler);
    }
    void endSheet(int returnCode) override {
        if (auto handler = std::exchange(didEnd, nullptr)) handler(returnCode);
    }
    void orderOut() override { isOpen = false; }
    // Returns at once: a test has no second event loop.
    void runModal(std::function<void()>) override { isModal = isOpen = true; }
    void stopModal() override { isModal = false; }
    bool isRunningModal() const override { return isModal; }
    bool isModal = false, isOpen = false;
    platform::Size content;
    std::function<void(int)> didEnd;
};

struct ProgressIndicator final : Control<platform::ProgressIndicator> {
    void setIndeterminate(bool value) override { indeterminate = value; }
    void startAnimation() override { moving = true; }
    void stopAnimation() override { moving = false; }
    bool indeterminate = false, moving = false;
};

struct TextView final : Control<platform::TextView> {
    void setString(std::string_view value) override { text = value; }
    bool loadRichText(std::string_view path) override {
        if (isReadable) text = "rich " + std::string(path);
        return isReadable;
    }
    platform::Rect enclosingScrollViewFrame() const override { return scrollView; }
    void scrollPoint(const platform::Point& point) override { visible.push_back(point.y); }
    std::string text;
    bool isReadable = true;
    platform::Rect scrollView{{}, {0, 300}};
    std::vector<double> visible;  // each place that was scrolled to
};

// The objects of an interface file, made when they are first asked for and connected to the owner at once.
class Interface {
public:
    explicit Interface(platform::InterfaceOwner& owner) : owner_(owner) {}

    template <typename T>
    T& get(const std::string& name) {
        auto& slot = objects_[name];
        if (!slot) {
            slot = std::make_unique<T>();
            owner_.setOutlet(name, *slot);
        }
        return static_cast<T&>(*slot);
    }
    Button& button(const std::string& name) { return get<Button>(name); }
    platform::View& object(const std::string& name) { return objects_.contains(name) ? *objects_[name] : button(name); }

private:
    platform::InterfaceOwner& owner_;
    std::map<std::string, std::unique_ptr<platform::View>> objects_;
};

}  // namespace fake
