// Images, icons, alerts and choosers, for the main thread.
//
// An image is read once and kept for the life of the toolkit, until its file's date changes, so that a table may ask
// for it each time it paints a cell.
#pragma once

#include "platform/InterfaceToolkit.h"
#include "qt/images/QtImage.h"
#include "qt/sheets/ApplicationChooser.h"

#include <QDateTime>
#include <QHash>
#include <QPointer>
#include <QWidget>

namespace qt {

class QtToolkit final : public platform::InterfaceToolkit {
public:
    // Gives the icon's name in the theme, or the absolute path of an image, of the application that a file stands for;
    // empty when it stands for none.
    using IconNameFinder = std::function<std::string(std::string_view path)>;

    explicit QtToolkit(IconNameFinder iconName) : iconName_(std::move(iconName)) {}
    // Alerts, choosers and the font panel stand on this window, which may go before this object. Null: on none.
    void setWindow(QWidget* window) { window_ = window; }
    // The toolkit's own dialogs speak with this bundle's localised strings. It outlives them; null: in English.
    void setTexts(const platform::Bundle* texts) { texts_ = texts; }

    platform::ImageRef imageAtPath(std::string_view path) override;
    platform::ImageRef workspaceIcon(std::string_view path) override;
    platform::ImageRef genericApplicationIcon() override;
    platform::ImageRef applicationIcon() override;
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
    void showFontPanel(int paneTag) override;
    void openURL(std::string_view url) override;
    void openFile(std::string_view path) override;
    // What the chooser of applications offers; without it the chooser shows files only.
    using ApplicationLister = std::function<std::vector<ChoosableApplication>()>;
    void setApplicationLister(ApplicationLister lister) { listApplications_ = std::move(lister); }

private:
    struct Kept {
        QDateTime modified;
        platform::ImageRef image;
    };
    using Cache = QHash<QString, Kept>;
    template <typename Make>
    static platform::ImageRef kept(Cache& cache, const QString& path, Make make);

    IconNameFinder iconName_;
    ApplicationLister listApplications_;
    const platform::Bundle* texts_ = nullptr;
    QPointer<QWidget> window_;
    Cache images_, workspaceIcons_;
    platform::ImageRef genericIcon_;
};

}  // namespace qt
