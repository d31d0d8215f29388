/* Calls the update checker as a program that is neither ours nor C++: CALLER PANE MODULE [--from-module]
 * Prints the status and the launched updater. */
#include "TarnwickUpdater/Plinth Stuff/VersionChecking/TWVC.h"

#include <dlfcn.h>
#include <stdio.h>

static void* function(const char* pane, const char* file, const char* name) {
    char path[TWVC_PathSize];
    snprintf(path, sizeof path, "%s/Contents/%s", pane, file);
    void* code = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (!code) fprintf(stderr, "%s\n", dlerror());
    return code ? dlsym(code, name) : NULL;
}

int main(int argc, char** argv) {
    if (argc < 3) return 2;
    const char* own = "Linux/Typeslate";
    void (*setServices)(const struct TWVCServices*);
    int32_t (*check)(const char*, int, TWVCFileReference*);
    const struct TWVCServices* (*machine)(void);
    *(void**)&setServices = function(argv[1], own, "TWVC_SetServices");
    *(void**)&check = function(argv[1], own, "TWVC_CheckForUpdate");
    *(void**)&machine = function(argv[1], "PrivateFrameworks/UpdaterServices.framework/Contents/Linux/UpdaterServices",
                                 "TWVC_MachineServices");
    if (!setServices || !check || !machine) return 1;

    TWVCFileReference launched = {0, 0, ""};
    const int32_t without = check(argv[2], argc > 3, &launched);
    setServices(machine());
    const int32_t with = check(argv[2], argc > 3, &launched);
    printf("%d %d %s\n", (int)without, (int)with, launched.path);
    return 0;
}
