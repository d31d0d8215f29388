/* libtypeslate: how programs read the settings of Typeslate.
 *
 *     typeslate_settings *settings = typeslate_open(NULL);
 *     typeslate_application me = {.identifier = "org.example.Editor", .name = "Editor"};
 *     typeslate_entry *entry = typeslate_resolve(settings, &me);
 *     if (typeslate_entry_applies(entry) && typeslate_entry_option(entry, TYPESLATE_SHOW_FONT_IN_FACE))
 *         ...
 *     typeslate_entry_free(entry);
 *     typeslate_close(settings);
 *
 * Which entry applies to an application, what a missing option means and how expressions are read: docs/reading.md. The
 * library reads two files and never writes; it starts no thread, keeps nothing between two handles, changes no locale
 * and no signal, and ends no process: what goes wrong is a status, and Global's options as a new list has them.
 *
 * Threads: all functions may be called from several threads at once, on one handle too. A handle, an entry or a font
 * must not be freed while another thread uses it. Entries and fonts stay what they are when the settings change, and
 * may outlive the handle that they came from.
 *
 * Where a null pointer stands for an object, reading functions answer as for nothing: 0, or NULL. Texts are UTF-8 where
 * nothing else is said, end with a zero byte, belong to the object that they are asked of, and live as long as it.
 */
#ifndef TYPESLATE_H
#define TYPESLATE_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#define TYPESLATE_API __attribute__((visibility("default")))
#else
#define TYPESLATE_API
#endif

/* How reading went. */
enum {
    TYPESLATE_OK = 0,
    TYPESLATE_ABSENT = 1,     /* nothing is stored yet */
    TYPESLATE_UNREADABLE = 2, /* there is a file, which cannot be read */
    TYPESLATE_DAMAGED = 3,    /* the file is no property list with a dictionary */
    TYPESLATE_TOO_LARGE = 4,  /* the file is larger than 16 MiB; of the catalogue, 128 MiB */
    TYPESLATE_NO_MEMORY = 5,
    TYPESLATE_BAD_ARGUMENT = 6
};
/* In English, within a sentence: "nothing is stored yet". Never NULL, lives as long as the process. */
TYPESLATE_API const char* typeslate_status_text(int status);

/* The version of this library, "1.0.0". */
TYPESLATE_API const char* typeslate_version(void);

/* ---- The settings ---- */

typedef struct typeslate_settings typeslate_settings;

/* Reads the current user's settings: those below $HOST_XDG_CONFIG_HOME (in a sandbox), else $XDG_CONFIG_HOME, else
 * ~/.config. NULL only when there is no memory. The status, if asked for, is TYPESLATE_OK or says why all answers are
 * those of a new list; typeslate_refresh() tries again. The caller closes the handle. */
TYPESLATE_API typeslate_settings* typeslate_open(int* status);
/* The same for the files in a folder: "com.tarnwick.typeslate.plist" and "com.tarnwick.typeslate.AdobeNames.plist". A
 * relative path is taken from the working folder of this moment. */
TYPESLATE_API typeslate_settings* typeslate_open_folder(const char* folder, int* status);
TYPESLATE_API void typeslate_close(typeslate_settings* settings);

/* Takes in what was stored since. `changed`, if asked for, becomes 1 when an answer may be another one now, else 0.
 * With nothing changed it costs two system calls. A file that cannot be read now leaves the settings as they were read
 * last; one that is gone gives those of a new list. */
TYPESLATE_API int typeslate_refresh(typeslate_settings* settings, int* changed);

/* A descriptor that poll(2) finds readable when something may have been stored: call typeslate_refresh() then, which
 * also empties it. It needs no message bus, and belongs to the handle: neither read it nor close it. -1 where the
 * system cannot watch, with the number of the error in errno; then refresh at times. */
TYPESLATE_API int typeslate_descriptor(typeslate_settings* settings);

/* 0 while the master switch is off: leave all menus alone. */
TYPESLATE_API int typeslate_is_on(const typeslate_settings* settings);

/* ---- Which entry applies ---- */

/* What is known of an application; what is not is NULL, or empty. A desktop entry has its file name without ".desktop"
 * as identifier and no creator code, its own path, and its name in the user's language. */
typedef struct typeslate_application {
    const char* identifier;
    const char* creator; /* four bytes, in the order in which the list has them */
    const char* path;    /* any bytes; of the desktop file or the .app folder, absolute */
    const char* name;
} typeslate_application;

