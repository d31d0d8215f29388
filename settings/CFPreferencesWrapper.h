// Typed access to one preference domain of the current user. Nothing is cached: every getter asks the service afresh,
// and what was set is read back at once, before it is on the disk. Copying a value costs a pointer, whatever its size.
// As the service itself, for one thread at a time.
#pragma once

#include "platform/Preferences.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class CFPreferencesWrapper_Typeslate {
public:
    // Both are the same: the caller owns what they make. Null without an identifier, the domain's name. The service
    // must outlive the wrapper.
    static std::unique_ptr<CFPreferencesWrapper_Typeslate> initWithApplication(
        platform::PreferenceService& service, std::optional<std::string_view> identifier);
    static std::unique_ptr<CFPreferencesWrapper_Typeslate> preferencesWithApplication(
        platform::PreferenceService& service, std::optional<std::string_view> identifier);

    // Nothing when the key is missing or its value is of another type.
    platform::PropertyList objectForKey(std::string_view key) const;
    platform::PropertyList arrayForKey(std::string_view key) const;
    platform::PropertyList stringArrayForKey(std::string_view key) const;  // every element a string
    platform::PropertyList dictionaryForKey(std::string_view key) const;
    platform::PropertyList dataForKey(std::string_view key) const;
    platform::PropertyList stringForKey(std::string_view key) const;
    // 0, or false, when the key is missing or its value is not accepted. floatForKey accepts numbers and booleans; the
    // two others also strings, as the service's boolean and integer reads do (platform::PreferenceService).
    float floatForKey(std::string_view key) const;
    bool boolForKey(std::string_view key) const;
    std::int64_t integerForKey(std::string_view key) const;
    bool keyExist(std::string_view key) const;

    // Setting nothing is ignored; removeObjectForKey removes. In memory only: no setter fails, and synchronize writes.
    void setObject_forKey(const platform::PropertyList& value, std::string_view key);
    void setBool_forKey(bool value, std::string_view key);
    void setFloat_forKey(float value, std::string_view key);
    void setInteger_forKey(std::int32_t value, std::string_view key);
    void removeObjectForKey(std::string_view key);
    // Changes what is stored in the moment of saving, so that nothing of another program's is overwritten: see
    // platform::PreferenceChange for what the function may do. In memory at once, as what the setters set. A key
    // without an array counts as an empty one.
    void changeValues(platform::PreferenceChange change);
    void changeArray_forKey(std::function<void(std::vector<platform::PropertyList>& elements)> change,
                            std::string_view key);

    // Writes what was set and takes in what other processes have written. False when the changes could not be made
    // durable; they stay set and go out with the next call.
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
