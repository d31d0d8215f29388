#include "qt/sheets/ImportModel.h"

#include "platform/Localizable.h"
#include "qt/texts/ForeignText.h"
#include "qt/texts/Utf8.h"

#include <QFont>

#include <algorithm>
#include <numeric>
#include <utility>

namespace qt {

using namespace platform;

namespace {

constexpr int kLongestText = 300;         // characters
constexpr quintptr kGroup = 0;            // the internal id of a group; an entry has its group's place, from 1
constexpr std::size_t kRemovedGroup = 3;  // the last one

}  // namespace

QString localizedText(const Bundle* texts, const char* english,
                      std::initializer_list<propertylist::FormatArgument> arguments) {
    const std::string format = texts ? texts->localizedString(english) : std::string(english);
    return toQString(arguments.size() ? propertylist::formatted(format, arguments) : format);
}

ImportModel::ImportModel(std::vector<ImportRow> rows, const Bundle* texts, QObject* parent)
    : QAbstractItemModel(parent), rows_(std::move(rows)), takesTheirs_(rows_.size()) {
    for (std::size_t row = 0; row < rows_.size(); ++row)
        members_[static_cast<std::size_t>(rows_[row].group)].push_back(row);
    const char* titles[] = {localizable("To be added (%d)"), localizable("In the list with other settings (%d)"),
                            localizable("In the list already, equal (%d)"), localizable("To be removed (%d)")};
    for (std::size_t group = 0; group < groupTitles_.size(); ++group)
        groupTitles_[group] = localizedText(texts, titles[group], {members_[group].size()});
    columnTitles_ = {localizedText(texts, "Entry"), localizedText(texts, "Decision"),
                     localizedText(texts, "What differs: mine → theirs")};
    keepMine_ = localizedText(texts, "Keep mine");
    takeTheirs_ = localizedText(texts, "Take theirs");
}

// Whole groups come and go, so the view is told so of the last one alone.
void ImportModel::setReplacesList(bool replaces) {
    if (replaces == replacesList_) return;
    const int groups = rowCount();
    const bool hasRemoved = !members_[kRemovedGroup].empty();
    if (hasRemoved && replaces) beginInsertRows({}, groups, groups);
    if (hasRemoved && !replaces) beginRemoveRows({}, groups - 1, groups - 1);
    replacesList_ = replaces;
    if (hasRemoved) replaces ? endInsertRows() : endRemoveRows();
    decide({}, false);
}

std::vector<ImportModel::Group> ImportModel::shownGroups() const {
    std::vector<Group> groups;
    for (Group group : {Group::Added, Group::Conflict, Group::Left, Group::Removed})
        if (count(group) > 0 && (group != Group::Removed || replacesList_)) groups.push_back(group);
    return groups;
}

std::size_t ImportModel::rowOf(const QModelIndex& index) const {
    const Group group = shownGroups()[index.internalId() - 1];
    return members_[static_cast<std::size_t>(group)][static_cast<std::size_t>(index.row())];
}

bool ImportModel::isDecidable(const QModelIndex& index) const {
    return index.isValid() && index.internalId() != kGroup && !replacesList_ &&
           rows_[rowOf(index)].group == Group::Conflict;
}

bool ImportModel::takesTheirs(const QModelIndex& index) const { return replacesList_ || takesTheirs_[rowOf(index)]; }

bool ImportModel::isLeft(const QModelIndex& group) const {
    return shownGroups()[static_cast<std::size_t>(group.row())] == Group::Left;
}

std::size_t ImportModel::taken() const {
    if (replacesList_) return count(Group::Conflict);
    return static_cast<std::size_t>(std::count(takesTheirs_.begin(), takesTheirs_.end(), true));
}

// One message for all: a view asks again only for what it shows.
void ImportModel::decide(const QModelIndexList& entries, bool takesTheirs) {
    for (const QModelIndex& entry : entries)
        if (isDecidable(entry)) takesTheirs_[rowOf(entry)] = takesTheirs;
    for (int group = 0; group < rowCount(); ++group) {
        const QModelIndex parent = index(group, 0);
        Q_EMIT dataChanged(parent, parent);
        Q_EMIT dataChanged(index(0, 0, parent), index(rowCount(parent) - 1, ColumnCount - 1, parent));
    }
}

void ImportModel::decideAll(bool takesTheirs) {
    for (std::size_t row : members_[static_cast<std::size_t>(Group::Conflict)]) takesTheirs_[row] = takesTheirs;
    decide({}, takesTheirs);
}

QModelIndex ImportModel::index(int row, int column, const QModelIndex& parent) const {
    if (!hasIndex(row, column, parent)) return {};
    return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : kGroup);
}

QModelIndex ImportModel::parent(const QModelIndex& child) const {
    if (!child.isValid() || child.internalId() == kGroup) return {};
    return createIndex(static_cast<int>(child.internalId() - 1), 0, kGroup);
}

int ImportModel::rowCount(const QModelIndex& parent) const {
    const std::vector<Group> groups = shownGroups();
    if (!parent.isValid()) return static_cast<int>(groups.size());
    if (parent.internalId() != kGroup || parent.column() != 0) return 0;
    return static_cast<int>(count(groups[static_cast<std::size_t>(parent.row())]));
}

int ImportModel::columnCount(const QModelIndex&) const { return ColumnCount; }

QString ImportModel::entryText(const QModelIndex& index, std::size_t row) const {
    const ImportRow& entry = rows_[row];
    if (index.column() == Name) return shortened(asOneLine(toQString(entry.name)), kLongestText);
    if (entry.group != Group::Conflict) return {};
    if (index.column() == Decision) return takesTheirs(index) ? takeTheirs_ : keepMine_;
    return shortened(asOneLine(toQString(entry.difference)), kLongestText);
}

QVariant ImportModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    if (index.internalId() == kGroup) {
        if (index.column() != 0) return {};
        if (role == Qt::FontRole) {
            QFont bold;
            bold.setBold(true);
            return bold;
        }
        const bool isText = role == Qt::DisplayRole || role == Qt::AccessibleTextRole;
        return isText
                   ? QVariant(
                         groupTitles_[static_cast<std::size_t>(shownGroups()[static_cast<std::size_t>(index.row())])])
                   : QVariant();
    }
    const std::size_t row = rowOf(index);
    if (role == Qt::CheckStateRole && index.column() == Name && isDecidable(index))
        return takesTheirs(index) ? Qt::Checked : Qt::Unchecked;
    if (role == Qt::DisplayRole || (role == Qt::ToolTipRole && index.column() != Decision))
        return entryText(index, row);
    if (role != Qt::AccessibleTextRole) return {};
    // Whoever hears a row hears all of it at its first cell.
    QStringList texts;
    for (int column = index.column(); column < (index.column() == Name ? int(ColumnCount) : index.column() + 1);
         ++column)
        texts << entryText(index.siblingAtColumn(column), row);
    texts.removeAll(QString());
    return texts.join(QStringLiteral(", "));
}

bool ImportModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole || !isDecidable(index)) return false;
    decide({index}, value.toInt() == Qt::Checked);
    return true;
}

QVariant ImportModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    return columnTitles_[static_cast<std::size_t>(section)];
}

Qt::ItemFlags ImportModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (index.internalId() != kGroup) flags |= Qt::ItemNeverHasChildren;
    if (index.column() == Name && isDecidable(index)) flags |= Qt::ItemIsUserCheckable;
    return flags;
}

}  // namespace qt
