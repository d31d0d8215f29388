#include "pane/EntryRows.h"

#include "settings/EntryList.h"

#include <algorithm>
#include <cstring>
#include <memory>

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

EntryRows::Found EntryRows::find(const PropertyList& entry) const {
    Found row{entry, textUnder(entry, kPathKey), textUnder(entry, kNameKey).value_or("")};
    if (std::optional<std::string> found = findApplication(entry)) {
        const std::unique_ptr<CVAlias> alias = aliases_ ? aliases_->aliasWithPath(*found) : nullptr;
        row.path = alias ? alias->path() : *found;
        if (alias) row.name = alias->displayName();
    }
    const bool isApplication = !hasType(entry, kGlobalType) && !hasType(entry, kRegExType);
    row.isThere = row.path && platform_.files.fileExists(*row.path);
    row.isMissing = isApplication && !row.isThere;
    return row;
}

std::string EntryRows::secondLine(const Found& row) const {
    const PropertyList& entry = row.entry;
    if (hasType(entry, kRegExType)) {
        std::string kind = kinds_.itemTitle(menuItem(entry[kRegExTypeKey].integerValue()));
        return formatted("%@: %@", {kind, entry[kDataKey].stringValue()});
    }
    if (row.isThere) return *row.path;
    const Bundle& pane = platform_.paneBundle;
    return hasType(entry, kGlobalType) ? pane.localizedString("Global Setting")
                                       : pane.localizedString("<<Not Found On Computer>>");
}

std::vector<AttributedLine> EntryRows::lines(const Found& row) const {
    return {{row.name, false}, {secondLine(row), true}};
}

std::vector<std::string> EntryRows::details(const Found& row) const {
    if (hasType(row.entry, kGlobalType) || hasType(row.entry, kRegExType)) return {};
    std::string identifier(bytesKept(row.entry[hasType(row.entry, kIdentifierType) ? kDataKey : kIdentifierKey]));
    if (identifier.empty() && row.isThere) identifier = platform_.applications.bundleIdentifier(*row.path).value_or("");
    std::vector<std::string> details;
    if (!identifier.empty())
        details.push_back(formatted(platform_.paneBundle.localizedString("Identifier: %@"), {identifier}));
    if (!row.isThere && row.path)
        details.push_back(formatted(platform_.paneBundle.localizedString("Path: %@"), {*row.path}));
    return details;
}

ImageRef EntryRows::icon(const Found& row) const {
    if (hasType(row.entry, kGlobalType))
        return paneImage(platform_, platform_.paneBundle.infoValue("CFBundleIconFile").stringValue());
    if (hasType(row.entry, kRegExType)) return paneImage(platform_, "can.icns");
    return row.isThere ? platform_.toolkit.workspaceIcon(*row.path) : platform_.toolkit.genericApplicationIcon();
}

ImageRef paneImage(const Platform& platform, std::string_view file) {
    file = file.substr(file.rfind('/') + 1);
    std::size_t dot = std::min(file.rfind('.'), file.size());
    std::string_view extension = file.substr(std::min(dot + 1, file.size()));
    auto path = platform.paneBundle.resourcePath(file.substr(0, dot), extension);
    return path ? platform.toolkit.imageAtPath(*path) : nullptr;
}
