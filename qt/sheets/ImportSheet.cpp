#include "qt/sheets/ImportSheet.h"

#include "qt/sheets/ImportModel.h"
#include "qt/texts/ForeignText.h"
#include "qt/texts/PlainToolTips.h"
#include "qt/texts/Utf8.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace qt {

using namespace platform;

namespace {

constexpr int kLongestSource = 200;  // characters
constexpr QSize kPreferredSize(640, 480);

// The space bar decides all selected entries alike, whatever column the keyboard is in; a click on a decision turns it.
class EntryTree final : public QTreeView {
public:
    EntryTree(ImportModel& model, QWidget* parent) : QTreeView(parent), model_(model) {
        setObjectName(QStringLiteral("importEntries"));
        setModel(&model);
        setUniformRowHeights(true);
        setAllColumnsShowFocus(true);
        setSelectionMode(ExtendedSelection);
        setEditTriggers(NoEditTriggers);
        setTabKeyNavigation(false);
        connect(this, &QTreeView::clicked, this, [this](const QModelIndex& index) {
            if (index.column() == ImportModel::Decision) turn({index}, index);
        });
    }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        const bool turns = event->key() == Qt::Key_Space && model_.isDecidable(currentIndex());
        turns ? turn(selectionModel()->selectedRows(), currentIndex()) : QTreeView::keyPressEvent(event);
    }

private:
    void turn(const QModelIndexList& entries, const QModelIndex& index) {
        if (model_.isDecidable(index)) model_.decide(entries, !model_.takesTheirs(index));
    }

    ImportModel& model_;
};

class Sheet final : public QDialog {
public:
    Sheet(QWidget* window, ImportRequest request, const Bundle* texts)
        : QDialog(window, Qt::Sheet), texts_(texts), model_(new ImportModel(std::move(request.rows), texts, this)) {
        setObjectName(QStringLiteral("importSheet"));
        setWindowTitle(text("Import Entries"));
        setWindowModality(Qt::WindowModal);
        setAttribute(Qt::WA_DeleteOnClose);
        setUpWays();
        setUpTree();
        setUpButtons();
        auto* source = plainLabel("importSource", shortened(asOneLine(toQString(request.source)), kLongestSource));
        auto* note = plainLabel("importNote", asOneLine(toQString(request.note)));
        note->setVisible(!request.note.empty());
        summary_ = plainLabel("importSummary", {});
        auto* layout = new QVBoxLayout(this);
        auto* both = new QHBoxLayout;
        for (QWidget* part : std::initializer_list<QWidget*>{mine_, theirs_}) both->addWidget(part);
        both->addStretch();
        for (QWidget* part : std::initializer_list<QWidget*>{source, note, merges_, replaces_, tree_})
            layout->addWidget(part);
        layout->addLayout(both);
        for (QWidget* part : std::initializer_list<QWidget*>{summary_, buttons_}) layout->addWidget(part);
        connect(model_, &QAbstractItemModel::dataChanged, this, &Sheet::showState);
        resize(kPreferredSize);
        showPlainToolTips(*this);
        tree_->setFocus();
        showState();
    }

    ImportAnswer answer() const { return {model_->replacesList(), model_->decisions()}; }

private:
    QString text(const char* english, std::initializer_list<propertylist::FormatArgument> arguments = {}) const {
        return localizedText(texts_, english, arguments);
    }

    QLabel* plainLabel(const char* name, const QString& shown) {
        auto* label = new QLabel(shown, this);
        label->setObjectName(QString::fromUtf8(name));
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        return label;
    }

    template <typename Button>
    Button* makeButton(const char* name, const QString& title, const QString& toolTip) {
        auto* button = new Button(title, this);
        button->setObjectName(QString::fromUtf8(name));
        button->setToolTip(toolTip);
        return button;
    }

