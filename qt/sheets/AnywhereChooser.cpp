#include "qt/sheets/AnywhereChooser.h"

#include "qt/images/FileIcons.h"

#include <QFileDialog>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <utility>

namespace qt {

namespace {

bool isPackage(const QString& path) {
    return path.endsWith(QStringLiteral(".app")) && QFileInfo(path + QStringLiteral("/Contents/Info.plist")).isFile();
}

// The outermost package that a path leads to or into; empty without one.
QString packageOf(const QString& path) {
    const QString folders = path + QLatin1Char('/');
    for (int end = 0; (end = static_cast<int>(folders.indexOf(QLatin1Char('/'), end + 1))) > 0;)
        if (isPackage(folders.left(end))) return folders.left(end);
    return {};
}

QString applicationOf(const QString& path) {
    bool isDesktopEntry = path.endsWith(QStringLiteral(".desktop")) && QFileInfo(path).isFile();
    const QString package = isDesktopEntry ? QString() : packageOf(path);
    return package.isEmpty() ? path : package;
}

QString startFolder(const QString& wanted) {
    QStringList folders = QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
    folders.append(wanted);
    while (!folders.isEmpty() && !QFileInfo(folders.last()).isDir()) folders.removeLast();
    return folders.value(folders.size() - 1);
}

// Asked from a thread of the dialog's model, which must go first: both are the dialog's children, the model the elder.
class PackageIcons final : public QObject, public QFileIconProvider {
public:
    using QObject::QObject;
    QIcon icon(const QFileInfo& file) const override {
        return isPackage(file.filePath()) ? package_ : QFileIconProvider::icon(file);
    }
    using QFileIconProvider::icon;

private:
    const QIcon package_ = iconOfPrograms();
};

// The toolkit's own dialog: a desktop's would enter packages as any folder.
class AnywhereChooser final : public QFileDialog {
public:
    AnywhereChooser(QWidget* window, const QString& folder, const AnywhereTexts& texts)
        : QFileDialog(window, texts.title) {
        setObjectName(QStringLiteral("anywhereChooser"));
        setAttribute(Qt::WA_DeleteOnClose);
        setWindowModality(Qt::WindowModal);
        setOption(DontUseNativeDialog);
        setFileMode(ExistingFiles);
        setNameFilters({texts.applications, texts.allFiles});
        setIconProvider(new PackageIcons(this));
        setDirectory(startFolder(folder));
        connect(this, &QFileDialog::directoryEntered, this, [this](const QString& entered) {
            if (!packageOf(entered).isEmpty()) choose({entered});
        });
    }

protected:
    void accept() override {
        const QStringList files = selectedFiles();
        auto isWhole = [](const QString& file) { return QFileInfo(file).isFile() || !packageOf(file).isEmpty(); };
        bool areChosen = !files.isEmpty() && std::all_of(files.begin(), files.end(), isWhole);
        areChosen ? choose(files) : QFileDialog::accept();
    }

private:
    void choose(const QStringList& files) {
        QStringList applications;
        for (const QString& file : files) applications.append(applicationOf(file));
        Q_EMIT filesSelected(applications);
        QDialog::accept();
    }
};

}  // namespace

void openAnywhereChooser(QWidget* window, const QString& folder, const AnywhereTexts& texts,
                         std::function<void(const QStringList& paths)> didChoose) {
    auto* chooser = new AnywhereChooser(window, folder, texts);
    QObject::connect(chooser, &QFileDialog::filesSelected, chooser, std::move(didChoose));
    chooser->open();
}

}  // namespace qt
