#include "settings/CFPreferencesWrapper.h"

#include <algorithm>

using platform::PropertyList;

std::unique_ptr<CFPreferencesWrapper_Typeslate> CFPreferencesWrapper_Typeslate::preferencesWithApplication(
    platform::PreferenceService& service, std::optional<std::string_view> identifier) {
    return initWithApplication(service, identifier);
}

std::unique_ptr<CFPreferencesWrapper_Typeslate> CFPreferencesWrapper_Typeslate::initWithApplication(
    platform::PreferenceService& service, std::optional<std::string_view> identifier) {
    if (!identifier) return nullptr;
    return std::unique_ptr<CFPreferencesWrapper_Typeslate>(new CFPreferencesWrapper_Typeslate(service, *identifier));
}

PropertyList CFPreferencesWrapper_Typeslate::objectForKey(std::string_view key) const {
    return service_.copyValue(key, identifier_);
}

PropertyList CFPreferencesWrapper_Typeslate::typed(std::string_view key, PropertyList::Type type) const {
    PropertyList value = objectForKey(key);
    return value.type() == type ? value : PropertyList();
}

PropertyList CFPreferencesWrapper_Typeslate::arrayForKey(std::string_view key) const {
    return typed(key, PropertyList::Type::Array);
}

PropertyList CFPreferencesWrapper_Typeslate::stringArrayForKey(std::string_view key) const {
    PropertyList value = arrayForKey(key);
    return std::ranges::all_of(value.elements(), &PropertyList::isString) ? value : PropertyList();
}

PropertyList CFPreferencesWrapper_Typeslate::dictionaryForKey(std::string_view key) const {
    return typed(key, PropertyList::Type::Dictionary);
}

PropertyList CFPreferencesWrapper_Typeslate::dataForKey(std::string_view key) const {
    return typed(key, PropertyList::Type::Data);
}

PropertyList CFPreferencesWrapper_Typeslate::stringForKey(std::string_view key) const {
    return typed(key, PropertyList::Type::String);
}

float CFPreferencesWrapper_Typeslate::floatForKey(std::string_view key) const {
    return static_cast<float>(objectForKey(key).realValue());
}

bool CFPreferencesWrapper_Typeslate::boolForKey(std::string_view key) const {
    return service_.getBooleanValue(key, identifier_);
}

std::int64_t CFPreferencesWrapper_Typeslate::integerForKey(std::string_view key) const {
    return service_.getIntegerValue(key, identifier_);
}

bool CFPreferencesWrapper_Typeslate::keyExist(std::string_view key) const { return bool(objectForKey(key)); }

void CFPreferencesWrapper_Typeslate::setObject_forKey(const PropertyList& value, std::string_view key) {
    if (value) service_.setValue(key, value, identifier_);
}

void CFPreferencesWrapper_Typeslate::setBool_forKey(bool value, std::string_view key) { setObject_forKey(value, key); }

void CFPreferencesWrapper_Typeslate::setFloat_forKey(float value, std::string_view key) {
    setObject_forKey(static_cast<double>(value), key);
}

void CFPreferencesWrapper_Typeslate::setInteger_forKey(std::int32_t value, std::string_view key) {
    setObject_forKey(value, key);
}

void CFPreferencesWrapper_Typeslate::removeObjectForKey(std::string_view key) {
    service_.setValue(key, {}, identifier_);
}

void CFPreferencesWrapper_Typeslate::changeValues(platform::PreferenceChange change) {
    service_.changeValues(std::move(change), identifier_);
}

void CFPreferencesWrapper_Typeslate::changeArray_forKey(std::function<void(std::vector<PropertyList>&)> change,
                                                        std::string_view key) {
    changeValues([change = std::move(change), key = std::string(key)](platform::MutableDictionary& values) {
        std::vector<PropertyList> elements = platform::mutableArray(values[key]);
        change(elements);
        if (elements.empty() && !values[key]) return;
        values.set(key, PropertyList::array(std::move(elements)));
    });
}

bool CFPreferencesWrapper_Typeslate::synchronize() { return service_.synchronize(identifier_); }

bool CFPreferencesWrapper_Typeslate::isReadable() const { return service_.isReadable(identifier_); }