    void setUpWays() {
        merges_ = makeButton<QRadioButton>("importMerges", text("&Merge into the list"),
                                           text("Adds what is new; what is only in the list stays"));
        replaces_ = makeButton<QRadioButton>("importReplaces", text("Replace the &whole list"),
                                             text("The list becomes what the file has, in its order"));
        merges_->setChecked(true);
        connect(replaces_, &QRadioButton::toggled, this, [this](bool replaces) {
            model_->setReplacesList(replaces);
            expandWhatChanges();
            showState();
        });
    }

    void setUpTree() {
        tree_ = new EntryTree(*model_, this);
        tree_->setAccessibleName(text("What the import would do"));
        tree_->setAccessibleDescription(text("The space bar takes theirs, or keeps mine"));
        const QFontMetrics metrics(tree_->font());
        int widest = 0;
        for (const QString& word : {text("Keep mine"), text("Take theirs"), text("Decision")})
            widest = std::max(widest, metrics.horizontalAdvance(word));
        tree_->setColumnWidth(ImportModel::Name, kPreferredSize.width() * 2 / 5);
        tree_->setColumnWidth(ImportModel::Decision, widest + metrics.averageCharWidth() * 4);
        expandWhatChanges();
        const QModelIndex first = model_->index(0, 0);
        tree_->setCurrentIndex(model_->rowCount(first) ? model_->index(0, 0, first) : first);
    }

    // What stays as it is need not be read.
    void expandWhatChanges() {
        for (int group = 0; group < model_->rowCount(); ++group) {
            const QModelIndex index = model_->index(group, 0);
            tree_->setFirstColumnSpanned(group, {}, true);
            if (!model_->isLeft(index)) tree_->expand(index);
        }
    }

    void setUpButtons() {
        mine_ = makeButton<QPushButton>("importKeepMine", text("&Keep All Mine"),
                                        text("In every conflict the list's entry stays"));
        theirs_ = makeButton<QPushButton>("importTakeTheirs", text("&Take All Theirs"),
                                          text("In every conflict the file's entry takes its place"));
        for (QPushButton* button : {mine_, theirs_}) {
            button->setAutoDefault(false);
            connect(button, &QPushButton::clicked, this, [this, button] { model_->decideAll(button == theirs_); });
        }
        buttons_ = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
        auto* ok = makeButton<QPushButton>("importOK", text("&Import"), text("Changes the list as it is said here"));
        buttons_->addButton(ok, QDialogButtonBox::AcceptRole);
        ok->setDefault(true);
        QPushButton* cancel = buttons_->button(QDialogButtonBox::Cancel);
        cancel->setText(text("&Cancel"));
        cancel->setToolTip(text("Leaves the list as it was"));
        connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
        connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
    }

    void showState() {
        using Group = ImportRow::Group;
        const std::size_t taken = model_->taken(), conflicts = model_->count(Group::Conflict);
        const std::size_t left = model_->count(Group::Left) + conflicts - taken;
        QString said = text("This adds %d, replaces %d and leaves %d.", {model_->count(Group::Added), taken, left});
        if (model_->replacesList()) said += QLatin1Char(' ') + text("It removes %d.", {model_->count(Group::Removed)});
        summary_->setText(said);
        for (QPushButton* button : {mine_, theirs_}) button->setEnabled(conflicts > 0 && !model_->replacesList());
    }

    const Bundle* const texts_;
    ImportModel* const model_;
    QRadioButton *merges_ = nullptr, *replaces_ = nullptr;
    EntryTree* tree_ = nullptr;
    QPushButton *mine_ = nullptr, *theirs_ = nullptr;
    QLabel* summary_ = nullptr;
    QDialogButtonBox* buttons_ = nullptr;
};

}  // namespace

void openImportSheet(QWidget* window, ImportRequest request, const Bundle* texts,
                     std::function<void(const std::optional<ImportAnswer>&)> didEnd) {
    auto* sheet = new Sheet(window, std::move(request), texts);
    QObject::connect(sheet, &QDialog::finished, sheet, [sheet, didEnd = std::move(didEnd)](int result) {
        didEnd(result == QDialog::Accepted ? std::optional(sheet->answer()) : std::nullopt);
    });
    sheet->open();
}

}  // namespace qt
