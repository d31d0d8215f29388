// The C interface: objects behind pointers, and nothing thrown across it.
#include "reader/Objects.h"

#include "linux/files/Paths.h"
#include "settings/EntryList.h"
#include "settings/SettingsSchema.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <map>
#include <memory>

using namespace reader;
using platform::PropertyList;

namespace {

constexpr const char* kSettingsFile = "com.tarnwick.typeslate.plist";
constexpr const char* kCatalogueFile = "com.tarnwick.typeslate.AdobeNames.plist";

// Flatpak's sandbox has a configuration folder of its own, and the host's in a variable.
std::string preferencesFolder() {
    std::string folder = linux::absolutePathIn("HOST_XDG_CONFIG_HOME");
    return linux::joined(folder.empty() ? linux::configurationFolder() : folder, "preferences");
}

std::string absolute(std::string folder) {
    if (folder.starts_with('/')) return folder;
    std::unique_ptr<char, decltype(&std::free)> here(::getcwd(nullptr, 0), std::free);
    return here ? linux::joined(here.get(), folder) : folder;
}

}  // namespace

struct typeslate_font {
    std::map<std::string, std::string, std::less<>> texts;
};

struct typeslate_expression {
    Expression expression;
};

typeslate_settings::typeslate_settings(const std::string& folder)
    : settings(linux::joined(folder, kSettingsFile), kLargestSettings),
      catalogue(linux::joined(folder, kCatalogueFile), kLargestCatalogue) {}

// What happens after the watch is looked at shows at the next look.
int typeslate_settings::refresh(bool& hasChanged) {
    watch.takeIn();
    int status = settings.refresh();
    if (catalogueStatus) catalogueStatus = catalogue.refresh();
    std::shared_ptr<const Rules> newRules = currentRules();
    bool areOthers = settings.values() != newRules->domain();
    if (areOthers) newRules = std::make_shared<Rules>(settings.values());
    PropertyList newNames = catalogue.values()["AllNames"];
    std::scoped_lock lock(current);
    hasChanged = areOthers || newNames != names;
    rules = std::move(newRules);
    names = std::move(newNames);
    return status;
}

int typeslate_settings::readCatalogue() {
    std::scoped_lock lock(reading);
    if (!catalogueStatus) {
        catalogueStatus = catalogue.refresh();
        std::scoped_lock changing(current);
        names = catalogue.values()["AllNames"];
    }
    return *catalogueStatus;
}

const char* typeslate_status_text(int status) { return statusText(status); }

const char* typeslate_version(void) { return TYPESLATE_VERSION; }

typeslate_settings* typeslate_open(int* status) {
    return guarded<typeslate_settings*>(nullptr,
                                        [&] { return typeslate_open_folder(preferencesFolder().c_str(), status); });
}

typeslate_settings* typeslate_open_folder(const char* folder, int* status) {
    report(status, TYPESLATE_NO_MEMORY);
    return guarded<typeslate_settings*>(nullptr, [&] {
        auto opened = std::make_unique<typeslate_settings>(absolute(std::string(textOf(folder))));
        report(status, typeslate_refresh(opened.get(), nullptr));
        return opened.release();
    });
}

void typeslate_close(typeslate_settings* settings) { delete settings; }

int typeslate_refresh(typeslate_settings* settings, int* changed) {
    report(changed, 0);
    if (!settings) return TYPESLATE_BAD_ARGUMENT;
    return guarded(+TYPESLATE_NO_MEMORY, [&] {
        std::scoped_lock lock(settings->reading);
        bool hasChanged = false;
        int status = settings->refresh(hasChanged);
        report(changed, hasChanged);
        return status;
    });
}

int typeslate_descriptor(typeslate_settings* settings) {
    if (!settings) {
        errno = EINVAL;
        return -1;
    }
    return guarded(-1, [&] {
        std::scoped_lock lock(settings->reading);
        if (settings->watch.descriptor() < 0) {
            if (int error = settings->watch.start({settings->settings.path(), settings->catalogue.path()})) {
                errno = error;
                return -1;
            }
            bool ignored = false;
            (void)settings->refresh(ignored);
        }
        return settings->watch.descriptor();
    });
}

int typeslate_is_on(const typeslate_settings* settings) { return settings && settings->currentRules()->isOn(); }

