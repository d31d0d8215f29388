// How the messages between processes look on the session bus; docs/messages.md tells what they mean.
#pragma once

namespace platform {

// A signal; those of another D-Bus signature than this one are ignored.
struct SignalForm {
    const char *path, *interface, *member, *signature;
};

// name, object, user information, deliver immediately
inline constexpr SignalForm kNotificationForm{"/com/tarnwick/DistributedNotificationCenter",
                                              "com.tarnwick.DistributedNotificationCenter", "Notification", "ssa{sv}b"};
// module, message, data
inline constexpr SignalForm kRuntimeMessageForm{"/com/tarnwick/plinth", "com.tarnwick.plinth.Runtime", "Message",
                                                "ssay"};

// The deepest nesting of containers in the user information that is sent. D-Bus itself allows little more than twice as
// much.
inline constexpr int kDeepestUserInfo = 12;

}  // namespace platform
