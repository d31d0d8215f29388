// The applications that can be chosen, and those of them that a search finds.
#pragma once

#include <QAbstractListModel>
#include <QIcon>

#include <array>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace qt {

// All but the path and what it is found by is safe to show.
struct ChoosableApplication {
    std::string path, name;
    std::string location = {};                      // the path for people
    std::string identifier = {}, genericName = {};  // empty: none
    std::string searchTexts = {};                   // what else it is found by, in lines
    bool isInMenus = true, isRunning = false;       // one that is neither is not shown at all
};

// Applications keep the number that they have in the given order, whichever rows are shown.
class ApplicationModel final : public QAbstractListModel {
public:
    struct Questions {
        std::function<QIcon(const std::string& path)> iconOf;
        std::function<bool(const std::string& path)> isTaken;  // asked once; null: none is
    };
    struct Texts {
        QString taken;     // beside the name of what is taken
        QString whyTaken;  // in its tool tip
    };
    enum Role {
        kSecondLineRole = Qt::UserRole,  // tells applications of one name apart; of any other, what it is
        kMarkRole,                       // a word beside the name, or empty
    };

    // Icons and marks are asked for only as rows come into view.
    ApplicationModel(std::vector<ChoosableApplication> applications, Questions questions, Texts texts, QObject* parent);

    // Shows what has every word of the text somewhere in its names, keywords or identifier, without regard to case and
    // accents: names that begin with the text first, then those with words that begin with its words, then the other
    // names. An empty text finds all.
    void search(const QString& text, bool isOnlyRunning);
    // Readies searches for about that long; true when nothing is left to do. The first search waits for all of it.
    bool prepare(std::chrono::milliseconds time);

    int numberAt(int row) const { return shown_[static_cast<std::size_t>(row)]; }
    std::vector<int> numbersShown() const { return shown_; }
    const ChoosableApplication& application(int number) const {
        return applications_[static_cast<std::size_t>(number)];
    }
    bool hasRunning() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    static constexpr int kRanks = 4;
    struct Wanted {
        QString text;
        QStringList words;
    };
    struct Key {
        QString texts;  // the name first
        int nameLength;
    };

    int rank(const Key& key, const Wanted& wanted) const;  // kRanks: not found
    bool isTaken(int number) const;
    QString secondLine(int number) const;
    QString toolTip(int number) const;
    void tellApart();

    const std::vector<ChoosableApplication> applications_;
    const Questions questions_;
    const Texts texts_;
    std::vector<std::string> secondLines_;
    std::vector<Key> keys_;  // of the first applications
    std::vector<int> shown_;
    mutable std::vector<signed char> taken_;  // -1: not asked yet
};

}  // namespace qt
