#include "qt/sheets/ApplicationChooser.h"

#include "propertylist/Format.h"
#include "qt/sheets/AnywhereChooser.h"
#include "qt/sheets/ApplicationList.h"
#include "qt/texts/ForeignText.h"
#include "qt/texts/PlainToolTips.h"
#include "qt/texts/Utf8.h"

#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTimer>
#include <QVBoxLayout>

#include <set>
#include <utility>

namespace qt {

using namespace platform;

namespace {

constexpr QSize kPreferredSize(460, 520);
constexpr int kMostNames = 3, kMostInToolTip = 30;  // of what is selected, in the line below the list
// So long at a time the window does not answer while searches are made ready.
constexpr std::chrono::milliseconds kSlice{4};

class Chooser final : public QDialog {
public:
    Chooser(QWidget* window, const OpenPanelRequest& request, std::vector<ChoosableApplication> applications,
            std::function<QIcon(const std::string&)> iconOf, const Bundle* texts)
        : QDialog(window, Qt::Sheet),
          folder_(toQString(request.folder)),
          prompt_(toQString(request.prompt)),
          texts_(texts),
          search_(*new QLineEdit(this)),
          running_(*new QCheckBox(this)),
          list_(*new ApplicationList(search_, this)),
          state_(*new QLabel(this)),
          none_(*new QPushButton(this)),
          buttons_(*new QDialogButtonBox(QDialogButtonBox::Cancel, this)) {
        setObjectName(QStringLiteral("applicationChooser"));
        setWindowTitle(toQString(request.title));
        setWindowModality(Qt::WindowModal);
        setAttribute(Qt::WA_DeleteOnClose);
        model_ = new ApplicationModel(std::move(applications), {std::move(iconOf), request.isTaken},
                                      {localized("in the list"), localized("This application is in the list already.")},
                                      this);
        setUpSearch();
        setUpList(request.allowsMultipleSelection);
        setUpState(request.allowsMultipleSelection);
        setUpButtons();
        layOut();
        showPlainToolTips(*this);
        search_.setFocus();
        showState();
        prepareSoon();
    }

    const std::vector<std::string>& chosen() const { return chosen_; }

private:
    QString localized(const char* english) const {
        return texts_ ? toQString(texts_->localizedString(english)) : QString::fromUtf8(english);
    }
    QString localized(const char* english, std::initializer_list<propertylist::FormatArgument> arguments) const {
        return toQString(propertylist::formatted(localized(english).toStdString(), arguments));
    }

    void setUpSearch() {
        search_.setObjectName(QStringLiteral("applicationSearch"));
        search_.setPlaceholderText(localized("Search applications"));
        search_.setAccessibleName(localized("Search applications"));
        search_.setToolTip(localized("Finds applications by name, kind, keyword and identifier"));
        search_.setClearButtonEnabled(true);
        running_.setObjectName(QStringLiteral("applicationRunning"));
        running_.setText(localized("Only &running ones"));
        running_.setToolTip(localized("Shows only applications that are running now"));
        running_.setVisible(model_->hasRunning());
        connect(&search_, &QLineEdit::textChanged, this, &Chooser::find);
        connect(&running_, &QCheckBox::toggled, this, &Chooser::find);
    }

    void setUpList(bool allowsSeveral) {
        list_.setObjectName(QStringLiteral("applicationList"));
        list_.setAccessibleName(localized("Installed applications"));
        list_.setAccessibleDescription(localized("The applications that can be chosen"));
        list_.setModel(model_);
        list_.setSelectionMode(allowsSeveral ? QAbstractItemView::ExtendedSelection
                                             : QAbstractItemView::SingleSelection);
        if (allowsSeveral) list_.setToggleHandler([this] { toggleCurrent(); });
        connect(&list_, &QListView::doubleClicked, this, [this](const QModelIndex& index) {
            if (index.flags() & Qt::ItemIsSelectable) acceptSelection();
        });
        connect(list_.selectionModel(), &QItemSelectionModel::selectionChanged, this, &Chooser::noteSelection);
        connect(list_.selectionModel(), &QItemSelectionModel::currentChanged, this, &Chooser::pass);
    }

