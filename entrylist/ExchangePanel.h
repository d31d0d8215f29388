// Export and import in the window: which entries and where to, and what would be done before it is done.
//
// Nothing is changed before the import sheet's OK. The change goes through the pane as every other, so it is one step
// that can be taken back; the host then says what was done, or what was wrong with a file.
#pragma once

#include "entrylist/DifferenceWords.h"
#include "entrylist/Exchange.h"
#include "entrylist/ListOwner.h"
#include "platform/Platform.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace entrylist {

class ExchangePanel {
public:
    // What the list shows, by its filter: rows in order; nothing: all.
    using ShownRows = std::function<std::optional<std::vector<int>>()>;
    // The message that says what an import has done, as whoever can take it back puts it.
    using WithUndo = std::function<platform::ActionMessage(std::string text)>;

    // Told true before the first sheet opens, and false when all has ended.
    using Busy = std::function<void(bool isBusy)>;

    // The two outlive it, and it outlives the sheets that it opens.
    ExchangePanel(const platform::Platform& platform, ListOwner& owner, ShownRows shownRows, WithUndo withUndo,
                  Busy busy)
        : platform_(platform),
          owner_(owner),
          shownRows_(std::move(shownRows)),
          withUndo_(std::move(withUndo)),
          busy_(std::move(busy)) {}

    // False for names that are not its own: "exportEntries:" asks for the whole list, what its filter shows, or the
    // selected entry, and for a file; "importEntries:" for a file, and shows what it would do.
    bool performAction(std::string_view selector);

private:
    void exportEntries();
    void importEntries();
    void chooseFile(const List& entries);
    void write(const List& entries, const std::string& path);
    void read(const std::string& path);
    void offer(const ImportPlan& plan, const std::string& path);
    void import(const ImportPlan& plan, const platform::ImportAnswer& answer);
    EntryWords words() const;
    std::string nameOf(const platform::PropertyList& entry) const;  // as it is stored
    std::string text(std::string_view key) const { return platform_.paneBundle.localizedString(key); }
    void endWith(const platform::ActionMessage& message);
    void cancel() { busy_(false); }

    const platform::Platform& platform_;
    ListOwner& owner_;
    const ShownRows shownRows_;
    const WithUndo withUndo_;
    const Busy busy_;
};

}  // namespace entrylist
