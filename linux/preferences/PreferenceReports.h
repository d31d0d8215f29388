// Who hears how the domains in memory and the stored ones stand to each other.
#pragma once

#include "linux/files/Failure.h"
#include "platform/Preferences.h"

#include <functional>
#include <list>
#include <memory>

namespace linux {

class PreferenceReports {
public:
    using Handler = std::function<void(const platform::PreferenceReport&)>;

    // The handler is called until the observation goes, which may be after the reports have gone.
    static std::unique_ptr<platform::Observation> observe(const std::shared_ptr<PreferenceReports>& reports,
                                                          Handler handler);
    void tell(const platform::PreferenceReport& report);

private:
    class Entry;
    std::list<std::shared_ptr<Handler>> handlers_;
};

// Which of the causes that people can do something about the failure has.
platform::PreferenceReport::Cause causeOf(const Failure& failure);

}  // namespace linux
