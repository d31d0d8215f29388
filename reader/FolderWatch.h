// Notice of changes in a folder that may come and go, through inotify(7).
#pragma once

#include "linux/files/FileAccess.h"

#include <string>
#include <vector>

namespace reader {

class FolderWatch {
public:
    // Watches the folder of each path, and that of the file itself where the path is a link; where there is no such
    // folder, the innermost one around it that there is. 0, or the error number of the call that failed.
    int start(std::vector<std::string> paths);
    // Reads what has happened, without waiting, and watches the folders that there are now. To be called before the
    // files are looked at.
    void takeIn();
    // Readable for poll(2) when something has happened; -1 before start().
    int descriptor() const { return events_.number(); }

private:
    void watch();
    void watchFolder(const std::string& folder, std::vector<int>& watched);

    std::vector<std::string> paths_;
    linux::Descriptor events_;
    std::vector<int> watched_;
};

}  // namespace reader
