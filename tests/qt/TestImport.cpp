// The sheet that shows what an import would do, by script.
#include "qt/sheets/FilePanels.h"
#include "qt/sheets/ImportSheet.h"
#include "tests/qt/QtTest.h"
#include "tests/support/Script.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QDialog>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMetaEnum>
#include <QTreeView>

using namespace platform;

namespace {

// The whole text of an item as a screen reader has it, and what of it is set.
std::string heard(const QTreeView& tree, const QModelIndex& index) {
    std::string text = index.parent().isValid() ? "  " : "";
    if (index.data(Qt::CheckStateRole).isValid()) text += index.data(Qt::CheckStateRole).toInt() ? "[x] " : "[ ] ";
    text += index.data(Qt::AccessibleTextRole).toString().toStdString();
    if (tree.selectionModel()->isSelected(index)) text += " <";
    if (!index.parent().isValid() && !tree.isExpanded(index)) text += " ...";
    return text;
}

struct Application {
    Application() { useApplication(); }
};

struct Stage : Application {
    Stage() { window.show(); }

    QWidget window;
    std::vector<std::string> told;
    std::map<std::string, std::string> seen;

    // "+added", "~in conflict:difference", "=left", "-removed", "!a note".
    void open(Words& w) {
        ImportRequest request{"file.plist"};
        for (std::string word = w.next(); !word.empty(); word = w.next()) {
            const std::string rest = word.substr(1);
            const std::size_t colon = std::min(rest.find(':'), rest.size());
            if (word[0] == '!')
                request.note = rest;
            else
                request.rows.push_back({static_cast<ImportRow::Group>(std::string("+~=-").find(word[0])),
                                        rest.substr(0, colon), rest.substr(std::min(colon + 1, rest.size()))});
        }
        openSheet(std::move(request));
    }
    void openSheet(ImportRequest request) {
        qt::openImportSheet(&window, std::move(request), nullptr, [this](const std::optional<ImportAnswer>& answer) {
            if (!answer) return told.emplace_back("cancelled");
            std::string text = answer->replacesList ? "replace:" : "merge:";
            for (bool theirs : answer->takesTheirs) text += theirs ? " theirs" : " mine";
            return told.emplace_back(text.substr(0, 60));
        });
        settle();
    }
    void openMany(int count) {
        ImportRequest request{"large.plist"};
        for (int i = 0; i < count; ++i)
            request.rows.push_back({static_cast<ImportRow::Group>(i % 4), "entry " + std::to_string(i), "difference"});
        openSheet(std::move(request));
    }
    void choose(Words& w) {
        ChoiceRequest request{"Title", "Go", {}};
        for (std::string word = w.next(); !word.empty(); word = w.next()) request.choices.push_back(word);
        qt::openChoice(&window, request, nullptr, [this](int choice) { told.push_back(std::to_string(choice)); });
        settle();
    }
    void save(Words& w) {
        const std::string start = folder / "";
        qt::openSavePanel(&window, {"Save", start + "entries", {{"List", "plist"}, {"JSON", "json"}}},
                          [this, start](const std::string& path) {
                              told.push_back(path.empty() ? "no file" : path.substr(start.size()));
                          });
        auto& panel = *window.findChild<QFileDialog*>();
        if (const std::string type = w.next(); !type.empty()) {
            panel.selectNameFilter(panel.nameFilters().last());
            Q_EMIT panel.filterSelected(panel.nameFilters().last());
        }
    }
    void perform(const std::string& command, Words& w) {
        if (command == "open") return open(w);
        if (command == "open-many") return openMany(w.number());
        if (command == "choose") return choose(w);
        if (command == "save") return save(w);
        if (command == "click") {
            window.findChild<QAbstractButton*>(QString::fromStdString(w.next()))->click();
        } else if (command == "click-decision") {
            QTreeView& tree = *this->tree();
            const QModelIndex place = tree.model()->index(w.number(), 1, tree.model()->index(w.number(), 0));
            QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualRect(place).center());
        } else if (command == "end") {
            for (auto* dialog : window.findChildren<QDialog*>()) w.number() ? dialog->accept() : dialog->reject();
        } else if (command == "press") {
            const std::string key = w.next();
            const auto modifier = w.next().empty() ? Qt::NoModifier : Qt::ShiftModifier;
            QWidget* dialog = window.findChild<QDialog*>();
            QWidget* receiver = dialog->focusWidget() ? dialog->focusWidget() : dialog;
            QTest::keyClick(receiver, Qt::Key(QMetaEnum::fromType<Qt::Key>().keyToValue(("Key_" + key).c_str())),
                            modifier);
        }
        settle();
    }
    QTreeView* tree() const { return window.findChild<QTreeView*>(QStringLiteral("importEntries")); }
    std::map<std::string, std::string> values() const {
        std::map<std::string, std::string> all;
        if (!tree()) return all;
        for (const auto* label : window.findChildren<QLabel*>())
            if (label->objectName().startsWith(QStringLiteral("import")) && label->isVisible())
                all[label->objectName().toStdString()] = label->text().toStdString();
        for (const auto* button : window.findChildren<QAbstractButton*>())
            if (button->objectName() == QStringLiteral("importTakeTheirs"))
                all["theirs for all"] = button->isEnabled() ? "on" : "off";
        int line = 10;
        for (QModelIndex at = tree()->model()->index(0, 0); at.isValid() && line < 20; at = tree()->indexBelow(at))
            all[std::to_string(line++)] = heard(*tree(), at);
        for (const auto& [name, value] : seen)
            if (!all.contains(name)) all[name] = "";
        return all;
    }
    std::string news() {
        std::string text;
        for (const std::string& line : std::exchange(told, {})) text += line + "\n";
        return text + check::changes(seen, values());
    }
    check::TemporaryFolder folder;
};

}  // namespace

TEST(ImportsByScript) { check::play<Stage>(TEST_DATA "/import.txt"); }