typeslate_entry* typeslate_resolve(const typeslate_settings* settings, const typeslate_application* application) {
    if (!settings) return nullptr;
    return guarded<typeslate_entry*>(nullptr, [&] {
        Application known;
        if (application)
            known = {textOf(application->identifier), textOf(application->creator), textOf(application->path),
                     textOf(application->name)};
        std::shared_ptr<const Rules> rules = settings->currentRules();
        auto entry = std::make_unique<typeslate_entry>(typeslate_entry{rules->resolve(known), rules->isOn(), {}, {}});
        const PropertyList& stored = entry->resolution.entry;
        entry->name = stored[settings::kNameKey].stringValue();
        entry->data = settings::bytesKept(stored[settings::kDataKey]);
        return entry.release();
    });
}

void typeslate_entry_free(typeslate_entry* entry) { delete entry; }

int typeslate_entry_reason(const typeslate_entry* entry) {
    return entry ? static_cast<int>(entry->resolution.reason) : +TYPESLATE_BY_DEFAULT;
}

int typeslate_entry_row(const typeslate_entry* entry) { return entry ? entry->resolution.row : -1; }

const char* typeslate_entry_name(const typeslate_entry* entry) { return entry ? entry->name.c_str() : nullptr; }

const char* typeslate_entry_data(const typeslate_entry* entry) { return entry ? entry->data.c_str() : nullptr; }

int typeslate_entry_applies(const typeslate_entry* entry) {
    return entry && entry->isOn && typeslate_entry_option(entry, TYPESLATE_ENABLED);
}

int typeslate_entry_option(const typeslate_entry* entry, typeslate_option option) {
    return entry ? optionValue(entry->resolution.entry, static_cast<std::size_t>(option)) : 0;
}

// Keys are literals, which end with a zero byte.
const char* typeslate_option_key(typeslate_option option) {
    auto number = static_cast<std::size_t>(option);
    return number < settings::options().size() ? settings::options()[number].key.data() : nullptr;
}

typeslate_expression* typeslate_expression_new(const char* expression, size_t length, typeslate_problem* problem) {
    auto tell = [&](int code, std::size_t position, std::string_view reason) {
        if (!problem) return;
        *problem = {.code = code, .position = position, .reason = {}};
        reason.copy(problem->reason, sizeof problem->reason - 1);
    };
    tell(TYPESLATE_NO_MEMORY, 0, typeslate_status_text(TYPESLATE_NO_MEMORY));
    return guarded<typeslate_expression*>(nullptr, [&]() -> typeslate_expression* {
        ExpressionProblem found;
        Expression compiled(expression ? std::string_view(expression, length) : std::string_view(), found);
        tell(found.code, found.position, found.reason);
        return compiled ? new typeslate_expression{std::move(compiled)} : nullptr;
    });
}

int typeslate_expression_matches(const typeslate_expression* expression, const char* subject, size_t length) {
    if (!expression || !subject) return 0;
    return guarded(-1, [&] {
        Matching matching;
        switch (expression->expression.search({subject, length}, matching)) {
            case Expression::Answer::Yes:
                return 1;
            case Expression::Answer::No:
                return 0;
            case Expression::Answer::GivenUp:
                return -1;
        }
        return 0;
    });
}

void typeslate_expression_free(typeslate_expression* expression) { delete expression; }

typeslate_font* typeslate_font_find(typeslate_settings* settings, const char* postscript_name, int* status) {
    report(status, TYPESLATE_BAD_ARGUMENT);
    if (!settings || !postscript_name) return nullptr;
    report(status, TYPESLATE_NO_MEMORY);
    return guarded<typeslate_font*>(nullptr, [&]() -> typeslate_font* {
        report(status, settings->readCatalogue());
        PropertyList record = settings->currentNames()[postscript_name];
        if (!record.isDictionary()) return nullptr;
        auto font = std::make_unique<typeslate_font>();
        for (const auto& [key, value] : record.entries())
            if (value.isString()) font->texts.emplace(key.stringValue(), value.stringValue());
        return font.release();
    });
}

const char* typeslate_font_text(const typeslate_font* font, const char* key) {
    if (!font || !key) return nullptr;
    auto found = font->texts.find(std::string_view(key));
    return found == font->texts.end() ? nullptr : found->second.c_str();
}

void typeslate_font_free(typeslate_font* font) { delete font; }
