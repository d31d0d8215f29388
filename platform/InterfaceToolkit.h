// Interface files, images and alerts.
//
// The toolkit is complete and inert, as the controls are: by itself it serves programs without a display.
#pragma once

#include "platform/Bundle.h"
#include "platform/Controls.h"
#include "platform/FontMenuView.h"
#include "platform/ImportSheet.h"
#include "propertylist/ASCII.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

struct OpenPanelRequest {
    std::string title;                      // of the panel
    std::string prompt;                     // of its default button
    std::string folder;                     // where it starts; "/Applications" means the installed applications
    std::vector<std::string> allowedTypes;  // file name extensions; "app" means applications of every form
    bool allowsMultipleSelection = false;
    bool canChooseFiles = true, canChooseFolders = false;
    // Whether a file is taken already: the panel says so beside it and does not offer it. Asked while the panel is
    // open, for what is in sight; null: no file is.
    std::function<bool(const std::string& path)> isTaken = {};
};

// An open panel that the user has ended.
class OpenPanel {
public:
    virtual ~OpenPanel() = default;
    virtual std::vector<std::string> filenames() const = 0;  // full paths
};

struct SavePanelRequest {
    struct FileType {
        std::string name, ending;  // "Property list", "plist"
    };
    std::string title;
    std::string name;             // proposed, without an ending
    std::vector<FileType> types;  // the first is the one that is chosen at the beginning
};

struct ChoiceRequest {
    std::string title, prompt;         // the prompt is the default button's
    std::vector<std::string> choices;  // the first is chosen at the beginning
};

// The objects of an interface file; they go with it. The owner hears of nothing afterwards.
class LoadedInterface {
public:
    virtual ~LoadedInterface() = default;
};

class InterfaceToolkit {
public:
    virtual ~InterfaceToolkit() = default;
    // Null when the file cannot be read as an image.
    virtual ImageRef imageAtPath(std::string_view /*path*/) { return nullptr; }
    // The icon under which the desktop shows a file.
    virtual ImageRef workspaceIcon(std::string_view /*path*/) { return nullptr; }
    virtual ImageRef genericApplicationIcon() { return nullptr; }
    // The host application's icon; a copy is the caller's own.
    virtual ImageRef applicationIcon() { return nullptr; }
    virtual void setApplicationIcon(const ImageRef& /*image*/) {}  // null is ignored
    // In points; {0, 0} for no image.
    virtual Size imageSize(const ImageRef& /*image*/) { return {}; }
    // A copy of the base image, with the source rectangle of another image drawn over it into the destination rectangle
    // (source-over, opaque). Rectangles are in points of their image, y growing upward; what of the source lies outside
    // its image draws nothing.
    virtual ImageRef imageByDrawing(const ImageRef& base, const ImageRef& /*image*/, const Rect& /*destination*/,
                                    const Rect& /*source*/) {
        return base;
    }
    // Modal, with the default button only.
    virtual void runAlert(std::string_view /*title*/, std::string_view /*message*/) {}
    virtual void beep() {}
    // Text as searches compare it: without case and accents. By itself it makes ASCII letters small.
    virtual std::string searchKey(std::string_view text);
    // As the user writes numbers, with marks between thousands.
    virtual std::string numberText(std::size_t number) { return std::to_string(number); }
    // Lists the fonts, beside what else is done, but not before the window has been painted. The handler is called
    // later on the main thread; where fonts cannot be listed, never.
    virtual void listFonts(std::function<void(ListedFonts fonts)> /*handler*/) {}
    // What the user has copied, in one form of our own; empty when there is nothing of that form. Setting replaces all
    // that was copied before.
    virtual std::string clipboard(std::string_view /*mediaType*/) { return {}; }
    virtual void setClipboard(std::string_view /*mediaType*/, std::string_view /*content*/) {}
    // The modifier keys held now, each a bit of a keyboard event's mask: kLeftOption, kRightOption.
    virtual std::uint32_t currentKeyModifiers() { return 0; }
    static constexpr std::uint32_t kLeftOption = 0x0800;   // Alt
    static constexpr std::uint32_t kRightOption = 0x4000;  // Alt Gr
    // Loads the interface file of this name from the bundle's resources and hands its objects to the owner, which must
    // outlive the result. Null when there is no such file or it cannot be read.
    virtual std::unique_ptr<LoadedInterface> loadInterface(const Bundle& /*bundle*/, std::string_view /*nibName*/,
                                                           InterfaceOwner& /*owner*/) {
        return nullptr;
    }
    // A file chooser as a sheet on the pane's window: that of applications where the type "app" is allowed, else of any
    // files of those types. The handler is called once, with return code 1 for the default button and 0 for anything
    // else; the panel lives during that call.
    virtual void beginOpenPanel(const OpenPanelRequest& /*request*/,
                                std::function<void(OpenPanel& panel, int returnCode)> /*didEnd*/) {}
    // Sheets on the pane's window, too; each handler is called once. A file to write, with the ending of a type that
    // the user has chosen or written himself, after he has agreed to lose what is there; empty when he cancelled.
    virtual void beginSavePanel(const SavePanelRequest& /*request*/,
                                std::function<void(const std::string& path)> /*didEnd*/) {}
    // One of several; -1 when the user cancelled.
    virtual void beginChoice(const ChoiceRequest& /*request*/, std::function<void(int choice)> /*didEnd*/) {}
    // What an import would do, with mine kept in every conflict at the beginning; nothing when the user cancelled.
    // NOLINTNEXTLINE(performance-unnecessary-value-param): for the implementation to keep
    virtual void beginImportSheet(ImportRequest /*request*/,
                                  std::function<void(const std::optional<ImportAnswer>& answer)> /*didEnd*/) {}
    // The shared font panel in front, at the pane with the given tag where it has several.
    virtual void showFontPanel(int /*paneTag*/) {}
    // With the user's default application; nothing is reported. Where the address cannot be reached from here, or
    // nothing opens it, its copy is shown instead: the path of a rich text (TextView::loadRichText) that says the same;
    // empty when there is none.
    virtual void openURL(std::string_view /*url*/, std::string_view /*copy*/) {}
    virtual void openFile(std::string_view /*path*/) {}
};

inline std::string InterfaceToolkit::searchKey(std::string_view text) {
    std::string key(text);
    for (char& c : key) c = propertylist::lowerASCII(c);
    return key;
}

}  // namespace platform
