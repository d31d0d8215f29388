#include "propertylist/Format.h"

#include "propertylist/Date.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace propertylist {
namespace {

constexpr int kWidestField = 512;

// One "%..." of a format: flags, width and precision as they stand, then the conversion.
struct Directive {
    std::string_view flags;
    int width = 0;
    int precision = -1;
    std::size_t position = 0;  // counted from 1; 0: the next argument
    char conversion = 0;
};

class FormatReader {
public:
    explicit FormatReader(std::string_view format) : rest_(format) {}
    bool atEnd() const { return rest_.empty(); }
    std::string_view literal() {
        std::string_view text = rest_.substr(0, rest_.find('%'));
        rest_.remove_prefix(text.size());
        return text;
    }
    Directive directive() {
        rest_.remove_prefix(1);  // the "%"
        Directive result;
        result.position = position();
        result.flags = span("-+ #0");
        result.width = number();
        if (rest_.starts_with('.')) {
            rest_.remove_prefix(1);
            result.precision = number();
        }
        span("hlqjzt");
        if (!rest_.empty()) {
            result.conversion = rest_.front();
            rest_.remove_prefix(1);
        }
        return result;
    }

private:
    std::string_view span(const char* set) {
        std::string_view text = rest_.substr(0, rest_.find_first_not_of(set));
        rest_.remove_prefix(text.size());
        return text;
    }
    int number() {
        int value = 0;
        for (char digit : span("0123456789")) value = std::min(value * 10 + (digit - '0'), kWidestField);
        return value;
    }
    std::size_t position() {
        std::size_t digits = rest_.find_first_not_of("0123456789");
        if (digits == 0 || digits == std::string_view::npos || rest_[digits] != '$') return 0;
        auto value = static_cast<std::size_t>(number());
        rest_.remove_prefix(1);  // the "$"
        return value;
    }

    std::string_view rest_;
};

template <typename Number>
std::string printed(const Directive& directive, const char* length, char conversion, Number number) {
    std::string format("%");
    format.append(directive.flags.substr(0, 5)).append("*.*").append(length).push_back(conversion);
    int size = std::snprintf(nullptr, 0, format.c_str(), directive.width, directive.precision, number);
    std::string text(static_cast<std::size_t>(std::max(size, 0)) + 1, '\0');
    std::snprintf(text.data(), text.size(), format.c_str(), directive.width, directive.precision, number);
    text.pop_back();
    return text;
}

std::string padded(const Directive& directive, std::string text) {
    if (directive.precision >= 0 && directive.conversion == 's')
        text.resize(std::min(text.size(), static_cast<std::size_t>(directive.precision)));
    auto width = static_cast<std::size_t>(directive.width);
    if (text.size() >= width) return text;
    bool left = directive.flags.find('-') != std::string_view::npos;
    text.insert(left ? text.size() : 0, width - text.size(), ' ');
    return text;
}

std::string converted(const Directive& directive, const FormatArgument& argument) {
    switch (directive.conversion) {
        case '@':
        case 's':
            return padded(directive, argument.objectText());
        case 'd':
        case 'i':
            return printed(directive, "ll", 'd', static_cast<long long>(argument.integer()));
        case 'u':
        case 'x':
        case 'X':
            return printed(directive, "ll", directive.conversion, static_cast<unsigned long long>(argument.integer()));
        case 'f':
        case 'g':
        case 'e':
            return printed(directive, "", directive.conversion, argument.real());
        case 'c':
            return std::string(1, static_cast<char>(argument.integer()));
        default:
            return {};
    }
}

template <typename... Visitors>
struct Overloaded : Visitors... {
    using Visitors::operator()...;
};
template <typename... Visitors>
Overloaded(Visitors...) -> Overloaded<Visitors...>;

}  // namespace

FormatArgument::FormatArgument(const char* text) {
    if (text) value_ = std::string_view(text);
}

std::string FormatArgument::objectText() const {
    return std::visit(
        Overloaded{[](std::monostate) -> std::string { return "(null)"; },
                   [](std::string_view text) { return std::string(text); },
                   [](const PropertyList* value) { return *value ? value->description() : std::string("(null)"); },
                   [](Date date) { return dateDescription(date); },
                   [](auto number) { return PropertyList(number).description(); }},
        value_);
}

std::int64_t FormatArgument::integer() const {
    return std::visit(Overloaded{[](std::int64_t number) { return number; },
                                 [](double number) { return PropertyList(number).integerValue(); },
                                 [](const PropertyList* value) { return value->integerValue(); },
                                 [](const auto&) { return std::int64_t{0}; }},
                      value_);
}

double FormatArgument::real() const {
    return std::visit(
        Overloaded{[](std::int64_t number) { return static_cast<double>(number); },
                   [](double number) { return number; }, [](const PropertyList* value) { return value->realValue(); },
                   [](const auto&) { return 0.0; }},
        value_);
}

std::string formatted(std::string_view format, std::initializer_list<FormatArgument> arguments) {
    static const FormatArgument kMissing(nullptr);
    FormatReader reader(format);
    std::string text;
    std::size_t next = 0;
    while (!reader.atEnd()) {
        text += reader.literal();
        if (reader.atEnd()) break;
        Directive directive = reader.directive();
        if (directive.conversion == '%') {
            text += '%';
            continue;
        }
        std::size_t index = directive.position > 0 ? directive.position - 1 : next++;
        text += converted(directive, index < arguments.size() ? arguments.begin()[index] : kMissing);
    }
    return text;
}

}  // namespace propertylist
