// Whether a program is installed, and where.
#pragma once

#include "linux/applications/ApplicationEnvironment.h"

#include <string>
#include <string_view>
#include <unordered_map>

namespace linux {

class ProgramLookup {
public:
    // The environment outlives the look-up.
    explicit ProgramLookup(const ApplicationEnvironment& environment) : environment_(environment) {}

    // The path of an executable file: a name is looked for in the program folders, an absolute path below the test root
    // first and then as it stands, so that a test tree need not hold copies of the system's programs. Empty when there
    // is none. Answers are kept until forget(); the reference is good until then.
    const std::string& find(std::string_view program);
    // The same for one absolute path that is taken as it stands.
    bool isExecutable(std::string_view path);
    void forget() { known_.clear(); }

private:
    struct Hash : std::hash<std::string_view> {
        using is_transparent = void;
    };
    std::string search(std::string_view program) const;

    const ApplicationEnvironment& environment_;
    std::unordered_map<std::string, std::string, Hash, std::equal_to<>> known_;
};

}  // namespace linux
