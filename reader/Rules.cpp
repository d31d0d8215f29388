#include "reader/Rules.h"

#include "settings/ApplicationEntry.h"
#include "settings/EntryList.h"
#include "settings/SettingsSchema.h"

#include <array>
#include <limits>

namespace reader {

using namespace settings;
using platform::PropertyList;

namespace {

struct ExactType {
    std::string_view type;
    Reason reason;
    std::string_view Application::*fact;
};
constexpr std::array<ExactType, 3> kExactTypes{{{kIdentifierType, Reason::Identifier, &Application::identifier},
                                                {kCreatorType, Reason::Creator, &Application::creator},
                                                {kPathType, Reason::Path, &Application::path}}};

std::uint32_t hashOf(Reason reason, std::string_view data) {
    return propertylist::hashText(data) + static_cast<std::uint32_t>(reason);
}

}  // namespace

Rules::Rules(PropertyList domain) : domain_(std::move(domain)) {
    auto list = domain_[kEntryListKey].elements();
    byName_.clear(list.size());
    for (std::size_t row = 0; row < list.size(); ++row) addEntry(list[row], row);
}

void Rules::addEntry(const PropertyList& entry, std::size_t row) {
    if (hasType(entry, kGlobalType)) {
        if (!global_) global_ = row;
        return;
    }
    std::string_view data = bytesKept(entry[kDataKey]);
    if (data.empty()) return;
    for (const ExactType& exact : kExactTypes)
        if (hasType(entry, exact.type)) addName({exact.reason, data, row});
    if (hasType(entry, kRegExType) && entry[kDataKey].isString() && patterns_.size() < kMostExpressions)
        patterns_.push_back({entry[kRegExTypeKey].integerValue(), data, row});
}

void Rules::addName(const Name& name) {
    if (find(name.reason, name.data)) return;
    byName_.add(hashOf(name.reason, name.data), static_cast<std::uint32_t>(names_.size()));
    names_.push_back(name);
}

const Rules::Name* Rules::find(Reason reason, std::string_view data) const {
    if (reason == Reason::Creator && data == kNoCreator) return nullptr;
    std::uint32_t number = byName_.find(hashOf(reason, data), [&](std::uint32_t candidate) {
        return names_[candidate].reason == reason && names_[candidate].data == data;
    });
    return number == propertylist::HashTable::kMissing ? nullptr : &names_[number];
}

bool Rules::isOn() const { return !propertylist::coercedBoolean(domain_[kDisabledKey]); }

const Rules::Name* Rules::firstNaming(const Application& application) const {
    const Name* first = nullptr;
    for (const ExactType& exact : kExactTypes) {
        const Name* name = find(exact.reason, application.*exact.fact);
        if (name && (!first || name->row < first->row)) first = name;
    }
    return first;
}

void Rules::compile() const {
    std::vector<Expression> compiled;
    std::size_t memory = 0;
    for (const Pattern& pattern : patterns_) {
        ExpressionProblem ignored;
        Expression expression(pattern.text, ignored);
        memory += expression.memory();
        if (memory > kMostExpressionMemory) break;
        compiled.push_back(std::move(expression));
    }
    expressions_ = std::move(compiled);
}

const Rules::Pattern* Rules::firstMatching(const Application& application) const {
    if (patterns_.empty()) return nullptr;
    std::call_once(isCompiled_, [this] { compile(); });
    Matching matching;
    for (std::size_t at = 0; at < expressions_.size(); ++at) {
        const Pattern& pattern = patterns_[at];
        const auto fact = factOfKind<Application>(pattern.kind);
        if (!fact) continue;
        std::string_view subject = application.*fact;
        if (!subject.empty() && expressions_[at].search(subject, matching) == Expression::Answer::Yes) return &pattern;
    }
    return nullptr;
}

Resolution Rules::at(Reason reason, std::size_t row) const {
    return {reason, static_cast<int>(row), domain_[kEntryListKey][row]};
}

Resolution Rules::resolve(const Application& application) const {
    if (const Name* name = firstNaming(application)) return at(name->reason, name->row);
    if (const Pattern* pattern = firstMatching(application)) return at(Reason::Expression, pattern->row);
    if (global_) return at(Reason::Global, *global_);
    return {Reason::Default, -1, newGlobalEntry()};
}

int optionValue(const PropertyList& entry, std::size_t option) {
    return option < options().size() ? appliedValue(entry[kSettingsKey], options()[option]) : 0;
}

}  // namespace reader
