#include "qt/fontmenu/FontMenuModel.h"

#include "propertylist/Format.h"
#include "qt/texts/ForeignText.h"
#include "qt/texts/Utf8.h"

#include <algorithm>

namespace qt {

using namespace platform;

namespace {

constexpr int kLongestTitle = 200;  // characters

// The names of formats are the same in every language.
constexpr const char* kKinds[kFontKinds] = {"", "TrueType", "OpenType", "Variable", "Type 1", "Bitmap"};

}  // namespace

void FontMenuModel::setMenu(std::shared_ptr<const ListedFonts> fonts, std::vector<FontMenuItem> items) {
    beginResetModel();
    fonts_ = std::move(fonts);
    menu_.children = std::move(items);
    size_ = 0;
    hasMarks_ = hasIcons_ = false;
    nodes_.assign(1, {&menu_, 0, 0, 1});
    for (std::size_t parent = 0; parent < nodes_.size(); ++parent) {
        const std::vector<FontMenuItem>& children = nodes_[parent].item->children;
        nodes_[parent].firstChild = nodes_.size();
        for (std::size_t row = 0; row < children.size(); ++row) {
            nodes_.push_back({&children[row], parent, static_cast<int>(row), 0});
            size_ = std::max(size_, children[row].size);
            hasMarks_ |= children[row].isMarked;
            hasIcons_ |= children[row].icon != FontKind::Unknown;
        }
    }
    endResetModel();
}

const FontFace* FontMenuModel::face(const QModelIndex& index) const {
    const auto& face = item(index).face;
    return face && fonts_ && *face < fonts_->faces.size() ? &fonts_->faces[*face] : nullptr;
}

std::int64_t FontMenuModel::modified(const QModelIndex& index) const {
    const auto& face = item(index).face;
    return face && fonts_ && *face < fonts_->modified.size() ? fonts_->modified[*face] : 0;
}

QModelIndex FontMenuModel::index(int row, int column, const QModelIndex& parent) const {
    if (row < 0 || row >= rowCount(parent) || column != 0) return {};
    return createIndex(row, 0, static_cast<quintptr>(node(parent).firstChild + static_cast<std::size_t>(row)));
}

QModelIndex FontMenuModel::parent(const QModelIndex& index) const {
    const std::size_t parent = node(index).parent;
    return parent == 0 ? QModelIndex() : createIndex(nodes_[parent].row, 0, static_cast<quintptr>(parent));
}

int FontMenuModel::rowCount(const QModelIndex& parent) const {
    return static_cast<int>(node(parent).item->children.size());
}

Qt::ItemFlags FontMenuModel::flags(const QModelIndex& index) const {
    if (!index.isValid() || item(index).kind == FontMenuItem::Kind::Separator) return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

QString FontMenuModel::title(const QModelIndex& index) const {
    return asOneLine(shortened(toQString(item(index).title), kLongestTitle));
}

QString FontMenuModel::inWords(const QModelIndex& index) const {
    const FontMenuItem& item = this->item(index);
    if (item.kind == FontMenuItem::Kind::Separator) return toQString(texts_.localizedString("separator"));
    QStringList words{title(index)};
    const auto add = [&](const std::string& text) {
        if (!text.empty()) words << asOneLine(toQString(text));
    };
    add(item.detail);
    if (item.isMarked) add(texts_.localizedString("in use"));
    add(kKinds[static_cast<std::size_t>(item.icon)]);
    if (item.copies > 1)
        add(propertylist::formatted(texts_.localizedString("%@ copies"), {std::to_string(item.copies)}));
    if (!item.isActive) add(texts_.localizedString("not active"));
    return words.join(QStringLiteral(", "));
}

QVariant FontMenuModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    if (role == Qt::DisplayRole) return title(index);
    if (role == Qt::AccessibleTextRole || role == Qt::ToolTipRole) return inWords(index);
    return {};
}

QStringList FontMenuModel::path(const QModelIndex& index) const {
    QStringList path;
    for (QModelIndex at = index; at.isValid(); at = at.parent()) path.prepend(toQString(item(at).title));
    return path;
}

QModelIndex FontMenuModel::find(const QStringList& path) const {
    QModelIndex at;
    for (const QString& title : path) {
        const std::vector<FontMenuItem>& children = node(at).item->children;
        const auto found = std::ranges::find(children, title.toStdString(), &FontMenuItem::title);
        if (found == children.end()) return {};
        at = index(static_cast<int>(found - children.begin()), 0, at);
    }
    return at;
}

}  // namespace qt
