// The About panel: a sheet whose text scrolls by itself, as film credits do.
#include "pane/TSPreferencePane.h"

using namespace platform;

namespace {

constexpr double kScrollInterval = 0.05;  // seconds
constexpr float kScrollStep = 1;          // points
constexpr std::uint32_t kOptionKeys = InterfaceToolkit::kLeftOption | InterfaceToolkit::kRightOption;
constexpr int kClosedByButton = 1;

// Both ends of the text lead to the other one.
float nextPosition(float position, float greatest, bool isBackward) {
    if (isBackward) return position - kScrollStep <= 0 ? greatest : position - kScrollStep;
    return position + kScrollStep >= greatest ? 0 : position + kScrollStep;
}

}  // namespace

float TSPreferencePane::sGreatestAboutPosition = 0;

void TSPreferencePane::doAbout(View&) {
    // Assistive technologies reach the button behind the sheet, too.
    if (scrollTimer) return;
    if (auto path = thisBundle.resourcePath("About", "rtfd")) aboutTextView->loadRichText(*path);
    canUnselect = UnselectReply::Later;
    aboutTextView->scrollPoint({0, 0});
    pos = 0;
    aboutPanel->beginSheet(
        [this](int returnCode) { customSheetDidEnd_returnCode_contextInfo(*aboutPanel, returnCode, nullptr); });
    scrollTimer = platform_.runLoop.scheduleTimer(kScrollInterval, true, [this] { scrollAboutText(); });
}

void TSPreferencePane::scrollAboutText() {
    if (sGreatestAboutPosition == 0)
        sGreatestAboutPosition = static_cast<float>(aboutTextView->frame().size.height -
                                                    aboutTextView->enclosingScrollViewFrame().size.height);
    bool isBackward = platform_.toolkit.currentKeyModifiers() & kOptionKeys;
    pos = nextPosition(pos, sGreatestAboutPosition, isBackward);
    aboutTextView->scrollPoint({0, pos});
}

void TSPreferencePane::ripSheet(View& sender) {
    Panel* sheet = sender.panel();
    if (!sheet) return;
    if (aboutPanel.is(sheet)) scrollTimer.reset();
    sheet->endSheet(kClosedByButton);
}

void TSPreferencePane::customSheetDidEnd_returnCode_contextInfo(Panel& sheet, int, const void*) {
    // Escape and the window's own close button end the sheet without passing through ripSheet.
    scrollTimer.reset();
    sheet.orderOut();
    sheetEnded();
}
