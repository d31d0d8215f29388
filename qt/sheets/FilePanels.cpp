#include "qt/sheets/FilePanels.h"

#include "qt/texts/ForeignText.h"
#include "qt/texts/Utf8.h"

#include <QButtonGroup>
#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <utility>

namespace qt {

using namespace platform;

namespace {

constexpr int kLongestChoice = 100;  // characters

QString localized(const Bundle* texts, const char* english) {
    return texts ? toQString(texts->localizedString(english)) : QString::fromUtf8(english);
}

// The desktop's own dialog, where it has one.
QFileDialog* makeFileDialog(QWidget* window, const std::string& title, const char* name) {
    auto* dialog = new QFileDialog(window, toQString(title));
    dialog->setObjectName(QString::fromUtf8(name));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::WindowModal);
    return dialog;
}

std::vector<std::string> chosenIn(const QFileDialog& dialog, int result) {
    std::vector<std::string> paths;
    if (result != QDialog::Accepted) return paths;
    const QStringList files = dialog.selectedFiles();
    for (const QString& file : files) paths.push_back(QFile::encodeName(file).toStdString());
    return paths;
}

}  // namespace

void openFilePanel(QWidget* window, const OpenPanelRequest& request, const Bundle* texts,
                   std::function<void(std::vector<std::string>)> didEnd) {
    QFileDialog* dialog = makeFileDialog(window, request.title, "openPanel");
    QStringList patterns;
    for (const std::string& type : request.allowedTypes) patterns << QStringLiteral("*.") + toQString(type);
    dialog->setNameFilters(
        {QStringLiteral("%1 (%2)").arg(patterns.join(QStringLiteral(", ")), patterns.join(QLatin1Char(' '))),
         localized(texts, "All files (*)")});
    dialog->setFileMode(request.allowsMultipleSelection ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
    dialog->setLabelText(QFileDialog::Accept, toQString(request.prompt));
    QObject::connect(dialog, &QDialog::finished, dialog,
                     [dialog, didEnd = std::move(didEnd)](int result) { didEnd(chosenIn(*dialog, result)); });
    dialog->open();
}

void openSavePanel(QWidget* window, const SavePanelRequest& request, std::function<void(const std::string&)> didEnd) {
    QFileDialog* dialog = makeFileDialog(window, request.title, "savePanel");
    QStringList filters;
    for (const auto& [name, ending] : request.types)
        filters << QStringLiteral("%1 (*.%2)").arg(toQString(name), toQString(ending));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilters(filters);
    auto endAs = [dialog, filters, types = request.types](const QString& filter) {
        const auto type = static_cast<std::size_t>(std::max<qsizetype>(filters.indexOf(filter), 0));
        dialog->setDefaultSuffix(toQString(types[type].ending));
    };
    endAs({});
    QObject::connect(dialog, &QFileDialog::filterSelected, dialog, endAs);
    dialog->selectFile(toQString(request.name));
    QObject::connect(dialog, &QDialog::finished, dialog, [dialog, didEnd = std::move(didEnd)](int result) {
        const std::vector<std::string> paths = chosenIn(*dialog, result);
        didEnd(paths.empty() ? std::string() : paths.front());
    });
    dialog->open();
}

void openChoice(QWidget* window, const ChoiceRequest& request, const Bundle* texts, std::function<void(int)> didEnd) {
    auto* dialog = new QDialog(window, Qt::Sheet);
    dialog->setObjectName(QStringLiteral("choiceSheet"));
    dialog->setWindowTitle(toQString(request.title));
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    auto* layout = new QVBoxLayout(dialog);
    auto* group = new QButtonGroup(dialog);
    for (const std::string& choice : request.choices) {
        QString title = shortened(asOneLine(toQString(choice)), kLongestChoice);
        auto* button = new QRadioButton(title.replace(QLatin1Char('&'), QStringLiteral("&&")), dialog);
        group->addButton(button, static_cast<int>(group->buttons().size()));
        layout->addWidget(button);
    }
    if (QAbstractButton* first = group->button(0)) {
        first->setChecked(true);
        first->setFocus();
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, dialog);
    buttons->addButton(toQString(request.prompt), QDialogButtonBox::AcceptRole)->setDefault(true);
    buttons->button(QDialogButtonBox::Cancel)->setText(localized(texts, "&Cancel"));
    layout->addWidget(buttons);
    QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    QObject::connect(dialog, &QDialog::finished, dialog, [group, didEnd = std::move(didEnd)](int result) {
        didEnd(result == QDialog::Accepted ? group->checkedId() : -1);
    });
    dialog->open();
}

}  // namespace qt
