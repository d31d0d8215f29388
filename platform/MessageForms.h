// How the messages between processes look on the session bus; docs/messages.md tells what they mean.
#pragma once

#include <array>
#include <span>
#include <string_view>

namespace platform {

struct SignalArgument {
    std::string_view name, type;  // the type as D-Bus writes it
};

// A signal; those of another D-Bus signature than this one are ignored. The interfaces' descriptions in packaging/ are
// made from these.
struct SignalForm {
    const char *path, *interface, *member, *signature;  // the signature is that of all arguments
    std::span<const SignalArgument> arguments = {};

    constexpr bool isSound() const {
        std::string_view rest = signature;
        for (const SignalArgument& argument : arguments) {
            if (!rest.starts_with(argument.type)) return false;
            rest.remove_prefix(argument.type.size());
        }
        return rest.empty();
    }
};

inline constexpr std::array<SignalArgument, 4> kNotificationArguments{
    {{"name", "s"}, {"object", "s"}, {"userInfo", "a{sv}"}, {"deliverImmediately", "b"}}};
inline constexpr SignalForm kNotificationForm{"/com/tarnwick/DistributedNotificationCenter",
                                              "com.tarnwick.DistributedNotificationCenter", "Notification", "ssa{sv}b",
                                              kNotificationArguments};
inline constexpr std::array<SignalArgument, 3> kRuntimeMessageArguments{
    {{"module", "s"}, {"message", "s"}, {"data", "ay"}}};
inline constexpr SignalForm kRuntimeMessageForm{"/com/tarnwick/plinth", "com.tarnwick.plinth.Runtime", "Message",
                                                "ssay", kRuntimeMessageArguments};
static_assert(kNotificationForm.isSound() && kRuntimeMessageForm.isSound());

// The deepest nesting of containers in the user information that is sent. D-Bus itself allows little more than twice as
// much.
inline constexpr int kDeepestUserInfo = 12;

}  // namespace platform
