// What a document of entries must be to be taken.
#include "entrylist/Exchange.h"
#include "platform/Localizable.h"
#include "settings/DomainSchema.h"

#include <utility>

using namespace platform;
using namespace settings;

namespace entrylist {
namespace {

// The limits on what is in an entry, wherever in it.
class Meter {
public:
    ExchangeProblem measure(const PropertyList& entry) { return measure(entry, 0); }

private:
    ExchangeProblem measure(const PropertyList& value, unsigned depth) {
        if (++values_ > kMostExchangedValues)
            return {{}, localizable("there are more than %d values"), kMostExchangedValues};
        if (value.stringValue().size() > kLongestExchangedText || value.dataValue().size() > kLongestExchangedText)
            return {{}, localizable("a text is longer than %d bytes"), kLongestExchangedText};
        const bool isContainer = value.isArray() || value.isDictionary();
        if (isContainer && depth >= kDeepestExchangedEntry)
            return {{}, localizable("this is nested deeper than %d levels"), kDeepestExchangedEntry};
        for (const PropertyList& element : value.elements())
            if (ExchangeProblem problem = measure(element, depth + 1)) return problem;
        for (const auto& [key, member] : value.entries()) {
            if (ExchangeProblem problem = measure(key, depth + 1)) return problem;
            if (ExchangeProblem problem = measure(member, depth + 1)) return problem;
        }
        return {};
    }

    std::size_t values_ = 0;
};

ExchangeProblem problemOfEnvelope(const PropertyList& document) {
    const PropertyList &version = document[kVersionKey], &entries = document[kEntriesKey];
    if (document[kFormatKey].stringValue() != kExchangeFormat)
        return {{}, localizable("these are no exported entries")};
    if (version.type() != PropertyList::Type::Integer || version.integerValue() < 1)
        return {std::string(kVersionKey), localizable("this must be a whole number from 1")};
    if (version.integerValue() > kExchangeVersion)
        return {
            {},
            localizable("a newer version of Typeslate has made this; the newest format that can be read here is %d"),
            kExchangeVersion};
    if (!entries.isArray()) return {std::string(kEntriesKey), localizable("this must be a list of entries")};
    if (entries.size() > kMostExchangedEntries)
        return {std::string(kEntriesKey), localizable("there are more than %d entries"), kMostExchangedEntries};
    return {};
}

}  // namespace

ExchangeProblem problemOf(const PropertyList& document) {
    ExchangeProblem problem = problemOfEnvelope(document);
    if (problem) return problem;
    Meter meter;
    std::size_t place = 0;
    for (const PropertyList& entry : document[kEntriesKey].elements()) {
        problem = meter.measure(entry);
        if (!problem) {
            Breach breach = firstBreachOfEntry(entry);
            problem = {std::move(breach.place), breach.reason};
        }
        if (problem) {
            problem.place = placeInList(kEntriesKey, place, problem.place);
            return problem;
        }
        ++place;
    }
    return {};
}

}  // namespace entrylist
