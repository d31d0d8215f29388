// Marks the controls whose options the selected entry has otherwise than Global, each with a way to Global's value.
#pragma once

#include "entrylist/ListOwner.h"
#include "platform/Platform.h"

#include <array>
#include <functional>

namespace entrylist {

class OptionMarks {
public:
    using UseGlobals = std::function<void(const settings::Option& option)>;
    // What is referred to outlives it.
    OptionMarks(const platform::Platform& platform, ListOwner& owner, UseGlobals useGlobals)
        : platform_(platform), owner_(owner), useGlobals_(std::move(useGlobals)) {}

    void show();  // for the entry that is shown, and Global, as they are stored now

private:
    std::string inWords(const settings::Option& option, std::int64_t value);

    const platform::Platform& platform_;
    ListOwner& owner_;
    const UseGlobals useGlobals_;
    std::array<std::string, 16> shown_;  // the descriptions that are on the controls; empty: no mark
};

}  // namespace entrylist
