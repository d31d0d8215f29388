#include "host/panehost/ToolkitTexts.h"

#include "linux/system/FolderBundle.h"

#include <QCoreApplication>
#include <QLibraryInfo>

#include <filesystem>

namespace host {
namespace {

QString translationsFolder() {
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return QLibraryInfo::location(QLibraryInfo::TranslationsPath);
#else
    return QLibraryInfo::path(QLibraryInfo::TranslationsPath);
#endif
}

// Named by the folder that the texts are found in.
std::string languageOf(const std::string& bundlePath) {
    const auto bundle = linux::FolderBundle::open(bundlePath);
    const auto texts = bundle ? bundle->resourcePath("Localizable", "strings") : std::nullopt;
    return texts ? std::filesystem::path(*texts).parent_path().stem().string() : std::string();
}

}  // namespace

std::unique_ptr<QTranslator> toolkitTexts(const std::string& bundlePath) {
    auto translator = std::make_unique<QTranslator>();
    const QString file = QStringLiteral("qtbase_") + QString::fromStdString(languageOf(bundlePath));
    const bool isInstalled =
        translator->load(file, translationsFolder()) && QCoreApplication::installTranslator(translator.get());
    return isInstalled ? std::move(translator) : nullptr;
}

}  // namespace host
