// The sheet that warns before certain settings take effect, and remembers not to.
#include "pane/TSPreferencePane.h"

#include "settings/EntryList.h"

using namespace platform;

namespace {

constexpr double kTextMargin = 20;
constexpr double kButtonGap = 20;
constexpr double kCheckBoxGap = 25;
constexpr double kVerticalMargins = 60;

// Sets the height of the origin, y growing upward.
void moveTo(View& view, double y) {
    Rect frame = view.frame();
    frame.origin.y = y;
    view.setFrame(frame);
}

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
    Rect text = warningText->frame();
    text.size = warningText->cellSizeForBounds({{}, text.size});
    text.origin.y = warningSheet->contentSize().height - text.size.height - kTextMargin;
    warningText->setFrame(text);
    for (Outlet<Button>* button : {&warningOKButton, &warningCancelButton})
        moveTo(**button, text.origin.y - (kButtonGap + (*button)->frame().size.height));
    moveTo(*dontShowAgain, text.origin.y - (kCheckBoxGap + dontShowAgain->frame().size.height));
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
