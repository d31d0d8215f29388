#include "pane/EntryRows.h"

#include "settings/EntryList.h"

#include <algorithm>
#include <cstring>

using namespace platform;
using namespace settings;

namespace {

std::optional<std::string> textUnder(const PropertyList& entry, std::string_view key) {
    const PropertyList& value = entry[key];
    if (!value.isString() && !value.isData()) return std::nullopt;
    return std::string(bytesKept(value));
}

// What is kept of a creator holds the code's bytes as they lie in memory.
FourCharCode creatorCode(std::string_view text) {
    FourCharCode code = 0;
    std::memcpy(&code, text.data(), std::min(text.size(), sizeof code));
    return code;
}

}  // namespace

std::optional<std::string> EntryRows::findApplication(const PropertyList& entry) const {
    ApplicationQuery query;
    if (hasType(entry, kIdentifierType))
        query.identifier = bytesKept(entry[kDataKey]);
    else if (hasType(entry, kCreatorType))
        query.creator = creatorCode(bytesKept(entry[kDataKey]));
    else
        return std::nullopt;
    return platform_.applications.findApplication(query);
}

std::optional<std::string> EntryRows::path(const PropertyList& entry) const {
    std::optional<std::string> found = findApplication(entry);
    if (!found) return textUnder(entry, kPathKey);
    return aliases_ ? aliases_->aliasWithPath(*found)->path() : *found;
}

std::optional<std::string> EntryRows::existingPath(const PropertyList& entry) const {
    std::optional<std::string> place = path(entry);
    return place && platform_.files.fileExists(*place) ? place : std::nullopt;
}

std::string EntryRows::name(const PropertyList& entry) const {
    std::optional<std::string> found = findApplication(entry);
    if (found && aliases_) return aliases_->aliasWithPath(*found)->displayName();
    return textUnder(entry, kNameKey).value_or("");
}

std::string EntryRows::secondLine(const PropertyList& entry) const {
    if (hasType(entry, kRegExType)) {
        std::string kind = kinds_.itemTitle(menuItem(entry[kRegExTypeKey].integerValue()));
        return formatted("%@: %@", {kind, entry[kDataKey].stringValue()});
    }
    if (std::optional<std::string> place = existingPath(entry)) return *place;
    const Bundle& pane = platform_.paneBundle;
    return hasType(entry, kGlobalType) ? pane.localizedString("Global Setting")
                                       : pane.localizedString("<<Not Found On Computer>>");
}

bool EntryRows::isMissing(const PropertyList& entry) const {
    return !hasType(entry, kGlobalType) && !hasType(entry, kRegExType) && !existingPath(entry);
}

std::vector<AttributedLine> EntryRows::lines(const PropertyList& entry) const {
    return {{name(entry), false}, {secondLine(entry), true}};
}

ImageRef EntryRows::icon(const PropertyList& entry) const {
    if (hasType(entry, kGlobalType))
        return paneImage(platform_, platform_.paneBundle.infoValue("CFBundleIconFile").stringValue());
    if (hasType(entry, kRegExType)) return paneImage(platform_, "can.icns");
    std::optional<std::string> place = existingPath(entry);
    return place ? platform_.toolkit.workspaceIcon(*place) : platform_.toolkit.genericApplicationIcon();
}

ImageRef paneImage(const Platform& platform, std::string_view file) {
    file = file.substr(file.rfind('/') + 1);
    std::size_t dot = std::min(file.rfind('.'), file.size());
    std::string_view extension = file.substr(std::min(dot + 1, file.size()));
    auto path = platform.paneBundle.resourcePath(file.substr(0, dot), extension);
    return path ? platform.toolkit.imageAtPath(*path) : nullptr;
}
