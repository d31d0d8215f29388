// Typed access to one preference domain. Nothing is cached: every getter asks the service afresh.
#pragma once

#include "platform/Preferences.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

class CFPreferencesWrapper_Typeslate {
public:
    // Null without an identifier. The service must outlive the wrapper.
    static std::unique_ptr<CFPreferencesWrapper_Typeslate> preferencesWithApplication(
        platform::PreferenceService& service, std::optional<std::string_view> identifier);

    // Nothing when the key is missing or its value is of another type.
    platform::PropertyList objectForKey(std::string_view key) const;
    platform::PropertyList arrayForKey(std::string_view key) const;
    platform::PropertyList stringArrayForKey(std::string_view key) const;  // every element a string
    platform::PropertyList dictionaryForKey(std::string_view key) const;
    platform::PropertyList dataForKey(std::string_view key) const;
    platform::PropertyList stringForKey(std::string_view key) const;
    // 0, or false, when the key is missing or its value is not accepted: numbers only for floatForKey; for the two
    // others what the service's boolean and integer reads accept.
    float floatForKey(std::string_view key) const;
    bool boolForKey(std::string_view key) const;
    std::int64_t integerForKey(std::string_view key) const;
    bool keyExist(std::string_view key) const;

    // Setting nothing is ignored; removeObjectForKey removes.
    void setObject_forKey(const platform::PropertyList& value, std::string_view key);
    void setBool_forKey(bool value, std::string_view key);
    void setFloat_forKey(float value, std::string_view key);
    void setInteger_forKey(std::int32_t value, std::string_view key);
    void removeObjectForKey(std::string_view key);

    // False when the changes could not be made durable; they stay set and go out with the next call.
    bool synchronize();
    // False while a stored domain exists that cannot be read: an absent value then says nothing about the user's data.
    bool isReadable() const;

private:
    CFPreferencesWrapper_Typeslate(platform::PreferenceService& service, std::string_view identifier)
        : service_(service), identifier_(identifier) {}
    platform::PropertyList typed(std::string_view key, platform::PropertyList::Type type) const;

    platform::PreferenceService& service_;
    std::string identifier_;
};
