// The items of a font menu for a tree view. Names are other people's: they are shown in one line, shortened, and run as
// their letters do.
#pragma once

#include "platform/Bundle.h"
#include "platform/FontMenuView.h"

#include <QAbstractItemModel>
#include <QStringList>

namespace qt {

class FontMenuModel final : public QAbstractItemModel {
public:
    // The texts outlive it.
    FontMenuModel(const platform::Bundle& texts, QObject* parent) : QAbstractItemModel(parent), texts_(texts) {}

    void setMenu(std::shared_ptr<const platform::ListedFonts> fonts, std::vector<platform::FontMenuItem> items);
    const platform::FontMenuItem& item(const QModelIndex& index) const { return *nodes_[index.internalId()].item; }
    const platform::FontFace* face(const QModelIndex& index) const;  // null: none
    std::int64_t modified(const QModelIndex& index) const;           // of its face's file
    int size() const { return size_; }                               // points, of the largest item; 0: the interface's
    bool hasMarks() const { return hasMarks_; }                      // of any item
    bool hasIcons() const { return hasIcons_; }
    // The titles from the top down to the item, by which it is found in another menu.
    QStringList path(const QModelIndex& index) const;
    QModelIndex find(const QStringList& path) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& = {}) const override { return 1; }
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    // The children of one stand together; the first of all is the menu itself.
    struct Node {
        const platform::FontMenuItem* item;
        std::size_t parent;
        int row;
        std::size_t firstChild;
    };
    const Node& node(const QModelIndex& index) const { return nodes_[index.isValid() ? index.internalId() : 0]; }
    QString title(const QModelIndex& index) const;
    QString inWords(const QModelIndex& index) const;

    const platform::Bundle& texts_;
    std::shared_ptr<const platform::ListedFonts> fonts_;
    platform::FontMenuItem menu_;
    std::vector<Node> nodes_{{&menu_, 0, 0, 1}};
    int size_ = 0;
    bool hasMarks_ = false, hasIcons_ = false;
};

}  // namespace qt
