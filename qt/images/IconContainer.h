// Reads icon containers ("icns"): the magic and the whole length, then elements of a four-character type, a big-endian
// length that counts its own eight bytes, and the payload. Only PNG payloads are taken; every modern element may be
// one.
#pragma once

#include <QByteArray>
#include <QIcon>

namespace qt {

// Null when the bytes hold no picture that can be read. Broken elements end the reading.
QIcon iconFromContainer(const QByteArray& bytes);

}  // namespace qt
