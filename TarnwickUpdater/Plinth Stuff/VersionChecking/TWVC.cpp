#include "TarnwickUpdater/Plinth Stuff/VersionChecking/TWVC.h"

#include "TarnwickUpdater/Plinth Stuff/VersionChecking/UpdaterLaunch.h"
#include "TarnwickUpdater/Plinth Stuff/VersionChecking/VersionChecking.h"
#include "propertylist/Date.h"
#include "propertylist/Unicode.h"

#include <algorithm>
#include <cmath>
#include <cstring>

using namespace platform;
using namespace propertylist;
using twvc::UpdateServices;

namespace {

const UpdateServices* sServices = nullptr;

std::unique_ptr<Bundle> openBundle(const char* path) { return path ? sServices->bundles.openBundle(path) : nullptr; }

// The bytes of a foreign caller are text only when they are UTF-8.
std::optional<std::string_view> text(const char* bytes) {
    return bytes && isValidUTF8(bytes) ? std::optional<std::string_view>(bytes) : std::nullopt;
}

// As many whole characters as there is room for, ended by a zero byte. Returns the whole text's length.
std::size_t copyText(const std::string& whole, char* buffer, std::size_t size) {
    if (size > 0 && buffer) {
        std::size_t length = std::min(whole.size(), size - 1);
        while (length > 0 && (whole[length] & 0xC0) == 0x80) --length;
        std::memcpy(buffer, whole.data(), length);
        buffer[length] = '\0';
    }
    return whole.size();
}

template <typename Launch>
OSStatus launchFor(TWVCFileReference* out, Launch launch) {
    FSRef launched;
    OSStatus status = launch(&launched);
    if (out && !launched.path.empty()) {
        out->device = launched.device;
        out->inode = launched.inode;
        copyText(launched.path, out->path, sizeof out->path);
    }
    return status;
}

bool isStyle(int style) { return style >= TWVC_NoStyle && style <= TWVC_FullStyle; }

}  // namespace

void TWVC_SetServices(const TWVCServices* services) { sServices = reinterpret_cast<const UpdateServices*>(services); }

int32_t TWVC_CheckForUpdate(const char* bundlePath, int isCheckingFromPlinth, TWVCFileReference* outLaunchedUpdater) {
    if (!sServices) return kParamErr;
    auto bundle = openBundle(bundlePath);
    return launchFor(outLaunchedUpdater, [&](FSRef* launched) {
        return twvc::checkForUpdate(*sServices, bundle.get(), isCheckingFromPlinth != 0, launched);
    });
}

int32_t TWVC_RunUpdater(const char* bundlePath, const char* bundleID, TWVCFileReference* outLaunchedUpdater) {
    if (!sServices) return kParamErr;
    auto bundle = openBundle(bundlePath);
    return launchFor(outLaunchedUpdater, [&](FSRef* launched) {
        return twvc::runUpdater(*sServices, bundle.get(), text(bundleID), launched);
    });
}

uint32_t TWVC_GetSystemVersion(void) { return sServices ? twvc::systemVersion(*sServices) : 0; }

int TWVC_CopyLoginWindowLaunchDate(double* outSeconds) {
    auto date = sServices ? twvc::loginWindowLaunchDate(*sServices) : std::nullopt;
    if (date && outSeconds) *outSeconds = static_cast<double>(date->microseconds) / 1e6;
    return date ? 1 : 0;
}

void TWVC_SetVersionDatePreferences(const char* bundleID) {
    auto identifier = text(bundleID);
    if (sServices && identifier) twvc::setVersionDatePreferences(*sServices, *identifier);
}

ptrdiff_t GetNSStringFromDate(double seconds, int dateStyle, int timeStyle, char* buffer, size_t size) {
    if (!sServices || !std::isfinite(seconds) || !isStyle(dateStyle) || !isStyle(timeStyle)) return -1;
    auto whole = twvc::stringFromDate(*sServices, dateByAdding(Date{}, seconds), static_cast<DateStyle>(dateStyle),
                                      static_cast<DateStyle>(timeStyle));
    return whole ? static_cast<ptrdiff_t>(copyText(*whole, buffer, size)) : -1;
}
