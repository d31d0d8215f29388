/* Tells which settings apply to an application, and tells it again whenever they change.
 *
 *     cc reader.c $(pkg-config --cflags --libs typeslate) -o reader
 *     ./reader IDENTIFIER [NAME [PATH]]
 */
#include <typeslate.h>

#include <poll.h>
#include <stdio.h>

static void tell(const typeslate_settings *settings, const typeslate_application *application) {
    static const char *const reasons[] = {"by default", "as for all others", "by its identifier", "by its creator code",
                                          "by its path", "by an expression"};
    typeslate_entry *entry = typeslate_resolve(settings, application);
    if (!typeslate_entry_applies(entry)) {
        printf("menus are left alone (%s)\n", typeslate_is_on(settings) ? "the entry is off" : "all is off");
    } else {
        printf("entry %d, %s:", typeslate_entry_row(entry), reasons[typeslate_entry_reason(entry)]);
        for (int option = 0; option < TYPESLATE_OPTION_COUNT; ++option)
            printf(" %s=%d", typeslate_option_key((typeslate_option)option),
                   typeslate_entry_option(entry, (typeslate_option)option));
        putchar('\n');
    }
    fflush(stdout);
    typeslate_entry_free(entry);
}

int main(int count, char **arguments) {
    if (count < 2 || count > 4) {
        fprintf(stderr, "usage: reader IDENTIFIER [NAME [PATH]]\n");
        return 2;
    }
    int status = 0;
    typeslate_settings *settings = typeslate_open(&status);
    if (status != TYPESLATE_OK) fprintf(stderr, "reader: %s\n", typeslate_status_text(status));
    typeslate_application application = {.identifier = arguments[1]};
    if (count > 2) application.name = arguments[2];
    if (count > 3) application.path = arguments[3];

    struct pollfd waits[] = {{typeslate_descriptor(settings), POLLIN, 0}, {1 /* standard output: who reads it */, 0, 0}};
    tell(settings, &application);
    while (poll(waits, 2, -1) > 0 && !(waits[1].revents & (POLLERR | POLLHUP))) {
        int changed = 0;
        typeslate_refresh(settings, &changed);
        if (changed) tell(settings, &application);
    }
    typeslate_close(settings);
    return 0;
}