typedef struct typeslate_entry typeslate_entry;

/* Why an entry applies. */
enum {
    TYPESLATE_BY_DEFAULT = 0, /* the list has none that does, not even Global */
    TYPESLATE_BY_GLOBAL = 1,
    TYPESLATE_BY_IDENTIFIER = 2,
    TYPESLATE_BY_CREATOR = 3,
    TYPESLATE_BY_PATH = 4,
    TYPESLATE_BY_EXPRESSION = 5
};

/* NULL only when there is no memory. A null application gives what applies to all others. The first search with
 * expressions compiles them. Whatever the list holds, this takes no more than 10 million steps of the matcher, tenths
 * of a second. The caller frees the entry. */
TYPESLATE_API typeslate_entry* typeslate_resolve(const typeslate_settings* settings,
                                                 const typeslate_application* application);
TYPESLATE_API void typeslate_entry_free(typeslate_entry* entry);

TYPESLATE_API int typeslate_entry_reason(const typeslate_entry* entry);
/* In the list, from 0; -1 by default. */
TYPESLATE_API int typeslate_entry_row(const typeslate_entry* entry);
/* What the entry is called in the list, and what it matches: an identifier, a creator code or a path (any bytes), or an
 * expression. Empty where it has none; up to its first zero byte. */
TYPESLATE_API const char* typeslate_entry_name(const typeslate_entry* entry);
TYPESLATE_API const char* typeslate_entry_data(const typeslate_entry* entry);
/* 1: arrange this application's menus as the options say. 0: leave them alone, by the master switch or by the entry's.
 */
TYPESLATE_API int typeslate_entry_applies(const typeslate_entry* entry);

/* The options. What each of them does to a menu: docs/font-menu.md. */
typedef enum typeslate_option {
    TYPESLATE_ENABLED = 0,
    TYPESLATE_CHECK_MENU_ITEMS = 1,
    TYPESLATE_SHOW_FONT_IN_FACE = 2,
    TYPESLATE_DUPE_HANDLING = 3, /* 0 every copy, 1 one copy, 2 one copy, marked */
    TYPESLATE_SHOW_SETS = 4,
    TYPESLATE_CHANGE_SIZE = 5,
    TYPESLATE_FONT_SIZE = 6, /* points, 0 to 255 */
    TYPESLATE_SHOW_ICONS = 7,
    TYPESLATE_HIERARCHICAL_MENU = 8,
    TYPESLATE_ALL_FONTS_GROUP = 9,
    TYPESLATE_SCRIPT_SORT = 10,
    TYPESLATE_INCLUDE_FAP_SETS = 11,
    TYPESLATE_INCLUDE_FEX_SETS = 12,
    TYPESLATE_INCLUDE_SUITCASE_SETS = 13,
    TYPESLATE_GENERATE_INACTIVE_PREVIEW = 14,
    TYPESLATE_MODIFY_FONT_PANEL = 15
} typeslate_option;
enum { TYPESLATE_OPTION_COUNT = 16 };

/* 0 or 1, or the number that is said above; 0 for what is no option. */
TYPESLATE_API int typeslate_entry_option(const typeslate_entry* entry, typeslate_option option);
/* The key under which it is stored, "ShowFontInFace"; NULL for what is no option. Lives as long as the process. */
TYPESLATE_API const char* typeslate_option_key(typeslate_option option);

/* ---- Expressions ---- */

typedef struct typeslate_expression typeslate_expression;

typedef struct typeslate_problem {
    int code;         /* TYPESLATE_BAD_ARGUMENT, TYPESLATE_NO_MEMORY, or the error number of PCRE2, above 100 */
    size_t position;  /* in bytes from the beginning */
    char reason[256]; /* in English, within a sentence: "missing closing parenthesis" */
} typeslate_problem;

/* An expression as entries are matched by it. NULL for one that matches nothing because it is none; the problem, if
 * asked for, is set then. The text need not end with a zero byte. The caller frees the expression. */
TYPESLATE_API typeslate_expression* typeslate_expression_new(const char* text, size_t length,
                                                             typeslate_problem* problem);
/* 1 where the subject (any bytes) holds a match, 0 where not, -1 where it was given up: it takes more steps than an
 * expression may, or more memory. For an application that is no match. */
