// The plugin that System Settings and kcmshell load.
#include "host/kcm/BundlePlace.h"
#include "host/kcm/PanePage.h"
#include "qt/texts/ForeignText.h"
#include "qt/texts/Utf8.h"

#include <KCModule>
#include <KJsonUtils>
#include <KPluginFactory>
#include <KPluginMetaData>

#include <QLabel>
#include <QPointer>
#include <QVBoxLayout>

#if QT_VERSION_MAJOR < 6
// The module is the page itself with KDE Frameworks 5, and has one with 6.
class ModuleOfEitherFrameworks : public KCModule {
public:
    using Parent = QWidget;
    ModuleOfEitherFrameworks(QWidget* parent, const KPluginMetaData&, const QVariantList& arguments)
        : KCModule(parent, arguments) {}
    // There are no defaults to go back to; and System Settings shows the title of a page once it has heard this.
    void load() override { Q_EMIT defaulted(true); }
    QWidget* widget() { return this; }
};
#else
class ModuleOfEitherFrameworks : public KCModule {
public:
    using Parent = QObject;
    ModuleOfEitherFrameworks(QObject* parent, const KPluginMetaData& plugin, const QVariantList&)
        : KCModule(parent, plugin) {}
};
#endif

namespace {

QLabel* messageInPlaceOfPane(const KPluginMetaData& plugin, const std::string& problem) {
    QString heading = KJsonUtils::readTranslatedString(plugin.rawData(), QStringLiteral("X-Typeslate-NoPane"));
    auto* label = new QLabel(QStringLiteral("<b>%1</b><p>%2</p>")
                                 .arg(heading.toHtmlEscaped(), qt::breakable(qt::toQString(problem)).toHtmlEscaped()));
    label->setTextFormat(Qt::RichText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignCenter);
    return label;
}

}  // namespace

// A change is stored and announced as it is made, so there is nothing to apply or to reset; and the pane has no
// defaults to go back to for all of it at once.
class TypeslateModule final : public ModuleOfEitherFrameworks {
public:
    TypeslateModule(Parent* parent, const KPluginMetaData& plugin, const QVariantList& arguments)
        : ModuleOfEitherFrameworks(parent, plugin, arguments) {
        setButtons(NoAdditionalButton);
        auto* layout = new QVBoxLayout(widget());
        layout->setContentsMargins(0, 0, 0, 0);
        std::string problem = page_->load(kcm::bundlePlace());
        layout->addWidget(problem.empty() ? static_cast<QWidget*>(page_) : messageInPlaceOfPane(plugin, problem));
    }
    ~TypeslateModule() override {
        if (page_) page_->retire();
    }

private:
    QPointer<kcm::PanePage> page_ = new kcm::PanePage;
};

K_PLUGIN_CLASS_WITH_JSON(TypeslateModule, "kcm_typeslate.json")

#include "kcm_typeslate.moc"
