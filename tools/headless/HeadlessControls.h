// Interface objects without a screen: they keep the values that an operation of the pane reads and sets, so that the
// command line can run it as a window would.
#pragma once

#include "platform/Controls.h"

#include <utility>

namespace tools {

class HeadlessButton final : public platform::Button {
public:
    explicit HeadlessButton(int tag = 0) : tag_(tag) {}
    int tag() const override { return tag_; }
    bool isEnabled() const override { return isEnabled_; }
    void setEnabled(bool value) override { isEnabled_ = value; }
    bool state() const override { return state_; }
    void setState(bool value) override { state_ = value; }

private:
    int tag_;
    bool isEnabled_ = true, state_ = false;
};

class HeadlessField final : public platform::TextField {
public:
    std::string stringValue() const override { return text_; }
    void setStringValue(std::string_view value, platform::TextTone) override { text_ = value; }

private:
    std::string text_;
};

class HeadlessMenu final : public platform::PopUpButton {
public:
    explicit HeadlessMenu(int itemCount) : itemCount_(itemCount) {}
    int itemCount() const override { return itemCount_; }
    int selectedRow() const override { return selected_; }
    void selectItem(int index) override { selected_ = index >= 0 && index < itemCount_ ? index : -1; }

private:
    int itemCount_, selected_ = 0;
};

// A control of the settings editor in the moment of its action, set to a value.
class HeadlessOption final : public platform::View {
public:
    HeadlessOption(int tag, std::int64_t value) : tag_(tag), value_(value) {}
    int tag() const override { return tag_; }
    std::int64_t integerValue() const override { return value_; }
    int selectedRow() const override { return static_cast<int>(value_); }

private:
    int tag_;
    std::int64_t value_;
};

// A sheet that is on no screen; whoever began it hears of its end.
class HeadlessPanel final : public platform::Panel {
public:
    void beginSheet(std::function<void(int)> didEnd) override { didEnd_ = std::move(didEnd); }
    // Does nothing while none has begun.
    void endSheet(int returnCode) override {
        if (auto didEnd = std::exchange(didEnd_, nullptr)) didEnd(returnCode);
    }

private:
    std::function<void(int)> didEnd_;
};

class HeadlessTable final : public platform::TableView {
public:
    void setDataSource(platform::TableDataSource* source) override { source_ = source; }
    void setSelectionObserver(std::function<void(const platform::InterfaceNotification&)> observer) override {
        observer_ = std::move(observer);
    }
    void reloadData() override { needsRows_ = true; }
    // Again as long as an answer changed the list.
    int numberOfRows() override {
        while (std::exchange(needsRows_, false)) rows_ = source_ ? source_->numberOfRowsInTableView(*this) : 0;
        if (selected_ >= rows_) select(-1);
        return rows_;
    }
    int selectedRow() const override { return selected_; }
    void selectRow(int row) override {
        if (row < numberOfRows()) select(row);
    }

private:
    void select(int row) {
        if (std::exchange(selected_, row) == row || !observer_) return;
        observer_({platform::kTableViewSelectionDidChange, this});
    }

    platform::TableDataSource* source_ = nullptr;
    std::function<void(const platform::InterfaceNotification&)> observer_;
    bool needsRows_ = true;
    int rows_ = 0, selected_ = -1;
};

}  // namespace tools