TYPESLATE_API int typeslate_expression_matches(const typeslate_expression* expression, const char* subject,
                                               size_t length);
TYPESLATE_API void typeslate_expression_free(typeslate_expression* expression);

/* ---- The catalogue of Adobe's font names ---- */

typedef struct typeslate_font typeslate_font;

/* The record of a PostScript name; NULL when the catalogue has none, or is not there. The first call reads the
 * catalogue. The status, if asked for, tells how that went. The caller frees the font. */
TYPESLATE_API typeslate_font* typeslate_font_find(typeslate_settings* settings, const char* postscript_name,
                                                  int* status);
/* One text of the record, by its key: "FullName" (of the family), "RealFullName", "FontFilePath", ...; NULL when it has
 * none. */
TYPESLATE_API const char* typeslate_font_text(const typeslate_font* font, const char* key);
TYPESLATE_API void typeslate_font_free(typeslate_font* font);

/* ---- The font menu ---- */

/* What an item is, and how its title is drawn: in the menu's own face, in that of the font, or in the menu's with a
 * sample of the font beside it, because the font cannot write its name. */
enum { TYPESLATE_ITEM_FACE = 0, TYPESLATE_ITEM_SUBMENU = 1, TYPESLATE_ITEM_TITLE = 2, TYPESLATE_ITEM_SEPARATOR = 3 };
enum { TYPESLATE_DRAWN_PLAIN = 0, TYPESLATE_DRAWN_IN_FACE = 1, TYPESLATE_DRAWN_WITH_SAMPLE = 2 };
/* The format of a font, for an icon. */
enum {
    TYPESLATE_NO_ICON = 0,
    TYPESLATE_TRUETYPE = 1,
    TYPESLATE_OPENTYPE = 2,
    TYPESLATE_VARIABLE = 3,
    TYPESLATE_TYPE1 = 4,
    TYPESLATE_BITMAP = 5
};

/* One item. Later versions may have more members behind these. */
typedef struct typeslate_item {
    int kind;
    const char* title;  /* empty for a separator */
    const char* detail; /* what tells it from another of the same title; mostly empty */
    int is_marked;      /* it is the font in use, or leads to it */
    int is_active;      /* 0: the font is there, but kept from programs */
    int drawing;
    int size; /* points; 0: the menu's own */
    int icon;
    unsigned copies; /* more than 1: it stands for so many, and is to be marked as such */

    /* The font that it chooses; of a family's submenu the one that its title is drawn in; else empty, and 0. */
    const char *family, *style, *full_name, *postscript_name;
    const char* file; /* any bytes */
    unsigned index;   /* in the file, as FreeType takes it: the face in the lower 16 bits, the named style above */
    int weight;       /* 1 to 1000 */
    int width;        /* in per cent of the normal width */
    int slant;        /* 0: upright */

    const struct typeslate_item* const* items; /* of a submenu, item_count of them, never none */
    size_t item_count;
} typeslate_item;

typedef struct typeslate_menu {
    int is_arranged;         /* 0: the application's own menu, every face in one list, as the entry is off */
    int arranges_font_panel; /* 1: a font panel shows the same */
    size_t faces, families;  /* that are active */
    size_t lines;            /* at the top, without separators */
    const typeslate_item* const* items;
    size_t item_count;
} typeslate_menu;

/* The font menu that an entry's options make of the fonts of this system and the sets of the user's font managers, with
 * names as the catalogue has them. The current font is named by its PostScript or full name; NULL: none. Fonts that
 * have names in several languages are called by those of `language` ("de"); NULL: by their English ones. Titles that
 * are no names of fonts or sets are English.
 *
 * Lists the fonts anew, which takes fontconfig some tens of milliseconds: a program may call it on a thread of its own.
 * It loads fontconfig, GLib and FreeType, which reading settings does not need. NULL where a part is missing
 * (TYPESLATE_ABSENT) or there is no memory; the status, if asked for, says so. The caller frees the menu, and with it
 * all items and texts. */
TYPESLATE_API typeslate_menu* typeslate_menu_new(typeslate_settings* settings, const typeslate_entry* entry,
                                                 const char* current_font, const char* language, int* status);
TYPESLATE_API void typeslate_menu_free(typeslate_menu* menu);

#ifdef __cplusplus
}
#endif

#endif
