// Adding many applications at once, and what one row of a table of 5,000 entries costs to ask for.
#include <algorithm>
#include <chrono>
#include <cstdio>

#include "bench/EntriesWorld.h"
#include "tests/support/FakeControls.h"

namespace {

template <typename Action>
double milliseconds(Action action) {
    auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double bestOfAdding(bench::EntriesWorld& world, std::size_t count) {
    double best = 1e9;
    for (int round = 0; round < 7; ++round) {
        world.clear();
        best = std::min(best, milliseconds([&] { world.add(count); }));
    }
    return best;
}

}  // namespace

int main() {
    constexpr int kApplications = 5000;
    bench::EntriesWorld world(kApplications);
    fake::TableView table;
    world.pane->setOutlet("exTableView", table);
    table.setDataSource(&*world.pane);
    world.add(10);  // the index has been made

    double few = bestOfAdding(world, 50), many = bestOfAdding(world, 1000);
    std::printf("adding 50 applications %.2f ms, 1,000 applications %.2f ms, ratio %.1f (at most 20)\n", few, many,
                many / few);

    world.clear();
    world.add(kApplications);
    double all = milliseconds([&] {
        for (int row = 0; row < kApplications; ++row)
            for (const char* column : {"13", "entry"})
                world.pane->tableView_objectValueForTableColumn_row(table, column, row);
    });
    std::printf("one row of %d, icon and text: %.2f us\n", kApplications, all * 1e3 / kApplications);
    return 0;
}
