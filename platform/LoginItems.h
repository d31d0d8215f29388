// The user's login items, what the session starts after the login: one array in a preference domain of the login
// window.
#pragma once

#include <string_view>

namespace platform {

inline constexpr std::string_view kLoginWindowDomain = "loginwindow";
inline constexpr std::string_view kLoginItemsKey = "AutoLaunchedApplicationDictionary";

// Keys of an item, a dictionary. The items are in the order in which they are started; those that other programs have
// made may have more keys.
inline constexpr std::string_view kLoginItemPathKey = "Path";  // string, the full path of what is started
inline constexpr std::string_view kLoginItemHideKey = "Hide";  // boolean

}  // namespace platform
