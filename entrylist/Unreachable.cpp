#include "entrylist/Unreachable.h"

#include "platform/Applications.h"
#include "propertylist/Format.h"
#include "propertylist/Hash.h"
#include "settings/ApplicationEntry.h"
#include "settings/EntryList.h"

#include <array>
#include <cstdint>
#include <string_view>

using namespace platform;
using namespace settings;
using propertylist::formatted;

namespace entrylist {
namespace {

using Reason = Unreachable::Reason;

// What an entry stands for, where it can stand for anything.
struct Subject {
    enum class Type : std::uint8_t { None, Global, Identifier, Creator, Path, RegEx };
    Type type = Type::None;
    std::int64_t kind = 0;
    std::string_view data;
    bool operator==(const Subject&) const = default;
};

Subject::Type typeOf(const PropertyList& entry) {
    constexpr std::array kTypes{kGlobalType, kIdentifierType, kCreatorType, kPathType, kRegExType};
    for (std::size_t i = 0; i < kTypes.size(); ++i)
        if (hasType(entry, kTypes[i])) return static_cast<Subject::Type>(i + 1);
    return Subject::Type::None;
}

Subject subjectOf(const PropertyList& entry) {
    Subject subject{typeOf(entry), 0, bytesKept(entry[kDataKey])};
    if (subject.type == Subject::Type::Global) return {subject.type, 0, {}};
    const bool isExpression = subject.type == Subject::Type::RegEx;
    if (isExpression) subject.kind = entry[kRegExTypeKey].integerValue();
    const bool isNameless = subject.data.empty() || (isExpression && !entry[kDataKey].isString()) ||
                            (subject.type == Subject::Type::Creator && subject.data == kNoCreator);
    return isNameless ? Subject() : subject;
}

Reason reasonOfRepeating(const Subject& subject) {
    if (subject.type == Subject::Type::Global) return Reason::SecondGlobal;
    return subject.type == Subject::Type::RegEx ? Reason::SameExpression : Reason::SameApplication;
}

std::string_view nameOf(const PropertyList& entry) {
    const std::string_view name = entry[kNameKey].stringValue();
    return name.empty() ? bytesKept(entry[kDataKey]) : name;
}

}  // namespace

void UnreachableEntries::goThrough(const PropertyList& list) {
    list_ = list;
    rows_.assign(list.size(), {});
    std::vector<Subject> subjects(list.size());
    propertylist::HashTable first(list.size());
    for (std::size_t row = 0; row < list.size(); ++row) {
        const Subject subject = subjects[row] = subjectOf(list[row]);
        Unreachable& what = rows_[row].what;
        if (subject.type == Subject::Type::None) {
            what.reason = Reason::NamesNothing;
            continue;
        }
        if (!factOfKind<ApplicationFacts>(subject.kind)) {
            what.reason = Reason::UnknownKind;
            continue;
        }
        const std::uint32_t hash = propertylist::hashText(subject.data) + static_cast<std::uint32_t>(subject.type) * 8 +
                                   static_cast<std::uint32_t>(subject.kind);
        const std::uint32_t earlier =
            first.find(hash, [&](std::uint32_t candidate) { return subjects[candidate] == subject; });
        if (earlier == propertylist::HashTable::kMissing)
            first.add(hash, static_cast<std::uint32_t>(row));
        else
            what = {reasonOfRepeating(subject), earlier};
    }
}

const Unreachable& UnreachableEntries::at(const PropertyList& list, std::size_t row) {
    static const Unreachable kNothing;
    if (list_ != list) goThrough(list);
    if (row >= rows_.size()) return kNothing;
    auto& [isCompiled, what] = rows_[row];
    const PropertyList& entry = list[row];
    if (!isCompiled && !what && hasType(entry, kRegExType) && expressions_.isAvailable() &&
        !expressions_.compile(entry[kDataKey].stringValue(), what.problem))
        what.reason = Reason::NoExpression;
    isCompiled = true;
    return what;
}

std::string unreachableInWords(const Unreachable& what, const PropertyList& list, std::size_t row,
                               const Localized& localized) {
    const std::string earlier = shortened(nameOf(list[what.earlier]), 80);
    switch (what.reason) {
        case Reason::None:
            break;
        case Reason::SecondGlobal:
            return localized("Never applies: there is a Global further up.");
        case Reason::SameApplication:
            return formatted(localized("Never applies: “%@”, further up, is for the same application."), {earlier});
        case Reason::SameExpression:
            return formatted(localized("Never applies: “%@”, further up, has the same expression."), {earlier});
        case Reason::NoExpression:
            return problemInWords(what.problem, list[row][kDataKey].stringValue(), localized);
        case Reason::UnknownKind:
            return localized("Never applies: it says not what its expression is compared with.");
        case Reason::NamesNothing:
            return localized("Never applies: it names no application.");
    }
    return {};
}

}  // namespace entrylist