    void setUpState(bool allowsSeveral) {
        state_.setObjectName(QStringLiteral("applicationState"));
        state_.setTextFormat(Qt::PlainText);
        state_.setWordWrap(true);
        none_.setObjectName(QStringLiteral("applicationNone"));
        none_.setText(localized("Select &None"));
        none_.setToolTip(localized("Deselects every application, even those not shown"));
        none_.setAutoDefault(false);
        none_.setVisible(allowsSeveral);
        connect(&none_, &QPushButton::clicked, this, [this] {
            selected_.clear();
            passed_ = kNone;
            showSelection();
            search_.setFocus();
        });
    }

    void setUpButtons() {
        add_ = buttons_.addButton(prompt_, QDialogButtonBox::AcceptRole);
        add_->setObjectName(QStringLiteral("applicationAdd"));
        add_->setDefault(true);
        add_->setToolTip(localized("Takes the selected applications"));
        QPushButton* cancel = buttons_.button(QDialogButtonBox::Cancel);
        cancel->setText(localized("&Cancel"));
        cancel->setToolTip(localized("Leaves the list as it was"));
        QPushButton* other = buttons_.addButton(localized("&Other…"), QDialogButtonBox::ActionRole);
        other->setObjectName(QStringLiteral("applicationOther"));
        other->setToolTip(localized("Choose application files from anywhere"));
        other->setAutoDefault(false);
        connect(add_, &QPushButton::clicked, this, &Chooser::acceptSelection);
        connect(&buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
        connect(other, &QPushButton::clicked, this, &Chooser::chooseElsewhere);
    }

    void layOut() {
        auto* below = new QHBoxLayout;
        below->addWidget(&state_, 1);
        below->addWidget(&none_);
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(&search_);
        layout->addWidget(&running_);
        layout->addWidget(&list_, 1);
        layout->addLayout(below);
        layout->addWidget(&buttons_);
        resize(kPreferredSize);
    }

    // Between the user's keys, so that the first search need not wait.
    void prepareSoon() {
        QTimer::singleShot(0, this, [this] {
            if (!model_->prepare(kSlice)) prepareSoon();
        });
    }

    // What was selected on purpose stays so, in sight or not. What the search finds first is what Return adds.
    void find() {
        selected_.erase(std::exchange(passed_, kNone));
        model_->search(search_.text(), running_.isChecked());
        const bool isSearch = !search_.text().trimmed().isEmpty() && model_->rowCount() > 0;
        const QModelIndex first = isSearch ? model_->index(0, 0) : QModelIndex();
        select(first);
        showSelection();
        list_.selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
    }

    // In as few ranges as can be: the view is slow with many.
    void showSelection() {
        const QScopedValueRollback quiet(isShowing_, true);
        const int rows = selected_.empty() ? 0 : model_->rowCount();
        const auto isSelected = [&](int row) { return row < rows && selected_.count(model_->numberAt(row)) > 0; };
        QItemSelection selection;
        for (int row = 0, end = 0; row < rows; row = end + 1) {
            for (end = row; isSelected(end);) ++end;
            if (end > row) selection.select(model_->index(row, 0), model_->index(end - 1, 0));
        }
        list_.selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
        showState();
    }

    void noteSelection(const QItemSelection& selected, const QItemSelection& deselected) {
        if (isShowing_) return;
        for (const QModelIndex& index : deselected.indexes()) selected_.erase(model_->numberAt(index.row()));
        for (const QModelIndex& index : selected.indexes()) selected_.insert(model_->numberAt(index.row()));
        passed_ = kNone;
        showState();
    }

    // What the cursor comes to is selected until it leaves, together with what was selected on purpose.
    void pass(const QModelIndex& current) {
        if (!list_.isPassing()) return;
        selected_.erase(std::exchange(passed_, kNone));
        if (list_.selectionMode() == QAbstractItemView::SingleSelection) selected_.clear();
        select(current);
        showSelection();
    }

    void select(const QModelIndex& row) {
        if ((row.flags() & Qt::ItemIsSelectable) && selected_.insert(model_->numberAt(row.row())).second)
            passed_ = model_->numberAt(row.row());
    }

    // What was only passed stays selected from now on.
    void toggleCurrent() {
        const QModelIndex current = list_.currentIndex();
        if (!current.isValid()) return;
        if (passed_ == model_->numberAt(current.row()))
            passed_ = kNone;
        else
            list_.selectionModel()->select(current, QItemSelectionModel::Toggle);
    }

    QString namesOfSelected(int most) const {
        QString names;
        int count = 0;
        for (int number : selected_) {
            if (count++ == most) break;
            const std::string name = shortened(toQString(model_->application(number).name), kLongestName).toStdString();
            names = names.isEmpty() ? toQString(name) : localized("%@, %@", {names.toStdString(), name});
        }
        const int others = static_cast<int>(selected_.size()) - most;
        return others > 0 ? localized("%@ and %d more", {names.toStdString(), others}) : names;
    }

    void showState() {
        const int count = static_cast<int>(selected_.size());
        add_->setEnabled(count > 0);
        add_->setText(count > 1 ? localized("Add %d", {count}) : prompt_);
        none_.setEnabled(count > 0);
        const int found = model_->rowCount();
        state_.setText(count > 0 ? localized("%d selected: %@", {count, namesOfSelected(kMostNames).toStdString()})
                                 : localized("%d found", {found}));
        state_.setToolTip(count > kMostNames ? namesOfSelected(kMostInToolTip) : QString());
        const QString nothing = localized("No application was found. “Other…” takes one from anywhere on the disk.");
        list_.sayWhyEmpty(found == 0 ? nothing : QString());
        list_.setAccessibleDescription(found == 0 ? nothing : localized("The applications that can be chosen"));
    }

    void acceptSelection() {
        for (int number : selected_) chosen_.push_back(model_->application(number).path);
        if (!chosen_.empty()) accept();
    }

    void chooseElsewhere() {
        const AnywhereTexts texts{windowTitle(), localized("Applications (*.desktop *.app)"),
                                  localized("All files (*)")};
        openAnywhereChooser(this, folder_, texts, [this](const QStringList& paths) {
            for (const QString& path : paths) chosen_.push_back(path.toStdString());
            accept();
        });
    }

    static constexpr int kNone = -1, kLongestName = 40;
    const QString folder_, prompt_;
    const Bundle* const texts_;
    QLineEdit& search_;
    QCheckBox& running_;
    ApplicationList& list_;
    QLabel& state_;
    QPushButton& none_;
    QDialogButtonBox& buttons_;
    ApplicationModel* model_ = nullptr;
    QPushButton* add_ = nullptr;
    std::set<int> selected_;  // by the applications' numbers, shown or not
    int passed_ = kNone;      // the one of them that goes when the search does
    bool isShowing_ = false;  // the list is made to show what is selected
    std::vector<std::string> chosen_;
};

}  // namespace

void openApplicationChooser(QWidget* window, const OpenPanelRequest& request,
                            std::vector<ChoosableApplication> applications,
                            std::function<QIcon(const std::string&)> iconOf, const Bundle* texts,
                            std::function<void(std::vector<std::string>)> didEnd) {
    auto* chooser = new Chooser(window, request, std::move(applications), std::move(iconOf), texts);
    QObject::connect(chooser, &QDialog::finished, chooser, [chooser, didEnd = std::move(didEnd)](int result) {
        didEnd(result == QDialog::Accepted ? chooser->chosen() : std::vector<std::string>());
    });
    chooser->open();
}

}  // namespace qt
