#include "entrylist/OptionMarks.h"

#include "entrylist/Differences.h"
#include "propertylist/Format.h"

using namespace platform;
using namespace settings;

namespace entrylist {

std::string OptionMarks::inWords(const Option& option, std::int64_t value) {
    const Bundle& pane = platform_.paneBundle;
    if (option.type == OptionType::Boolean)
        return value != 0 ? pane.localizedString("on") : pane.localizedString("off");
    if (PopUpButton* menu = owner_.controlOf(option).asPopUpButton()) return menu->itemTitle(menuItem(value));
    return std::to_string(value);
}

void OptionMarks::show() {
    const PropertyList entries = owner_.entries(), &global = entries[0];
    const auto row = owner_.shown().find(entries.elements());
    const PropertyList entry = row && *row > 0 ? entries[*row] : global;
    for (std::size_t i = 0; i < options().size(); ++i) {
        const Option& option = options()[i];
        std::string description;
        if (differs(entry, global, option))
            description =
                formatted(platform_.paneBundle.localizedString("Another setting than Global’s: there it is %@"),
                          {inWords(option, shownValue(global[kSettingsKey], option))});
        if (shown_[i] == description) continue;
        shown_[i] = description;
        std::optional<ControlMark> mark;
        if (!description.empty())
            mark = ControlMark{description, platform_.paneBundle.localizedString("Use Global’s Setting"),
                               [this, &option] { useGlobals_(option); }};
        owner_.controlOf(option).setMark(mark);
    }
}

}  // namespace entrylist
