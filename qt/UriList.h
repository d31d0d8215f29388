// The list of files in a drag, as file managers send it ("text/uri-list", RFC 2483 and RFC 8089).
#pragma once

#include <QByteArray>

#include <string>
#include <vector>

namespace qt {

// The absolute paths of the local files among the list's addresses, in order, percent-encoding undone byte by byte.
// Addresses of other schemes or other machines, comments and broken lines are left out.
std::vector<std::string> localFilesOfUriList(const QByteArray& list);

}  // namespace qt
