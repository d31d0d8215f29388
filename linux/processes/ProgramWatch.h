// Notice that another program has taken the place of the one that runs, as an upgrade does.
#pragma once

#include "linux/files/FileAccess.h"

#include <string>

namespace linux {

class ProgramWatch {
public:
    ProgramWatch();

    // Readable, for poll(2), when something has happened beside the program's file. Not valid when that cannot be
    // watched.
    const Descriptor& events() const { return events_; }
    // Reads all events that are there, without waiting. True when the program's path leads to another file than the one
    // that runs, complete and executable; not when it leads nowhere.
    bool isReplaced() const;
    // Begins again with the program that is there now: same process, same environment, signals blocked as they are,
    // and no descriptor but the three standard ones. Returns only when that program cannot be run.
    void startAnew() const;

private:
    std::string path_;
    Descriptor events_;
};

}  // namespace linux
