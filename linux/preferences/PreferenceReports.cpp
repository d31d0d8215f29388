#include "linux/preferences/PreferenceReports.h"

#include <cerrno>
#include <utility>

namespace linux {

using namespace platform;

class PreferenceReports::Entry final : public Observation {
public:
    Entry(std::weak_ptr<PreferenceReports> reports, std::shared_ptr<Handler> handler)
        : reports_(std::move(reports)), handler_(std::move(handler)) {}
    ~Entry() override {
        if (auto reports = reports_.lock()) reports->handlers_.remove(handler_);
    }

private:
    std::weak_ptr<PreferenceReports> reports_;
    std::shared_ptr<Handler> handler_;
};

std::unique_ptr<Observation> PreferenceReports::observe(const std::shared_ptr<PreferenceReports>& reports,
                                                        Handler handler) {
    reports->handlers_.push_back(std::make_shared<Handler>(std::move(handler)));
    return std::make_unique<Entry>(reports, reports->handlers_.back());
}

// A handler may end an observation, its own or another's, or begin one.
void PreferenceReports::tell(const PreferenceReport& report) {
    for (auto& handler : std::list(handlers_))
        if (handler.use_count() > 1) (*handler)(report);
}

PreferenceReport::Cause causeOf(const Failure& failure) {
    using Cause = PreferenceReport::Cause;
    constexpr std::pair<int, Cause> kCauses[] = {{ENOSPC, Cause::DiskFull},    {EDQUOT, Cause::DiskFull},
                                                 {EROFS, Cause::ReadOnly},     {EACCES, Cause::NoPermission},
                                                 {EPERM, Cause::NoPermission}, {EWOULDBLOCK, Cause::Held}};
    for (const auto& [error, cause] : kCauses)
        if (failure.error == error) return cause;
    return Cause::Other;
}

}  // namespace linux
