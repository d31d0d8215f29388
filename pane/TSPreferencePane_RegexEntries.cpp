// The sheet for entries that match applications by a regular expression, and three small actions beside it.
#include "pane/TSPreferencePane.h"

#include "pane/SheetLayout.h"
#include "settings/EntryList.h"

#include <algorithm>

using namespace platform;
using namespace settings;

namespace {

constexpr int kSheetOK = 1;
// Points.
constexpr double kGap = 20;
constexpr double kExtraGrowth = 10;
constexpr std::uint32_t kLastSystemWithoutFontBook = 0x102F;  // before 10.3, in binary-coded decimals
constexpr const char* kFontBookIdentifier = "com.apple.FontBook";
constexpr int kCollectionsPane = 2;  // of the font panel
constexpr std::string_view kHelpPage = "https://" TYPESLATE_HELP_HOST "/goto/regexp/";

// Keys of the context that goes through the sheet.
constexpr std::string_view kNewRegEx = "NewRegEx";
constexpr std::string_view kSelectedRow = "selectedRow";

}  // namespace

void TSPreferencePane::regexNew(View& sender) {
    int row = exTableView->selectedRow();
    bool isNew = regexAdd.is(&sender);
    PropertyList shown = entryAtRow(row);
    if (!isNew && !tableView_opensRow(*exTableView, row)) return;

    MutableDictionary context;
    if (isNew) context.set(kNewRegEx, true);
    context.set(kSelectedRow, row);
    context.set(kSettingsKey, regexWorkingEntry(isNew ? PropertyList() : shown, isNew));
    regexText->setStringValue(formatted(localized("RegEx Help"), {thisBundle.infoValue("CFBundleName")}));
    regexText->setSelectable(true);
    // The second pass settles the positions after the sheet has changed its size.
    layOutRegexSheet();
    layOutRegexSheet();
    isEditingRegex = true;
    expressionPreview.start();
    EntryIdentity target(shown, static_cast<std::size_t>(std::max(row, 0)));
    regexPanel->beginSheet([this, target, info = std::move(context).freeze()](int returnCode) {
        regexWasEdited_returnCode_contextInfo(*regexPanel, returnCode, info, target);
    });
}

// The entry under edit as the sheet starts with it, and its name in the sheet's field.
PropertyList TSPreferencePane::regexWorkingEntry(const PropertyList& entry, bool isNew) {
    MutableDictionary working(entry);
    PropertyList entrySettings = isNew ? getDefaultSettingsBasedOnGlobal() : entry[kSettingsKey];
    if (PropertyList like = std::exchange(settingsOfNew, {}); isNew && like) entrySettings = like;
    std::string fieldName = regexName->stringValue();
    if (!fieldName.empty() && !isNew) {
        working.set(kNameKey, fieldName);
    } else {
        if (isNew || !entry[kNameKey]) working.set(kNameKey, "New Regular Expression");
        regexName->setStringValue(working[kNameKey].stringValue());
    }
    working.set(kTypeKey, kRegExType);
    // A stored name that is empty leaves the field empty. The expression then starts empty, too, though the entry has
    // one: it takes the text of the name.
    if (regexName->stringValue().empty())
        regex->setStringValue(working[kDataKey] ? working[kNameKey].stringValue() : "");
    working.set(kSettingsKey, entrySettings);
    return std::move(working).freeze();
}

void TSPreferencePane::layOutRegexSheet() {
    fitToText(*regexText, regex->frame().origin.y - kGap);
    for (Outlet<Button>* button : {&regexSheetOK, &regexCancel, &regexHelp})
        moveUpperEdge(**button, regexText->frame().origin.y - kGap);
    double below = -regexSheetOK->frame().origin.y;
    double growth = below > 0 ? kExtraGrowth + below : 0;
    regexPanel->setContentSize({regexPanel->frame().size.width, regexPanel->contentSize().height + growth});
}

void TSPreferencePane::regexEnd(View& sender) {
    bool isIncomplete = regexName->stringValue().empty() || regex->stringValue().empty();
    if (sender.tag() != 0 && isIncomplete) return refuseEmptyRegexField();
    regexPanel->endSheet(sender.tag());
}

// Marked first: a screen reader says what is wrong with a field as the focus comes to it.
void TSPreferencePane::refuseEmptyRegexField() {
    platform_.toolkit.beep();
    bool isNameless = regexName->stringValue().empty();
    Outlet<TextField>& field = isNameless ? regexName : regex;
    field->setProblem(isNameless ? localized("Please fill in the name") : localized("Please fill in the expression"));
    field->takeFocus();
}

void TSPreferencePane::regexWasEdited_returnCode_contextInfo(Panel& sheet, int returnCode, const PropertyList& context,
                                                             const EntryIdentity& target) {
    isEditingRegex = false;
    expressionPreview.end();
    if (returnCode == kSheetOK)
        storeRegex(context, target);
    else
        showRegexFields(entryAtRow(exTableView->selectedRow()));  // nothing of what was typed comes up again
    sheet.orderOut();
    sheetEnded();
}

void TSPreferencePane::storeRegex(const PropertyList& context, const EntryIdentity& target) {
    MutableDictionary edited(context[kSettingsKey]);
    if (std::string name = regexName->stringValue(); !name.empty()) edited.set(kNameKey, name);
    if (std::string expression = regex->stringValue(); !expression.empty()) edited.set(kDataKey, expression);
    // Without a choice the number that the menu has no item for stays.
    if (int kind = regexType->selectedRow(); kind >= 0 || !edited[kRegExTypeKey])
        edited.set(kRegExTypeKey, std::max(kind, 0));
    PropertyList entry = std::move(edited).freeze();

    auto showRow = [this](int row) {
        exTableView->reloadData();
        exTableView->selectRow(row < 0 ? std::max(exTableView->numberOfRows() - 1, 0) : row);
        tableViewSelectionDidChange({kTableViewSelectionDidChange, &*exTableView});
        exTableView->scrollRowToVisible(exTableView->selectedRow());
    };
    if (context[kNewRegEx].boolValue()) {
        commit([entry](List& list) { list.push_back(entry); }, [&] { showRow(-1); });
        return;
    }
    // What others changed in the entry meanwhile, such as its options, stays.
    auto layOver = [entry](List& list, std::size_t row) {
        MutableDictionary changed(list[row]);
        for (std::string_view key : {kTypeKey, kNameKey, kDataKey, kRegExTypeKey}) changed.set(key, entry[key]);
        list[row] = std::move(changed).freeze();
    };
    commitEntry(target, layOver, [&](std::size_t row) { showRow(static_cast<int>(row)); });
}

void TSPreferencePane::editCollections(View&) {
    std::optional<std::uint32_t> version = platform_.system.gestalt(fourCharCode("sysv"));
    if (version.value_or(0) <= kLastSystemWithoutFontBook) return platform_.toolkit.showFontPanel(kCollectionsPane);
    auto fontBook = platform_.applications.findApplication({std::nullopt, kFontBookIdentifier, ""});
    if (!fontBook || platform_.applications.openApplication(*fontBook) != kNoErr) platform_.host.fontManagerIsMissing();
}

void TSPreferencePane::doRegExHelp(View&) {
    platform_.toolkit.openURL(kHelpPage, thisBundle.resourcePath("RegEx Help", "rtfd").value_or(""));
}

void TSPreferencePane::doMore(View&) {
    if (auto path = thisBundle.resourcePath("Typeslate ReadMe", "rtfd")) platform_.toolkit.openFile(*path);
}
