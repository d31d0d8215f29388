#include "qt/UriList.h"

#include <QList>
#include <QString>
#include <QSysInfo>
#include <QUrl>

#include <optional>

namespace qt {

namespace {

bool isThisMachine(const QString& host) {
    return host.isEmpty() || host == QLatin1String("localhost") ||
           host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) == 0;
}

std::optional<std::string> localFile(const QByteArray& address) {
    QUrl url = QUrl::fromEncoded(address);
    if (url.scheme() != QLatin1String("file") || !isThisMachine(url.host())) return std::nullopt;
    // As bytes: a path need not be UTF-8.
    QByteArray path = QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
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
