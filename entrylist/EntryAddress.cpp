#include "entrylist/EntryAddress.h"

#include "settings/EntryList.h"

#include <charconv>

using platform::PropertyList;
using namespace settings;

namespace entrylist {
namespace {

using Kind = EntryAddress::Kind;

struct Form {
    Kind kind;
    std::string_view prefix, key, type;  // an entry of this type has it as its data, too
};
constexpr Form kForms[] = {{Kind::Identifier, "id:", kIdentifierKey, kIdentifierType},
                           {Kind::Path, "path:", kPathKey, kPathType},
                           {Kind::Name, "name:", kNameKey, ""}};

// Empty where the entry has none.
std::string_view textUnder(const PropertyList& entry, const Form& form) {
    std::string_view text = bytesKept(entry[form.key]);
    return text.empty() && hasType(entry, form.type) ? bytesKept(entry[kDataKey]) : text;
}

bool isNamed(const PropertyList& entry, const Form& form, std::string_view text) {
    return bytesKept(entry[form.key]) == text || (hasType(entry, form.type) && bytesKept(entry[kDataKey]) == text);
}

}  // namespace

std::optional<EntryAddress> entryAddress(std::string_view text) {
    for (const Form& form : kForms)
        if (text.starts_with(form.prefix) && text.size() > form.prefix.size())
            return EntryAddress{form.kind, 0, std::string(text.substr(form.prefix.size()))};
    EntryAddress address;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), address.row);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return address;
}

std::string textOf(const EntryAddress& address) {
    for (const Form& form : kForms)
        if (form.kind == address.kind) return std::string(form.prefix) + address.text;
    return std::to_string(address.row);
}

std::vector<std::size_t> rowsAt(const EntryAddress& address, std::span<const PropertyList> list) {
    std::vector<std::size_t> rows;
    if (address.kind == Kind::Row && address.row >= 0 && address.row < std::ssize(list))
        rows.push_back(static_cast<std::size_t>(address.row));
    for (const Form& form : kForms)
        for (std::size_t row = 0; form.kind == address.kind && row < list.size(); ++row)
            if (isNamed(list[row], form, address.text)) rows.push_back(row);
    return rows;
}

std::vector<EntryAddress> addressesOf(const PropertyList& entry) {
    std::vector<EntryAddress> addresses;
    for (const Form& form : kForms)
        if (std::string_view text = textUnder(entry, form); !text.empty())
            addresses.push_back({form.kind, 0, std::string(text)});
    return addresses;
}

}  // namespace entrylist
