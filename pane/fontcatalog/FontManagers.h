// Which of three other font managers are installed. Each question is asked of the system once in a process; the answer
// is kept.
#pragma once

#include "platform/Applications.h"

bool IsFAPInstalled(platform::ApplicationServices& applications);       // FontAgent Pro
bool IsFEXInstalled(platform::ApplicationServices& applications);       // Linotype FontExplorer X
bool IsSuitcaseInstalled(platform::ApplicationServices& applications);  // Suitcase Fusion

// Forgets the answers, as a new process would.
void forgetInstalledFontManagers();
