// What the tools for the entry list need of the pane that they belong to.
#pragma once

#include "entrylist/ListEdits.h"
#include "platform/Controls.h"
#include "settings/EntryList.h"
#include "settings/SettingsSchema.h"

#include <functional>
#include <string>

namespace entrylist {

class ListOwner {
public:
    virtual ~ListOwner() = default;

    virtual platform::PropertyList entries() const = 0;  // the stored array
    // The entry whose options the editor shows; of no entry: none.
    virtual settings::EntryIdentity shown() const = 0;
    // Changes the stored list and tells others, as every change made in the window; then shows the entry that is given,
    // wherever it stands. False: the stored list cannot be read, and nothing was done.
    virtual bool changeEntries(std::function<void(List&)> change, const platform::PropertyList& toShow) = 0;
    // Opens the sheet or the chooser for a new entry of the kind of this one, with its settings.
    virtual void addLike(const platform::PropertyList& entry) = 0;

    // As the entry's row shows it.
    virtual std::string nameOf(const platform::PropertyList& entry) const = 0;
    virtual std::string placeOf(const platform::PropertyList& entry) const = 0;  // a path; empty: none
    virtual bool isMissing(const platform::PropertyList& entry) const = 0;       // an application that is not installed

    virtual bool neverApplies(std::size_t row) = 0;  // whatever the application

    virtual platform::TableView& table() = 0;
    virtual platform::View& controlOf(const settings::Option& option) = 0;
};

}  // namespace entrylist
