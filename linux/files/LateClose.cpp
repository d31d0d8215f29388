#include "linux/files/LateClose.h"

#include <unistd.h>

#include <atomic>
#include <system_error>
#include <thread>

namespace linux {

namespace {

// Bytes. Less is freed in the time that a thread takes to start.
constexpr std::int64_t kWorthAThread = 64 << 10;

std::atomic<bool> isClosing = false;

}  // namespace

void closeLater(Descriptor file, std::int64_t size) noexcept {
    if (!file || size < kWorthAThread || isClosing.exchange(true)) return;
    try {
        std::thread([number = file.number()] {
            ::close(number);
            isClosing = false;
        }).detach();
        file.release();
    } catch (const std::system_error&) {
        isClosing = false;
    }
}

}  // namespace linux
