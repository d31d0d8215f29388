// Finding a running process by its bundle.
#pragma once

#include "platform/Bundle.h"
#include "platform/Processes.h"

#include <optional>
#include <string_view>

// The first running process, in the platform's order, whose program lies in a bundle of exactly this identifier.
// Bundles at paths that a buffer of 1024 bytes cannot hold with a final zero byte are passed over.
std::optional<platform::ProcessSerialNumber> findRunningProcess(platform::ProcessServices& processes,
                                                                platform::BundleServices& bundles,
                                                                std::string_view identifier);
