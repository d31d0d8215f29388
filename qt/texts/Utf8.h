// Between the interfaces' UTF-8 and Qt's strings.
#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace qt {

inline QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<int>(text.size()));
}

}  // namespace qt
