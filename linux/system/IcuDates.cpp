#include "linux/system/LinuxDates.h"

#include "linux/texts/Locale.h"

#include <unicode/ucal.h>
#include <unicode/udat.h>
#include <unicode/uloc.h>
#include <unicode/ustring.h>

#include <array>
#include <memory>
#include <string_view>

namespace linux {

using namespace platform;

namespace {

constexpr std::array kStyles{UDAT_NONE, UDAT_SHORT, UDAT_MEDIUM, UDAT_LONG, UDAT_FULL};

std::string timeLocale() {
    std::string_view locale = localeOf("LC_TIME");
    locale = locale.substr(0, locale.find_first_of(".@"));
    bool isPlain = locale.empty() || locale == "C" || locale == "POSIX";
    return isPlain ? "en_US" : std::string(locale);
}

using Formatter = std::unique_ptr<UDateFormat, decltype(&udat_close)>;

Formatter formatter(DateStyle dateStyle, DateStyle timeStyle) {
    UErrorCode status = U_ZERO_ERROR;
    UDateFormat* made =
        udat_open(kStyles[static_cast<std::size_t>(timeStyle)], kStyles[static_cast<std::size_t>(dateStyle)],
                  timeLocale().c_str(), nullptr, -1, nullptr, -1, &status);
    return {U_SUCCESS(status) ? made : nullptr, udat_close};
}

std::optional<std::string> utf8(std::u16string_view text) {
    std::string bytes(text.size() * 3, '\0');
    std::int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8(bytes.data(), static_cast<std::int32_t>(bytes.size()), &length, text.data(),
                static_cast<std::int32_t>(text.size()), &status);
    if (U_FAILURE(status)) return std::nullopt;
    bytes.resize(static_cast<std::size_t>(length));
    return bytes;
}

}  // namespace

std::optional<std::string> LinuxDates::string(Date date, DateStyle dateStyle, DateStyle timeStyle) {
    if (dateStyle == DateStyle::None && timeStyle == DateStyle::None) return std::string();
    Formatter format = formatter(dateStyle, timeStyle);
    if (!format) return std::nullopt;
    std::array<char16_t, 256> text;
    UErrorCode status = U_ZERO_ERROR;
    std::int32_t length = udat_format(format.get(), static_cast<double>(date.microseconds) / 1000, text.data(),
                                      static_cast<std::int32_t>(text.size()), nullptr, &status);
    if (U_FAILURE(status)) return std::nullopt;
    return utf8({text.data(), static_cast<std::size_t>(length)});
}

}  // namespace linux
