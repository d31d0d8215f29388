// What the toolkit asks of the desktop around it: choosers, other applications, the font panel, the keys
// that are held.
#include "platform/Log.h"
#include "qt/DesktopOpener.h"
#include "qt/QtToolkit.h"
#include "qt/sheets/DocumentWindow.h"
#include "qt/sheets/FilePanels.h"
#include "qt/sheets/ImportSheet.h"
#include "qt/texts/Utf8.h"

#include <QApplication>
#include <QClipboard>
#include <QFontDialog>
#include <QMimeData>
#include <QUrl>

#include <algorithm>

namespace qt {

using namespace platform;

namespace {

struct ChosenFiles final : OpenPanel {
    explicit ChosenFiles(std::vector<std::string> files) : files_(std::move(files)) {}
    std::vector<std::string> filenames() const override { return files_; }

private:
    std::vector<std::string> files_;
};

}  // namespace

std::string QtToolkit::clipboard(std::string_view mediaType) {
    const QMimeData* copied = QApplication::clipboard()->mimeData();
    return copied ? copied->data(toQString(mediaType)).toStdString() : std::string();
}

void QtToolkit::setClipboard(std::string_view mediaType, std::string_view content) {
    auto* copied = new QMimeData;
    copied->setData(toQString(mediaType), QByteArray(content.data(), static_cast<qsizetype>(content.size())));
    QApplication::clipboard()->setMimeData(copied);
}

void QtToolkit::beginOpenPanel(const OpenPanelRequest& request,
                               std::function<void(OpenPanel& panel, int returnCode)> didEnd) {
    auto end = [didEnd = std::move(didEnd)](std::vector<std::string> paths) {
        int returnCode = paths.empty() ? 0 : 1;
        ChosenFiles panel(std::move(paths));
        didEnd(panel, returnCode);
    };
    if (std::ranges::find(request.allowedTypes, "app") == request.allowedTypes.end())
        return openFilePanel(window_, request, texts_, std::move(end));
    auto iconOf = [this](const std::string& path) { return QtImage::of(workspaceIcon(path))->icon(); };
    openApplicationChooser(window_, request,
                           listApplications_ ? listApplications_() : std::vector<ChoosableApplication>(), iconOf,
                           texts_, std::move(end));
}

void QtToolkit::beginSavePanel(const SavePanelRequest& request, std::function<void(const std::string&)> didEnd) {
    openSavePanel(window_, request, std::move(didEnd));
}

void QtToolkit::beginChoice(const ChoiceRequest& request, std::function<void(int)> didEnd) {
    openChoice(window_, request, texts_, std::move(didEnd));
}

void QtToolkit::beginImportSheet(ImportRequest request,
                                 std::function<void(const std::optional<ImportAnswer>&)> didEnd) {
    openImportSheet(window_, std::move(request), texts_, std::move(didEnd));
}

// The toolkit's font panel has one pane only.
void QtToolkit::showFontPanel(int) {
    auto* panel = new QFontDialog(window_);
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setOption(QFontDialog::NoButtons);
    panel->show();
}

// Many keyboards have one Alt key on either side, which the window system does not tell apart: both are the left one.
std::uint32_t QtToolkit::currentKeyModifiers() {
    Qt::KeyboardModifiers held = QGuiApplication::queryKeyboardModifiers();
    return (held & Qt::AltModifier ? kLeftOption : 0) | (held & Qt::GroupSwitchModifier ? kRightOption : 0);
}

std::string QtToolkit::localized(std::string_view english) const {
    return texts_ ? texts_->localizedString(english) : std::string(english);
}

QtToolkit::~QtToolkit() {
    stopListingFonts();
    qDeleteAll(documents_);
}

void QtToolkit::openURL(std::string_view url, std::string_view copy) {
    if (reach_ && !reach_(url)) return showInstead(copy, localized("%@ cannot be reached from this computer."), url);
    handToDesktop(QUrl(toQString(url)), url, copy);
}

void QtToolkit::followLink(const QUrl& link) { openURL(link.toString(QUrl::FullyEncoded).toStdString(), {}); }

void QtToolkit::openFile(std::string_view path) {
    if (showDocument(toQString(path))) return;
    handToDesktop(QUrl::fromLocalFile(toQString(path)), path, {});
}

void QtToolkit::handToDesktop(const QUrl& address, std::string_view what, std::string_view copy) {
    openWithDesktop(address, openings_, [this, what = std::string(what), copy = std::string(copy)] {
        showInstead(copy, localized("Nothing was found that opens %@."), what);
    });
}

void QtToolkit::showInstead(std::string_view copy, const std::string& whyNot, std::string_view what) {
    if (!showDocument(toQString(copy))) tellFailure(formatted(whyNot, {std::string(what)}));
}

bool QtToolkit::showDocument(const QString& folder) {
    if (folder.isEmpty()) return false;
    QPointer<DocumentWindow>& window = documents_[folder];
    if (!window) {
        auto opened = std::make_unique<DocumentWindow>(toQString(localized("Close this message")),
                                                       [this](const QUrl& link) { followLink(link); });
        if (!opened->load(folder)) return false;
        window = opened.release();
    }
    window->show();
    window->raise();
    window->activateWindow();
    return true;
}

void QtToolkit::tellFailure(const std::string& text) {
    if (auto* document = dynamic_cast<DocumentWindow*>(QApplication::activeWindow()))
        document->say(toQString(text));
    else if (tellFailure_)
        tellFailure_(text);
}

}  // namespace qt
