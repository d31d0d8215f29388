// The line in the sheet for expressions on the cases that every reader is held against: what it says an expression
// matches is what programs do.
#include "entrylist/ExpressionPreview.h"
#include "linux/documents/LinuxDocuments.h"
#include "reader/Expressions.h"
#include "settings/EntryList.h"
#include "tests/support/Check.h"

#include <fstream>
#include <sstream>

using namespace platform;
using namespace settings;

TEST(WhatTheSheetSaysIsWhatProgramsDo) {
    std::stringstream text;
    text << std::ifstream(TEST_DATA "/cases.json").rdbuf();
    const PropertyList cases = linux::documentIn(text.str(), "cases.json").value;
    const std::unique_ptr<ExpressionServices> services = reader::expressionServices();
    int asked = 0;
    for (const PropertyList& each : cases.elements()) {
        CONTEXT(std::string(each["case"].stringValue()));
        const PropertyList &known = each["application"], &expected = each["expect"];
        const std::string_view reason = expected["reason"].stringValue();
        if (reason != "expression" && reason != "global") continue;  // who is named exactly needs no expression
        const ApplicationFacts facts[] = {{std::string(known["identifier"].stringValue()), kUnknownCreator,
                                           std::string(known["path"].stringValue()),
                                           std::string(known["name"].stringValue())}};
        std::int64_t first = -1;
        auto list = each["domain"][kEntryListKey].elements();
        for (std::size_t row = 0; row < list.size() && first < 0; ++row) {
            if (!hasType(list[row], kRegExType) || list[row][kDataKey].stringValue().empty()) continue;
            const auto matches = entrylist::matchesOf(*services, list[row][kDataKey].stringValue(),
                                                      menuItem(list[row][kRegExTypeKey].integerValue()), facts);
            if (!matches.found.empty()) first = static_cast<std::int64_t>(row);
            ++asked;
        }
        CHECK_EQ(first, reason == "expression" ? expected["row"].integerValue() : -1);
    }
    CHECK(asked > 20);
}
