#include "qt/sheets/ApplicationModel.h"

#include "qt/texts/SearchKey.h"
#include "qt/texts/Utf8.h"

#include <QElapsedTimer>
#include <QStringList>

#include <algorithm>
#include <set>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace qt {

namespace {

// Whether the text has a word that begins so.
bool hasWord(QStringView text, const QString& start) {
    for (auto at = text.indexOf(start); at >= 0; at = text.indexOf(start, at + 1))
        if (at == 0 || !text[at - 1].isLetterOrNumber()) return true;
    return false;
}

}  // namespace

ApplicationModel::ApplicationModel(std::vector<ChoosableApplication> applications, Questions questions, Texts texts,
                                   QObject* parent)
    : QAbstractListModel(parent),
      applications_(std::move(applications)),
      questions_(std::move(questions)),
      texts_(std::move(texts)),
      taken_(applications_.size(), -1) {
    tellApart();
    search({}, false);
}

// The first of these that differs: what they are, what identifies them, where they are.
void ApplicationModel::tellApart() {
    std::unordered_map<std::string_view, std::vector<std::size_t>> namesakes;
    for (std::size_t i = 0; i < applications_.size(); ++i) {
        const std::string& kind = applications_[i].genericName;
        secondLines_.push_back(kind == applications_[i].name ? std::string() : kind);
        namesakes[applications_[i].name].push_back(i);
    }
    for (const auto& [name, numbers] : namesakes) {
        if (numbers.size() < 2) continue;
        for (auto part :
             {&ChoosableApplication::genericName, &ChoosableApplication::identifier, &ChoosableApplication::location}) {
            std::set<std::string_view> seen;
            for (std::size_t i : numbers) seen.insert(secondLines_[i] = applications_[i].*part);
            if (seen.size() == numbers.size() && !seen.contains("")) break;
        }
    }
}

bool ApplicationModel::prepare(std::chrono::milliseconds time) {
    constexpr std::size_t kBetweenLooks = 64;
    QElapsedTimer passed;
    passed.start();
    for (std::size_t i = keys_.size(); i < applications_.size(); ++i) {
        if (i % kBetweenLooks == 0 && passed.elapsed() >= time.count()) return false;
        const ChoosableApplication& each = applications_[i];
        QString name = searchKey(toQString(each.name));
        const int nameLength = static_cast<int>(name.size());
        name += QLatin1Char('\n') + searchKey(toQString(each.identifier + "\n" + each.searchTexts));
        keys_.push_back({std::move(name), nameLength});
    }
    return true;
}

int ApplicationModel::rank(const Key& key, const Wanted& wanted) const {
    const auto all = [&](auto has) { return std::all_of(wanted.words.begin(), wanted.words.end(), has); };
    if (!all([&](const QString& word) { return key.texts.contains(word); })) return kRanks;
    const QStringView name = QStringView(key.texts).left(key.nameLength);
    if (name.startsWith(wanted.text)) return 0;
    if (all([&](const QString& word) { return hasWord(name, word); })) return 1;
    return all([&](const QString& word) { return name.contains(word); }) ? 2 : 3;
}

void ApplicationModel::search(const QString& text, bool isOnlyRunning) {
    Wanted wanted{searchKey(text).simplified(), {}};
    wanted.words = wanted.text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (!wanted.words.isEmpty()) prepare(std::chrono::hours(1));
    std::array<std::vector<int>, kRanks + 1> found;
    for (std::size_t i = 0; i < applications_.size(); ++i) {
        if (!(isOnlyRunning ? applications_[i].isRunning : applications_[i].isInMenus)) continue;
        const int itsRank = wanted.words.isEmpty() ? 0 : rank(keys_[i], wanted);
        found[static_cast<std::size_t>(itsRank)].push_back(static_cast<int>(i));
    }
    beginResetModel();
    shown_.clear();
    for (std::size_t each = 0; each < kRanks; ++each)
        shown_.insert(shown_.end(), found[each].begin(), found[each].end());
    endResetModel();
}

bool ApplicationModel::hasRunning() const {
    return std::any_of(applications_.begin(), applications_.end(), [](const auto& each) { return each.isRunning; });
}

bool ApplicationModel::isTaken(int number) const {
    signed char& known = taken_[static_cast<std::size_t>(number)];
    if (known < 0) known = questions_.isTaken && questions_.isTaken(application(number).path);
    return known > 0;
}

QString ApplicationModel::secondLine(int number) const {
    return toQString(secondLines_[static_cast<std::size_t>(number)]);
}

QString ApplicationModel::toolTip(int number) const {
    const ChoosableApplication& each = application(number);
    QStringList lines;
    for (const std::string& line : {each.genericName, each.identifier, each.location})
        if (!line.empty()) lines << toQString(line);
    if (isTaken(number)) lines << texts_.whyTaken;
    return lines.join(QLatin1Char('\n'));
}

int ApplicationModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

QVariant ApplicationModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const int number = numberAt(index.row());
    const ChoosableApplication& each = application(number);
    const QString mark = isTaken(number) ? texts_.taken : QString();
    switch (role) {
        case Qt::DisplayRole:
            return toQString(each.name);
        case Qt::DecorationRole:
            return questions_.iconOf(each.path);
        case Qt::ToolTipRole:
            return toolTip(number);
        case Qt::AccessibleTextRole:
            return mark.isEmpty() ? toQString(each.name) : toQString(each.name) + QStringLiteral(", ") + mark;
        case Qt::AccessibleDescriptionRole:
            return toolTip(number).replace(QLatin1Char('\n'), QStringLiteral(", "));
        case kSecondLineRole:
            return secondLine(number);
        case kMarkRole:
            return mark;
        default:
            return {};
    }
}

// What is taken can be reached, so that a tool tip and a screen reader say why it cannot be chosen.
Qt::ItemFlags ApplicationModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) return Qt::NoItemFlags;
    const auto flags = Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    return isTaken(numberAt(index.row())) ? flags : flags | Qt::ItemIsSelectable;
}

}  // namespace qt
