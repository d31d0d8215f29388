#include "qt/sheets/ApplicationChooser.h"

#include "qt/sheets/AnywhereChooser.h"
#include "qt/texts/PlainToolTips.h"
#include "qt/texts/Utf8.h"

#include <QAbstractListModel>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace qt {

using namespace platform;

namespace {

constexpr int kPathRole = Qt::UserRole;
constexpr int kIconSize = 32;
constexpr QSize kPreferredSize(420, 480);

class ApplicationModel final : public QAbstractListModel {
public:
    ApplicationModel(const std::vector<ChoosableApplication>& applications,
                     std::function<QIcon(const std::string&)> iconOf, QObject* parent)
        : QAbstractListModel(parent), applications_(applications), iconOf_(std::move(iconOf)) {}

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(applications_.size());
    }
    QVariant data(const QModelIndex& index, int role) const override {
        const ChoosableApplication& application = applications_[static_cast<std::size_t>(index.row())];
        switch (role) {
            case Qt::DisplayRole:
                return toQString(application.name);
            case Qt::DecorationRole:
                return iconOf_(application.path);
            case Qt::ToolTipRole:
            case kPathRole:
                return toQString(application.path);
            default:
                return {};
        }
    }

private:
    const std::vector<ChoosableApplication> applications_;
    const std::function<QIcon(const std::string&)> iconOf_;
};

class Chooser final : public QDialog {
public:
    Chooser(QWidget* window, const OpenPanelRequest& request, const std::vector<ChoosableApplication>& applications,
            std::function<QIcon(const std::string&)> iconOf, const Bundle* texts)
        : QDialog(window, Qt::Sheet), folder_(toQString(request.folder)), texts_(texts) {
        setObjectName(QStringLiteral("applicationChooser"));
        setWindowTitle(toQString(request.title));
        setWindowModality(Qt::WindowModal);
        setAttribute(Qt::WA_DeleteOnClose);
        setUpList(request, new ApplicationModel(applications, std::move(iconOf), this));
        setUpButtons(request);
        auto* layout = new QVBoxLayout(this);
        for (QWidget* part : std::initializer_list<QWidget*>{search_, list_, buttons_}) layout->addWidget(part);
        resize(kPreferredSize);
        showPlainToolTips(*this);
        search_->setFocus();
        showState();
    }

    std::vector<std::string> chosen() const { return chosen_; }

private:
    QString localized(const char* english) const {
        return texts_ ? toQString(texts_->localizedString(english)) : QString::fromUtf8(english);
    }

    void setUpList(const OpenPanelRequest& request, ApplicationModel* model) {
        filter_ = new QSortFilterProxyModel(this);
        filter_->setSourceModel(model);
        filter_->setFilterCaseSensitivity(Qt::CaseInsensitive);
        search_ = new QLineEdit(this);
        search_->setObjectName(QStringLiteral("applicationSearch"));
        search_->setPlaceholderText(localized("Search applications"));
        search_->setAccessibleName(localized("Search applications"));
        search_->setToolTip(localized("Shows only applications whose name contains this text"));
        search_->setClearButtonEnabled(true);
        list_ = new QListView(this);
        list_->setObjectName(QStringLiteral("applicationList"));
        list_->setAccessibleName(localized("Installed applications"));
        list_->setAccessibleDescription(localized("The applications that can be chosen"));
        list_->setModel(filter_);
        list_->setIconSize({kIconSize, kIconSize});
        list_->setUniformItemSizes(true);
        list_->setSelectionMode(request.allowsMultipleSelection ? QAbstractItemView::ExtendedSelection
                                                                : QAbstractItemView::SingleSelection);
        connect(search_, &QLineEdit::textChanged, this, [this](const QString& wanted) {
            filter_->setFilterFixedString(wanted);
            // What the search finds first is what Return adds.
            if (wanted.isEmpty())
                list_->clearSelection();
            else
                list_->setCurrentIndex(filter_->index(0, 0));
            showState();
        });
        connect(list_, &QListView::doubleClicked, this, &Chooser::acceptSelection);
        connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this, &Chooser::showState);
    }

    void setUpButtons(const OpenPanelRequest& request) {
        buttons_ = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
        add_ = buttons_->addButton(toQString(request.prompt), QDialogButtonBox::AcceptRole);
        add_->setObjectName(QStringLiteral("applicationAdd"));
        add_->setDefault(true);
        add_->setToolTip(localized("Takes the selected applications"));
        QPushButton* cancel = buttons_->button(QDialogButtonBox::Cancel);
        cancel->setText(localized("&Cancel"));
        cancel->setToolTip(localized("Leaves the list as it was"));
        QPushButton* other = buttons_->addButton(localized("&Other…"), QDialogButtonBox::ActionRole);
        other->setObjectName(QStringLiteral("applicationOther"));
        other->setToolTip(localized("Choose application files from anywhere"));
        other->setAutoDefault(false);
        connect(add_, &QPushButton::clicked, this, &Chooser::acceptSelection);
        connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
        connect(other, &QPushButton::clicked, this, &Chooser::chooseElsewhere);
    }

    void showState() { add_->setEnabled(list_->selectionModel()->hasSelection()); }

    void acceptSelection() {
        QModelIndexList rows = list_->selectionModel()->selectedIndexes();
        std::sort(rows.begin(), rows.end(), [](const auto& a, const auto& b) { return a.row() < b.row(); });
        for (const QModelIndex& row : std::as_const(rows))
            chosen_.push_back(row.data(kPathRole).toString().toStdString());
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

    const QString folder_;
    const Bundle* const texts_;
    QLineEdit* search_ = nullptr;
    QListView* list_ = nullptr;
    QSortFilterProxyModel* filter_ = nullptr;
    QDialogButtonBox* buttons_ = nullptr;
    QPushButton* add_ = nullptr;
    std::vector<std::string> chosen_;
};

}  // namespace

void openApplicationChooser(QWidget* window, const OpenPanelRequest& request,
                            const std::vector<ChoosableApplication>& applications,
                            std::function<QIcon(const std::string&)> iconOf, const Bundle* texts,
                            std::function<void(std::vector<std::string>)> didEnd) {
    auto* chooser = new Chooser(window, request, applications, std::move(iconOf), texts);
    QObject::connect(chooser, &QDialog::finished, chooser, [chooser, didEnd = std::move(didEnd)](int result) {
        didEnd(result == QDialog::Accepted ? chooser->chosen() : std::vector<std::string>());
    });
    chooser->open();
}

}  // namespace qt
