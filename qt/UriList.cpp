#include "qt/UriList.h"

#include <QList>
#include <QString>
#include <QSysInfo>

#include <optional>

namespace qt {

namespace {

bool isThisMachine(const QByteArray& host) {
    return host.isEmpty() || host.compare("localhost", Qt::CaseInsensitive) == 0 ||
           host.compare(QSysInfo::machineHostName().toUtf8(), Qt::CaseInsensitive) == 0;
}

// "file:///path", "file://host/path" and the short "file:/path".
std::optional<std::string> localFile(QByteArray uri) {
    constexpr int kSchemeLength = 5;
    if (uri.left(kSchemeLength).compare("file:", Qt::CaseInsensitive) != 0) return std::nullopt;
    uri = uri.mid(kSchemeLength);
    if (uri.startsWith("//")) {
        int slash = static_cast<int>(uri.indexOf('/', 2));
        if (slash < 0 || !isThisMachine(uri.mid(2, slash - 2))) return std::nullopt;
        uri = uri.mid(slash);
    }
    QByteArray path = QByteArray::fromPercentEncoding(uri);
    if (!path.startsWith('/') || path.contains('\0')) return std::nullopt;
    while (path.size() > 1 && path.endsWith('/')) path.chop(1);
    return path.toStdString();
}

}  // namespace

std::vector<std::string> localFilesOfUriList(const QByteArray& list) {
    std::vector<std::string> files;
    for (const QByteArray& line : list.split('\n'))
        if (auto file = localFile(line.trimmed())) files.push_back(*file);
    return files;
}

}  // namespace qt
