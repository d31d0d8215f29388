// Which of three other font managers are installed: whether the system finds an application by the manager's creator
// code, bundle identifier or name. Each question is asked of the system once in a process, by whoever comes first; the
// answer is kept. For one thread.
#pragma once

#include "platform/Applications.h"

bool IsFAPInstalled(platform::ApplicationServices& applications);       // FontAgent Pro
bool IsFEXInstalled(platform::ApplicationServices& applications);       // Linotype FontExplorer X
bool IsSuitcaseInstalled(platform::ApplicationServices& applications);  // Suitcase Fusion

// Forgets the answers, as a new process would.
void forgetInstalledFontManagers();
