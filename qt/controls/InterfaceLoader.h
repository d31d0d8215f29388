// Loads interface files made with Qt Designer and connects them to their owner.
//
// A widget's object name is its outlet. Its dynamic properties: "action" (a selector, performed on the user's own
// changes and never on those of the code), "tag" (a number), "sheet" (true: a child of the root that becomes a panel,
// hidden until it is begun), "image" and "imageExtent" (of a label: the resource that it shows, and its size in
// points), "hideWhenEmpty" (of a label), "fontScale" (makes the font bold and this much larger), "columnIdentifiers",
// "columnTitles", "removeButton" and "openTitle" (of a table, see QtTableView.h), "itemTags" (of a menu: the numbers of
// its items), "searches" (of a line of text: the name of the
// list that is searched by it; the action is performed at each change, see SearchField.h).
//
// An action that the root has is an outlet and performs its selector too; it may be an item of a tool button's or a
// table's menu. Its keys serve the whole page (PageKeys.h).
//
// The texts in the file are English, and keys of the bundle's localised strings, mnemonics included.
#pragma once

#include "platform/Bundle.h"
#include "platform/Controls.h"

#include <QPointer>
#include <QUrl>
#include <QWidget>

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace qt {

// A loaded interface file: its widgets and the objects that stand for them. Deletes both.
class Interface {
public:
    ~Interface();
    Interface(const Interface&) = delete;

    QWidget* root() const { return root_; }
    platform::View* view(const std::string& name) const;  // null when there is none of that name
    // Links in its texts are handed to this function instead of being opened.
    void followLinks(const std::function<void(const QUrl& link)>& follow);
    // The owner hears of nothing from now on. To be called before the owner goes.
    void disconnectOwner();

private:
    friend class InterfaceLoader;
    Interface() = default;

    QPointer<QWidget> root_;
    std::map<std::string, std::unique_ptr<platform::View>> views_;
    std::unique_ptr<QObject> connections_ = std::make_unique<QObject>();
};

// Null when the file is missing or is no interface file; error then says why. The owner has been handed every outlet
// when the call returns, and must stay until disconnectOwner.
std::unique_ptr<Interface> loadInterface(const std::string& path, const platform::Bundle& resources,
                                         platform::InterfaceOwner& owner, std::string& error);

}  // namespace qt
