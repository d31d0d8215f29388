// Preloaded into a program: the wall clock is an hour behind as soon as the file that SET_BACK names is there.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdlib.h>
#include <time.h>
#include <unistd.h>

int clock_gettime(clockid_t clock, struct timespec* now) {
    static int (*real)(clockid_t, struct timespec*);
    if (!real) *(void**)&real = dlsym(RTLD_NEXT, "clock_gettime");
    int result = real(clock, now);
    const char* sign = getenv("SET_BACK");
    if (clock == CLOCK_REALTIME && sign && access(sign, F_OK) == 0) now->tv_sec -= 3600;
    return result;
}
