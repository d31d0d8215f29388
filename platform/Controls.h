// The interface toolkit's objects, as the pane's code sees them.
//
// The classes are complete and inert: a plain Button remembers nothing and answers with zeroes. A platform derives from
// them; an outlet that the interface file leaves unconnected points at an inert object, so code need not ask.
// Coordinates are in points, y grows upward, a frame is relative to the superview's lower left corner.
#pragma once

#include "platform/PlatformTypes.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

struct Point {
    double x = 0, y = 0;
    bool operator==(const Point&) const = default;
};
struct Size {
    double width = 0, height = 0;
    bool operator==(const Size&) const = default;
};
struct Rect {
    Point origin;
    Size size;
    bool operator==(const Rect&) const = default;
};

class Button;
class TextField;
class PopUpButton;
class TableView;
class TabView;
class Panel;
class ProgressIndicator;
class TextView;
class FontMenuView;

// The owner of an interface file: the loader hands it every named object and tells it of every action.
class InterfaceOwner {
public:
    virtual ~InterfaceOwner() = default;
    virtual void setOutlet(std::string_view name, class View& object) = 0;
    virtual void performAction(std::string_view selector, class View& sender) = 0;
};

// A sign beside a control that it is not what it might be, and what may be done about it.
struct ControlMark {
    std::string description;        // for tool tips and assistive tools
    std::string actionTitle;        // of the item in the control's own menu
    std::function<void()> perform;  // what the item does
};

class View {
public:
    View() = default;
    View(const View&) = delete;
    View& operator=(const View&) = delete;
    virtual ~View() = default;

    virtual Button* asButton() { return nullptr; }
    virtual TextField* asTextField() { return nullptr; }
    virtual PopUpButton* asPopUpButton() { return nullptr; }
    virtual TableView* asTableView() { return nullptr; }
    virtual TabView* asTabView() { return nullptr; }
    virtual Panel* asPanel() { return nullptr; }
    virtual ProgressIndicator* asProgressIndicator() { return nullptr; }
    virtual TextView* asTextView() { return nullptr; }
    virtual FontMenuView* asFontMenuView() { return nullptr; }

    virtual bool isEnabled() const { return false; }
    virtual void setEnabled(bool) {}
    virtual void setToolTip(std::string_view) {}
    virtual Rect frame() const { return {}; }
    virtual void setFrame(const Rect&) {}
    virtual bool isHidden() const { return false; }  // itself, whatever surrounds it
    virtual void setHidden(bool) {}
    // Nothing takes the sign away.
    virtual void setMark(const std::optional<ControlMark>&) {}
    virtual void setNeedsDisplay() {}  // soon
    virtual void display() {}          // at once
    // Puts the other view into this one's place in its superview; this one is on no screen afterwards. Where a layout
    // manages the superview, it also manages the other view from then on.
    virtual void replaceInSuperview(View& /*other*/) {}
    virtual void takeFocus() {}  // what is typed goes there from now on
    // The panel that this view is in; null in a window that is no panel.
    virtual Panel* panel() { return nullptr; }

    // Of controls: the tag and the values that an action reads from its sender, each 0 or empty where it has no
    // meaning.
    virtual int tag() const { return 0; }
    virtual std::string title() const { return {}; }
    virtual std::int64_t integerValue() const { return 0; }  // on/off state of a button, number in a field
    virtual int selectedRow() const { return -1; }           // of a table or a pop-up menu; -1 when none
};

// A push button or check box.
class Button : public View {
public:
    Button* asButton() override { return this; }
    virtual bool state() const { return false; }
    virtual void setState(bool) {}
    virtual void setTitle(std::string_view) {}
    virtual void setTag(int) {}
    // The owner is told of clicks from now on, in place of whoever was before. It stays the caller's; null: nobody.
    virtual void setTarget(InterfaceOwner* /*target*/, std::string_view /*selector*/) {}
};

enum class TextTone { Normal, Alert };  // Alert: red and centred

// A line or paragraph of text, editable or not.
class TextField : public View {
public:
    TextField* asTextField() override { return this; }
    virtual std::string stringValue() const { return {}; }
    virtual void setStringValue(std::string_view, TextTone = TextTone::Normal) {}
    virtual void setIntegerValue(std::int64_t) {}
    virtual bool isBeingEdited() const { return false; }  // something was typed that no action has told of yet
    virtual void setSelectable(bool) {}
    // Marks a line that cannot stay as it is and says why, in words for the user, until its text changes; empty: no
    // mark.
    virtual void setProblem(std::string_view) {}
    // The size that shows the whole text, wrapped at the width of the given bounds.
    virtual Size cellSizeForBounds(const Rect&) const { return {}; }
};

class PopUpButton : public View {
public:
    PopUpButton* asPopUpButton() override { return this; }
    virtual void selectItem(int) {}                          // an index outside the menu: no item is selected
    virtual std::string itemTitle(int) const { return {}; }  // empty outside the menu
    virtual int itemCount() const { return 0; }
    virtual int itemTag(int) const { return 0; }  // 0 outside the menu
};

// A bar, of a length that is known or moving without end.
class ProgressIndicator : public View {
public:
    ProgressIndicator* asProgressIndicator() override { return this; }
    virtual void setIndeterminate(bool) {}
    virtual void startAnimation() {}
    virtual void stopAnimation() {}
};

