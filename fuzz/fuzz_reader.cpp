// Any domain, any expression, any facts of an application: an answer, the same twice, of an entry that is there.
#include "propertylist/Codec.h"
#include "reader/Rules.h"
#include "settings/SettingsSchema.h"

#include <array>
#include <cstdint>
#include <cstdlib>

using namespace reader;
using platform::PropertyList;

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

// Up to the next zero byte.
std::string_view nextText(std::string_view& rest) {
    std::string_view text = rest.substr(0, rest.find('\0'));
    rest.remove_prefix(std::min(rest.size(), text.size() + 1));
    return text;
}

void ask(const PropertyList& domain, const Application& application) {
    const Rules rules(domain);
    const Resolution first = rules.resolve(application), second = rules.resolve(application);
    require(first.row == second.row && first.reason == second.reason && first.entry == second.entry);
    require(first.row >= -1 && first.row < static_cast<int>(domain["TheExcList"].size()));
    require((first.row < 0) == (first.reason == Reason::Default));
    for (std::size_t option = 0; option < settings::options().size(); ++option)
        require(optionValue(first.entry, option) >= 0 && optionValue(first.entry, option) <= 255);
}

}  // namespace

// The facts, an expression, and what is left is a domain.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    Application application;
    for (auto fact : {&Application::identifier, &Application::creator, &Application::path, &Application::name})
        application.*fact = nextText(rest);
    const std::string_view expression = nextText(rest);
    std::vector<PropertyList> list;
    for (int kind = -1; kind < 4; ++kind)
        list.push_back(PropertyList::dictionary({{"Type", "RegEx"}, {"Data", expression}, {"RegEx Type", kind}}));
    ask(PropertyList::dictionary({{"TheExcList", PropertyList::array(std::move(list))}}), application);
    ask(propertylist::decodePropertyList(rest), application);
    return 0;
}
