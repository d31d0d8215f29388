/* Times the packaged libplist on a binary property list: the shortest of the given number of runs, in milliseconds of
   processor time, of decoding and of encoding.  usage: bench_propertylist_peer FILE RUNS */
#define _POSIX_C_SOURCE 200809L
#include <plist/plist.h>
#include <stdio.h>
#include <stdlib.h>
#include <time.h>

static double now(void) {
    struct timespec t;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return (double)t.tv_sec * 1e3 + (double)t.tv_nsec / 1e6;
}

static char* readFile(const char* path, uint32_t* length) {
    char* bytes = NULL;
    long size = 0;
    FILE* file = fopen(path, "rb");
    if (!file) return NULL;
    if (fseek(file, 0, SEEK_END) == 0 && (size = ftell(file)) > 0) bytes = malloc((size_t)size);
    rewind(file);
    if (bytes && fread(bytes, 1, (size_t)size, file) != (size_t)size) bytes = NULL;
    fclose(file);
    *length = (uint32_t)size;
    return bytes;
}

int main(int argc, char** argv) {
    uint32_t length = 0;
    char* bytes = argc == 3 ? readFile(argv[1], &length) : NULL;
    double decode = 1e99, encode = 1e99;
    if (!bytes) return 2;
    for (int run = atoi(argv[2]); run > 0; --run) {
        plist_t value = NULL;
        char* encoded = NULL;
        uint32_t encodedLength = 0;
        double start = now();
        plist_from_bin(bytes, length, &value);
        double decoded = now();
        if (!value) return 1;
        plist_to_bin(value, &encoded, &encodedLength);
        double end = now();
        if (decoded - start < decode) decode = decoded - start;
        if (end - decoded < encode) encode = end - decoded;
        free(encoded);
        plist_free(value);
    }
    printf("%.3f %.3f\n", decode, encode);
    free(bytes);
    return 0;
}