// A longer text inside a scroll view that shows a part of it. Its frame is that of the whole text.
class TextView : public View {
public:
    TextView* asTextView() override { return this; }
    virtual void setString(std::string_view) {}
    // Shows the text of an rtfd folder, its TXT.html. False, and the text is what it was, when that cannot be read.
    virtual bool loadRichText(std::string_view /*path*/) { return false; }
    virtual Rect enclosingScrollViewFrame() const { return {}; }
    // Brings the point, counted downward from the upper left corner of the text, to that of the visible part, or as
    // near to it as the text reaches. A user who has scrolled or selected since the text was loaded keeps what is
    // visible.
    virtual void scrollPoint(const Point&) {}
};

enum class ControlTint { Default, Clear };

class TabView : public View {
public:
    TabView* asTabView() override { return this; }
    virtual void setControlTint(ControlTint) {}
};

class Image {
public:
    virtual ~Image() = default;
};
using ImageRef = std::shared_ptr<const Image>;  // null: no image

struct AttributedLine {
    std::string text;
    bool small = false;  // small system font, grey
    bool operator==(const AttributedLine&) const = default;
};
// What a cell shows: an image, or lines of text.
struct CellValue {
    ImageRef image;
    std::vector<AttributedLine> lines;
    std::vector<std::string> marks = {};  // words about the row, at the far end of the first line
    bool isPale = false;                  // the image, of what is not in use
};

// A message between interface objects: what happened, and to which object.
struct InterfaceNotification {
    std::string_view name;
    View* object = nullptr;
};
inline constexpr std::string_view kTableViewSelectionDidChange = "NSTableViewSelectionDidChangeNotification";

// Answers a table's questions. Called only for rows that are on screen, and afresh each time one is painted.
class TableDataSource {
public:
    virtual ~TableDataSource() = default;
    virtual int numberOfRowsInTableView(TableView& table) = 0;
    virtual CellValue tableView_objectValueForTableColumn_row(TableView& table, std::string_view columnIdentifier,
                                                              int row) = 0;
    // The rows that are to be seen, in order; nothing: all. Asked once after each reload. Hiding a row changes no row's
    // number, and one that is selected by code is seen even so.
    virtual std::optional<std::vector<int>> tableView_shownRows(TableView& /*table*/) { return std::nullopt; }
    // More about the row than its cells show, a line each, for tool tips and assistive tools.
    virtual std::vector<std::string> tableView_detailsOfRow(TableView& /*table*/, int /*row*/) { return {}; }
    // Whether the double action does anything with the row.
    virtual bool tableView_opensRow(TableView& /*table*/, int /*row*/) { return true; }
    // Drops have no position: validation answers for the table as a whole, true for the copy operation.
    virtual bool tableView_validateDrop(TableView& table) = 0;
    virtual bool tableView_writeRows_toPasteboard(TableView& table, const std::vector<int>& rows) = 0;
    // Without a file there was no list of files in the drag.
    virtual bool tableView_acceptDrop(TableView& table, const std::vector<std::string>& fileNames) = 0;
};

class TableView : public View {
public:
    TableView* asTableView() override { return this; }
    virtual void setDataSource(TableDataSource*) {}  // not owned
    // Called after each change of the selection with the name "NSTableViewSelectionDidChangeNotification".
    virtual void setSelectionObserver(std::function<void(const InterfaceNotification&)>) {}
    virtual void setDoubleAction(std::string_view /*selector*/) {}
    virtual void registerForFileNameDrags() {}
    virtual void setImageColumn(std::string_view /*columnIdentifier*/) {}
    // The data source is asked again at the next numberOfRows() or when the table is next shown, never from within this
    // call.
    virtual void reloadData() {}
    virtual int numberOfRows() { return 0; }  // asks the data source after a reload
    virtual void selectRow(int) {}            // -1 clears the selection; tells the observer when the selection changes
    virtual void scrollRowToVisible(int) {}
    virtual void setPlaceholder(std::string_view) {}  // what is read where no row is to be seen
};

// A sheet: a panel attached to the pane's window, which stays unusable until the sheet has ended.
class Panel : public View {
public:
    Panel* asPanel() override { return this; }
    virtual Size contentSize() const { return {}; }
    virtual void setContentSize(const Size&) {}
    // The handler is called once, with the return code of endSheet, or 0 when the user closed the panel otherwise. The
    // panel is still on screen then.
    virtual void beginSheet(std::function<void(int returnCode)> didEnd) { (void)didEnd; }
    // The same on the window that shows the given view, whichever window this panel was made for.
    virtual void beginSheetForWindowOf(View& /*view*/, std::function<void(int returnCode)> didEnd) {
        beginSheet(std::move(didEnd));
    }
    // Shows the panel above every window and returns when stopModal was called. The handler is called when the user
    // closes the panel otherwise, and must call stopModal.
    virtual void runModal(std::function<void()> willClose) { (void)willClose; }
    virtual void stopModal() {}
    virtual bool isRunningModal() const { return false; }
    virtual void endSheet(int /*returnCode*/) {}
    virtual void orderOut() {}
};

}  // namespace platform
