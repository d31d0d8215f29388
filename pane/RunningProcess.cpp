#include "pane/RunningProcess.h"

#include <string>
#include <unordered_set>

using namespace platform;

namespace {

constexpr std::size_t kPathBufferSize = 1024;  // bytes, with a final zero byte

// Whether the bundle at a path has the identifier.
class BundleMatch {
public:
    BundleMatch(BundleServices& bundles, std::string_view identifier) : bundles_(bundles), identifier_(identifier) {}

    bool operator()(const std::string& path) {
        if (path.size() >= kPathBufferSize || others_.contains(path)) return false;
        std::unique_ptr<Bundle> bundle = bundles_.openBundle(path);
        if (bundle && !identifier_.empty() && bundle->identifier() == identifier_) return true;
        others_.insert(path);
        return false;
    }

private:
    BundleServices& bundles_;
    std::string_view identifier_;
    std::unordered_set<std::string> others_;  // paths of bundles without it
};

}  // namespace

std::optional<ProcessSerialNumber> findRunningProcess(ProcessServices& processes, BundleServices& bundles,
                                                      std::string_view identifier) {
    BundleMatch isWanted(bundles, identifier);
    for (ProcessID process : processes.runningProcesses()) {
        std::optional<std::string> path = processes.bundleFolder(process);
        if (!path || !isWanted(*path)) continue;
        // The process may have ended since, and its id be another's: only one that is still in the bundle counts.
        std::optional<ProcessSerialNumber> number = processes.serialNumber(process);
        if (number && processes.bundleFolder(process) == path) return number;
    }
    return std::nullopt;
}
