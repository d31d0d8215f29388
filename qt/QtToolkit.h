// Images, icons, alerts and choosers, for the main thread.
//
// An image is read once and kept for the life of the toolkit, until its file's date changes, so that a table may ask
// for it each time it paints a cell.
#pragma once

#include "platform/InterfaceToolkit.h"
#include "qt/controls/FirstPaint.h"
#include "qt/images/QtImage.h"
#include "qt/sheets/ApplicationChooser.h"
#include "qt/texts/SearchKey.h"
#include "qt/texts/Utf8.h"

#include <QDateTime>
#include <QHash>
#include <QPointer>
#include <QUrl>
#include <QWidget>

namespace qt {

class DocumentWindow;

class QtToolkit final : public platform::InterfaceToolkit {
public:
    // Gives the icon's name in the theme, or the absolute path of an image, of the application that a file stands for;
    // empty when it stands for none.
    using IconNameFinder = std::function<std::string(std::string_view path)>;

    explicit QtToolkit(IconNameFinder iconName) : iconName_(std::move(iconName)) {}
    ~QtToolkit() override;  // closes the documents that it has opened
    // Alerts, choosers and the font panel stand on this window, which may go before this object. Null: on none.
    // The host's icon is set once the window has been painted, which need not wait for it.
    void setWindow(QWidget* window);
    // The toolkit's own dialogs speak with this bundle's localised strings. It outlives them; null: in English.
    void setTexts(const platform::Bundle* texts) { texts_ = texts; }

    platform::ImageRef imageAtPath(std::string_view path) override;
    platform::ImageRef workspaceIcon(std::string_view path) override;
    platform::ImageRef genericApplicationIcon() override;
    platform::ImageRef applicationIcon() override;
    std::string searchKey(std::string_view text) override { return qt::searchKey(toQString(text)).toStdString(); }
    std::string numberText(std::size_t number) override;
    void listFonts(std::function<void(platform::ListedFonts fonts)> handler) override;
    std::string clipboard(std::string_view mediaType) override;
    void setClipboard(std::string_view mediaType, std::string_view content) override;
    void setApplicationIcon(const platform::ImageRef& image) override;
    // In points. Larger images are used at this size; drawings, which have any size, have this one.
    static constexpr int kLargestImage = 128;
    platform::Size imageSize(const platform::ImageRef& image) override;
    platform::ImageRef imageByDrawing(const platform::ImageRef& base, const platform::ImageRef& image,
                                      const platform::Rect& destination, const platform::Rect& source) override;
    void runAlert(std::string_view title, std::string_view message) override;
    void beep() override;
    std::uint32_t currentKeyModifiers() override;
    std::unique_ptr<platform::LoadedInterface> loadInterface(const platform::Bundle& bundle, std::string_view nibName,
                                                             platform::InterfaceOwner& owner) override;
    void beginOpenPanel(const platform::OpenPanelRequest& request,
                        std::function<void(platform::OpenPanel& panel, int returnCode)> didEnd) override;
    void beginSavePanel(const platform::SavePanelRequest& request,
                        std::function<void(const std::string& path)> didEnd) override;
    void beginChoice(const platform::ChoiceRequest& request, std::function<void(int choice)> didEnd) override;
    void beginImportSheet(platform::ImportRequest request,
                          std::function<void(const std::optional<platform::ImportAnswer>& answer)> didEnd) override;
    void showFontPanel(int paneTag) override;
    void openURL(std::string_view url, std::string_view copy) override;
    // A document that is a folder (TXT.html in it) is shown in a window of the toolkit's own: desktops take it for a
    // folder of the user's, whatever is installed.
    void openFile(std::string_view path) override;
    // As the user who has clicked on it wants it: in the browser.
    void followLink(const QUrl& link);
    // Says whether an address can be reached from here. Without it every one can.
    using Reach = std::function<bool(std::string_view url)>;
    void setReach(Reach reach) { reach_ = std::move(reach); }
    // What could not be opened is told here, in words for the user, unless the window that it was asked for in says so
    // itself. Null: nobody is told.
    using FailureHandler = std::function<void(const std::string& text)>;
    void setFailureHandler(FailureHandler handler) { tellFailure_ = std::move(handler); }
    // What the chooser of applications offers; without it the chooser shows files only.
    using ApplicationLister = std::function<std::vector<ChoosableApplication>()>;
    void setApplicationLister(ApplicationLister lister) { listApplications_ = std::move(lister); }
    // What lists the fonts, but for the family of the interface; without it there are none. It is called on
    // another thread and may outlive this object.
    using FontLister = std::function<platform::ListedFonts()>;
    void setFontLister(FontLister lister) { fontLister_ = std::move(lister); }

private:
    struct Kept {
        QDateTime modified;
        platform::ImageRef image;
    };
    using Cache = QHash<QString, Kept>;
    template <typename Make>
    static platform::ImageRef kept(Cache& cache, const QString& path, Make make);
    std::string localized(std::string_view english) const;
    void handToDesktop(const QUrl& address, std::string_view what, std::string_view copy);
    void showInstead(std::string_view copy, const std::string& whyNot, std::string_view what);
    bool showDocument(const QString& folder);
    void tellFailure(const std::string& text);

    void showApplicationIcon();
    void windowWasPainted();
    void stopListingFonts();

    IconNameFinder iconName_;
    ApplicationLister listApplications_;
    FontLister fontLister_;
    std::function<void()> listingDue_;  // when the window has been painted; null: none
    struct FontReceiver;
    std::shared_ptr<FontReceiver> fontReceiver_;  // of listings that are under way
    Reach reach_;
    FailureHandler tellFailure_;
    QHash<QString, QPointer<DocumentWindow>> documents_;  // by their folders
    QObject openings_;                                    // of the desktop's, that may fail yet
    const platform::Bundle* texts_ = nullptr;
    QPointer<QWidget> window_;
    Cache images_, workspaceIcons_;
    platform::ImageRef genericIcon_;
    platform::ImageRef postponedIcon_;  // of the host; null: the application has it
    std::unique_ptr<FirstPaint> firstPaint_;
};

}  // namespace qt
