#include "tools/JsonSchema.h"

#include "settings/DomainSchema.h"
#include "settings/EntryList.h"

#include <string>
#include <utility>
#include <vector>

using namespace platform;
using namespace settings;

namespace tools {
namespace {

using Pairs = std::initializer_list<std::pair<std::string_view, PropertyList>>;

PropertyList object(Pairs pairs) { return PropertyList::dictionary(pairs); }
PropertyList list(std::vector<PropertyList> elements) { return PropertyList::array(std::move(elements)); }
PropertyList reference(std::string_view name) { return object({{"$ref", "#/$defs/" + std::string(name)}}); }

// What JSON has no form for: {"$date": ...}.
PropertyList wrapper(std::string_view title, std::string_view key, const PropertyList& content) {
    return object({{"title", title},
                   {"type", "object"},
                   {"properties", object({{key, content}})},
                   {"required", list({key})},
                   {"additionalProperties", false}});
}

// A dictionary stands as {"$dictionary": ...} where it would be taken for one of those.
PropertyList wrappable(std::string_view plain) {
    const PropertyList isWrapped =
        object({{"type", "object"}, {"required", list({"$dictionary"})}, {"maxProperties", 1}});
    const PropertyList looksWrapped = object({{"type", "object"},
                                              {"minProperties", 1},
                                              {"maxProperties", 1},
                                              {"propertyNames", object({{"pattern", "^\\$"}})}});
    return object({{"if", isWrapped},
                   {"then", object({{"properties", object({{"$dictionary", reference(plain)}})}})},
                   {"else", object({{"if", looksWrapped}, {"then", false}, {"else", reference(plain)}})}});
}

PropertyList spelt(std::string_view title, std::string_view pattern) {
    return object(
        {{"title", title}, {"anyOf", list({reference("number"), object({{"type", "string"}, {"pattern", pattern}})})}});
}

// The name under "$defs" of what readers take.
std::string_view definitionOf(ValueForm form) {
    switch (form) {
        case ValueForm::Boolean:
            return "boolean";
        case ValueForm::Number:
            return "number";
        case ValueForm::SpeltBoolean:
            return "speltBoolean";
        case ValueForm::SpeltNumber:
            return "speltNumber";
        case ValueForm::Date:
            return "date";
        case ValueForm::Text:
            return "text";
        case ValueForm::Bytes:
            return "bytes";
        case ValueForm::EntryType:
            return "entryType";
        case ValueForm::Options:
            return "options";
        case ValueForm::EntryList:
            return "entries";
    }
    return {};
}

// What controls offer is told first; what else is taken must not be refused.
PropertyList alternatives(const ValueRule& rule) {
    std::vector<PropertyList> any;
    for (std::string_view choice : rule.choices) any.push_back(object({{"const", any.size()}, {"title", choice}}));
    if (rule.largestTyped)
        any.push_back(object(
            {{"title", "What can be typed"}, {"type", "integer"}, {"minimum", 0}, {"maximum", *rule.largestTyped}}));
    any.push_back(
        object({{"title", "Any other number, which stays until the user chooses"}, {"$ref", "#/$defs/number"}}));
    return list(std::move(any));
}

PropertyList property(const ValueRule& rule) {
    MutableDictionary schema;
    schema.set("description", rule.meaning);
    const bool isBoolean = rule.form == ValueForm::Boolean || rule.form == ValueForm::SpeltBoolean;
    if (rule.whenMissing)
        schema.set("default", isBoolean ? PropertyList(*rule.whenMissing != 0) : PropertyList(*rule.whenMissing));
    if (rule.choices.empty() && !rule.largestTyped)
        schema.set("$ref", "#/$defs/" + std::string(definitionOf(rule.form)));
    else
        schema.set("anyOf", alternatives(rule));
    return std::move(schema).freeze();
}

PropertyList keys(std::string_view title, std::span<const ValueRule> rules, Pairs more = {}) {
    MutableDictionary properties, schema(object({{"title", title}, {"type", "object"}}));
    for (const ValueRule& rule : rules) properties.set(rule.key, property(rule));
    schema.set("properties", std::move(properties).freeze());
    for (const auto& [key, value] : more) schema.set(key, value);
    return std::move(schema).freeze();
}

// Patterns of JSON Schema cannot pass over the case of letters.
constexpr std::string_view kWords = "[Tt][Rr][Uu][Ee]|[Yy][Ee][Ss]|1|[Ff][Aa][Ll][Ss][Ee]|[Nn][Oo]|0";

PropertyList definitions() {
    const std::vector<PropertyList> types(entryTypes().begin(), entryTypes().end());
    const PropertyList isExpression =
        object({{"properties", object({{kTypeKey, object({{"const", kRegExType}})}})}, {"required", list({kTypeKey})}});
    const PropertyList expressionIsText = object({{"properties", object({{kDataKey, reference("text")}})}});
    const std::string words(kWords);
    return object({
        {"domainKeys", keys("The keys of the domain", domainRules())},
        {"entries", object({{"title", "The list of entries"}, {"type", "array"}, {"items", reference("entry")}})},
        {"entry", wrappable("entryKeys")},
        {"entryKeys", keys("The keys of an entry", entryRules(),
                           {{"required", list({kTypeKey})}, {"if", isExpression}, {"then", expressionIsText}})},
        {"options", wrappable("optionKeys")},
        {"optionKeys", keys("The options, which have the default when they are missing", optionRules())},
        {"entryType", object({{"enum", list(types)}})},
        {"boolean", object({{"title", "True or false; a number serves, too, and 0 is false"},
                            {"anyOf", list({object({{"type", list({"boolean", "number"})}}), reference("real")})}})},
        {"number", object({{"title", "A number; true and false serve as 1 and 0"},
                           {"anyOf", list({object({{"type", list({"number", "boolean"})}}), reference("real")})}})},
        {"speltBoolean", spelt("True or false, also as a number or a text", "^(" + words + ")$")},
        {"speltNumber", spelt("A number, also as a text", "^(" + words + "|[+-]?[0-9]+)$")},
        {"text", object({{"title", "A text"}, {"type", "string"}})},
        {"bytes", object({{"title", "A text, or data for what is no UTF-8"},
                          {"anyOf", list({object({{"type", "string"}}), reference("data")})}})},
        {"data", wrapper("Data", "$data", object({{"type", "string"}, {"contentEncoding", "base64"}}))},
        {"date", wrapper("A date", "$date", object({{"type", "string"}, {"format", "date-time"}}))},
        {"real", wrapper("A real that is no number", "$real", object({{"enum", list({"nan", "inf", "-inf"})}}))},
    });
}

}  // namespace

PropertyList jsonSchema() {
    MutableDictionary schema(object({
        {"$schema", "https://json-schema.org/draft/2020-12/schema"},
        {"$id", "urn:typeslate:settings:1"},
        {"title", "The settings domain " + std::string(kSettingsDomain)},
        {"description",
         "The stored settings as \"typeslatectl defaults read\" prints them. Every key may be missing, but an entry's "
         "Type; other keys are allowed everywhere, and are kept."},
    }));
    const PropertyList domain = wrappable("domainKeys");
    for (const auto& [key, value] : domain.entries()) schema.set(key.stringValue(), value);
    schema.set("$defs", definitions());
    return std::move(schema).freeze();
}

}  // namespace tools
