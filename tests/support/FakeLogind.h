// A login manager that says which process began the session, to everybody whom the environment sends to it: a process
// at a socket of its own that speaks D-Bus with one client after the other.
#pragma once

#include "tests/support/Check.h"

#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdio>

namespace check {

class FakeLogind {
public:
    explicit FakeLogind(std::uint32_t leader) {
        sockaddr_un address{AF_UNIX, {}};
        std::snprintf(address.sun_path, sizeof address.sun_path, "%s", socket_.c_str());
        int listening = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        REQUIRE(::bind(listening, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0);
        REQUIRE(::listen(listening, 5) == 0);
        process_ = ::fork();
        if (process_ == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            for (;;) serve(::accept(listening, nullptr, nullptr), leader);
        }
        ::close(listening);
    }
    ~FakeLogind() {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }

private:
    static int hello(sd_bus_message* call, void*, sd_bus_error*) {
        return sd_bus_reply_method_return(call, "s", ":1.1");
    }

    static void serve(int client, std::uint32_t leader) {
        static constexpr sd_bus_vtable kBus[] = {SD_BUS_VTABLE_START(0),
                                                 SD_BUS_METHOD("Hello", "", "s", hello, SD_BUS_VTABLE_UNPRIVILEGED),
                                                 SD_BUS_VTABLE_END};
        static constexpr sd_bus_vtable kSession[] = {SD_BUS_VTABLE_START(0),
                                                     SD_BUS_PROPERTY("Leader", "u", nullptr, 0, 0), SD_BUS_VTABLE_END};
        sd_bus* bus = nullptr;
        sd_bus_new(&bus);
        sd_bus_set_fd(bus, client, client);
        sd_bus_set_server(bus, 1, {});
        sd_bus_add_object_vtable(bus, nullptr, "/org/freedesktop/DBus", "org.freedesktop.DBus", kBus, nullptr);
        sd_bus_add_object_vtable(bus, nullptr, "/org/freedesktop/login1/session/auto", "org.freedesktop.login1.Session",
                                 kSession, &leader);
        for (int done = sd_bus_start(bus); done >= 0; done = sd_bus_process(bus, nullptr))
            if (done == 0 && sd_bus_wait(bus, UINT64_MAX) < 0) break;
        sd_bus_unref(bus);
    }

    TemporaryFolder folder_;
    const std::string socket_ = folder_ / "bus";
    ScopedEnvironment address_{"DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + socket_).c_str()};
    pid_t process_ = -1;
};

}  // namespace check
