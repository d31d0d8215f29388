// The field, the menu and the switch that decide which rows of the entry table are to be seen.
//
// An entry is found when each word that was typed lies within its name, identifier, path or expression, whatever the
// case and the accents. Rows keep their numbers, and the entry whose options the editor shows is never hidden while any
// other is to be seen: what is typed selects the first that is found, if the selected one is not.
#pragma once

#include "entrylist/ListOwner.h"
#include "platform/Outlet.h"
#include "platform/Platform.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace entrylist {

// What the window itself remembers, in a domain of its own.
inline constexpr std::string_view kWindowDomain = "com.tarnwick.typeslate.Settings";

class ListSearch {
public:
    // The items of the menu of states.
    enum class State { All, Off, Missing, Different, Unreachable };

    // Both outlive it.
    ListSearch(const platform::Platform& platform, ListOwner& owner) : platform_(platform), owner_(owner) {}

    // False for names that are not its own.
    bool setOutlet(std::string_view name, platform::View& object);
    bool performAction(std::string_view selector);

    // Shows the switch as it was left last time.
    void start();
    // The rows that are found; nothing while nothing is searched for.
    std::optional<std::vector<int>> shownRows();
    // Applications may have come or gone.
    void lookAgain();

private:
    struct Known {
        platform::PropertyList entry;  // of which the rest was found out
        std::string text;              // as searches compare it
        bool isMissing = false;
    };

    bool isSearching();
    void search();
    void toggleMissing();
    void startTyping();
    void prepareSoon();
    void prepareSome();
    const Known& known(std::size_t row, const platform::PropertyList& entry);
    bool isFound(std::size_t row, const platform::PropertyList& entry, const platform::PropertyList& global);
    void showPlaceholder();
    State state();

    const platform::Platform& platform_;
    ListOwner& owner_;
    std::vector<std::string> words_;
    std::vector<Known> known_;  // by row
    std::unique_ptr<platform::Timer> preparing_;
    bool wasSearching_ = false;
    Outlet<platform::TextField> field_;
    Outlet<platform::PopUpButton> states_;
    Outlet<platform::Button> hideMissing_;
};

}  // namespace entrylist
