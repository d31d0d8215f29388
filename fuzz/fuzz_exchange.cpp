// Files of entries in either form: whatever is taken makes a list that can be exported again, and replacing by that
// gives an equal one.
#include "entrylist/Exchange.h"
#include "linux/documents/LinuxDocuments.h"
#include "settings/EntryList.h"

#include <cstdint>
#include <cstdlib>

using namespace entrylist;

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

List sampleList() {
    auto entry = [](const char* type, const char* data) {
        return platform::PropertyList::dictionary({{"Type", type}, {"Data", data}});
    };
    return {settings::newGlobalEntry(), entry("Path", "/a"), entry("RegEx", "a"), entry("Path", "/a")};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto read = linux::documentIn({reinterpret_cast<const char*>(data), size}, "file");
    require(static_cast<bool>(read.value) == read.problem.empty());
    const List before = sampleList();
    const ImportPlan plan = planImport(read.value, before);
    require(static_cast<bool>(plan.problem) == static_cast<bool>(problemOf(read.value)));
    if (plan.problem) return 0;
    for (ImportMode mode : {ImportMode::KeepMine, ImportMode::TakeTheirs, ImportMode::ReplaceList}) {
        List list = before;
        const ImportOutcome outcome = applyImport(plan, {mode}, list);
        require(outcome.added + outcome.replaced + outcome.left == plan.items.size());
        require(list.size() == before.size() + outcome.added - outcome.removed);
        require(settings::hasType(list.front(), settings::kGlobalType) && !problemOf(exchangeDocument(list)));
        if (mode != ImportMode::ReplaceList) continue;
        List again = before;
        applyImport(planImport(exchangeDocument(list), again), {mode}, again);
        require(again == list);
    }
    return 0;
}
