// The entries of an import as a tree of two levels: groups, and the entries in each.
#pragma once

#include "platform/Bundle.h"
#include "platform/ImportSheet.h"
#include "propertylist/Format.h"

#include <QAbstractItemModel>
#include <QString>

#include <array>
#include <cstddef>
#include <vector>

namespace qt {

// "%d" and "%@" are the numbers and texts that follow.
QString localizedText(const platform::Bundle* texts, const char* english,
                      std::initializer_list<propertylist::FormatArgument> arguments = {});

// Of an entry in conflict the first column has a check box: checked, theirs is taken.
class ImportModel final : public QAbstractItemModel {
public:
    enum Column { Name, Decision, Difference, ColumnCount };
    using Group = platform::ImportRow::Group;

    ImportModel(std::vector<platform::ImportRow> rows, const platform::Bundle* texts, QObject* parent);

    // Theirs are taken everywhere then, and what is to be removed is shown.
    void setReplacesList(bool replaces);
    bool replacesList() const { return replacesList_; }
    void decide(const QModelIndexList& entries, bool takesTheirs);
    void decideAll(bool takesTheirs);
    bool isDecidable(const QModelIndex& index) const;
    bool takesTheirs(const QModelIndex& index) const;
    bool isLeft(const QModelIndex& group) const;
    const std::vector<bool>& decisions() const { return takesTheirs_; }  // for each row of the request

    std::size_t count(Group group) const { return members_[static_cast<std::size_t>(group)].size(); }
    std::size_t taken() const;  // conflicts that are not decided for mine

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    std::vector<Group> shownGroups() const;
    std::size_t rowOf(const QModelIndex& index) const;  // in the request, of an entry
    QString entryText(const QModelIndex& index, std::size_t row) const;

    const std::vector<platform::ImportRow> rows_;
    // All that it says: it may be asked as long as its view lives, which the bundle may not.
    std::array<QString, 4> groupTitles_;
    std::array<QString, ColumnCount> columnTitles_;
    QString keepMine_, takeTheirs_;
    std::array<std::vector<std::size_t>, 4> members_;
    std::vector<bool> takesTheirs_;
    bool replacesList_ = false;
};

}  // namespace qt
