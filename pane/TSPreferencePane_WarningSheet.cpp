// The sheet that warns before certain settings take effect, and remembers when the user wants no more warnings.
#include "pane/TSPreferencePane.h"

#include "pane/SheetLayout.h"
#include "settings/EntryList.h"

using namespace platform;

namespace {

// Points.
constexpr double kTextMargin = 20;
constexpr double kButtonGap = 20;
constexpr double kCheckBoxGap = 25;
constexpr double kVerticalMargins = 60;

}  // namespace

void TSPreferencePane::showWarningSheetForString_key(std::string_view message, std::string_view key) {
    justShowedSheet = true;
    warningText->setStringValue(message);
    // The second pass settles the sizes that depend on the first.
    layOutWarningSheet();
    layOutWarningSheet();
    warningSheet->beginSheet([this, key = std::string(key)](int returnCode) {
        warningDidEnd_returnCode_contextInfo(*warningSheet, returnCode, key);
    });
}

void TSPreferencePane::layOutWarningSheet() {
    fitToText(*warningText, warningSheet->contentSize().height - kTextMargin);
    Rect text = warningText->frame();
    moveUpperEdge(*warningOKButton, text.origin.y - kButtonGap);
    moveUpperEdge(*warningCancelButton, text.origin.y - kButtonGap);
    moveUpperEdge(*dontShowAgain, text.origin.y - kCheckBoxGap);
    warningSheet->setContentSize(
        {warningSheet->frame().size.width, text.size.height + warningOKButton->frame().size.height + kVerticalMargins});
}

void TSPreferencePane::warningEnd(View& button) { warningSheet->endSheet(button.tag()); }

void TSPreferencePane::warningDidEnd_returnCode_contextInfo(Panel& sheet, int returnCode, const std::string& key) {
    sheet.orderOut();
    if (key == settings::kLogStuffKey) {
        logStuff->setState(returnCode != 0);
        toggleLogging(*logStuff);
    } else {
        platform_.log("Warning for %@ is not implemented yet.", key);
    }
    prefs->setBool_forKey(dontShowAgain->state(), formatted("Don't Show %@ Sheet", {key}));
}
