// What the toolkit asks of the desktop around it: choosers, other applications, the font panel, the keys
// that are held.
#include "qt/QtToolkit.h"

#include "qt/texts/Utf8.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QFontDialog>
#include <QGuiApplication>
#include <QUrl>

namespace qt {

using namespace platform;

namespace {

struct ChosenFiles final : OpenPanel {
    explicit ChosenFiles(std::vector<std::string> files) : files_(std::move(files)) {}
    std::vector<std::string> filenames() const override { return files_; }

private:
    std::vector<std::string> files_;
};

// A document that is a folder is opened by its text: few applications know such folders.
QString documentFile(const QString& path) {
    QFileInfo text(QDir(path), QStringLiteral("TXT.rtf"));
    return text.exists() ? text.filePath() : path;
}

}  // namespace

void QtToolkit::beginOpenPanel(const OpenPanelRequest& request,
                               std::function<void(OpenPanel& panel, int returnCode)> didEnd) {
    auto iconOf = [this](const std::string& path) { return QtImage::of(workspaceIcon(path))->icon(); };
    openApplicationChooser(window_, request,
                           listApplications_ ? listApplications_() : std::vector<ChoosableApplication>(), iconOf,
                           texts_, [didEnd = std::move(didEnd)](std::vector<std::string> paths) {
                               int returnCode = paths.empty() ? 0 : 1;
                               ChosenFiles panel(std::move(paths));
                               didEnd(panel, returnCode);
                           });
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

void QtToolkit::openURL(std::string_view url) { QDesktopServices::openUrl(QUrl(toQString(url))); }

void QtToolkit::openFile(std::string_view path) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(documentFile(toQString(path))));
}

}  // namespace qt
