// Finding a running process by its bundle.
#pragma once

#include "platform/Bundle.h"
#include "platform/Processes.h"

#include <optional>
#include <string_view>

// The first running process, in the platform's order, whose program lies in a bundle of exactly this identifier.
// Nothing when there is none, and for an empty identifier. The process may have ended by the time of the answer; its
// number stays its own, and what is asked of it later then fails.
//
// Each bundle is opened once, however many processes run from it. Bundles whose paths have 1024 bytes or more are
// passed over.
std::optional<platform::ProcessSerialNumber> findRunningProcess(platform::ProcessServices& processes,
                                                                platform::BundleServices& bundles,
                                                                std::string_view identifier);
