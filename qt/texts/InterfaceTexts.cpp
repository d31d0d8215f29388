#include "qt/texts/InterfaceTexts.h"

#include "qt/texts/Utf8.h"

#include <QComboBox>
#include <QTabWidget>
#include <QVariant>

namespace qt {

using namespace platform;

namespace {

constexpr const char* kTextProperties[] = {
    "text",   "plainText",      "title",           "windowTitle",           "toolTip",
    "suffix", "accessibleName", "placeholderText", "accessibleDescription", "openTitle"};
constexpr const char* kTextListProperties[] = {"columnTitles"};

class Translator {
public:
    explicit Translator(const Bundle& texts) : texts_(texts) {}
    QString operator()(const QString& english) const {
        return english.isEmpty() ? english : toQString(texts_.localizedString(english.toStdString()));
    }

private:
    const Bundle& texts_;
};

void translateProperties(QObject& object, const Translator& translated) {
    for (const char* name : kTextProperties) {
        const QString english = object.property(name).toString();
        if (const QString text = translated(english); text != english) object.setProperty(name, text);
    }
    for (const char* name : kTextListProperties) {
        QStringList list = object.property(name).toStringList();
        for (QString& text : list) text = translated(text);
        if (!list.isEmpty()) object.setProperty(name, list);
    }
}

void translateItems(QObject& object, const Translator& translated) {
    if (auto* menu = qobject_cast<QComboBox*>(&object))
        for (int i = 0; i < menu->count(); ++i) menu->setItemText(i, translated(menu->itemText(i)));
    if (auto* tabs = qobject_cast<QTabWidget*>(&object))
        for (int i = 0; i < tabs->count(); ++i) tabs->setTabText(i, translated(tabs->tabText(i)));
}

}  // namespace

void showInUsersLanguage(QObject& object, const Bundle& texts) {
    const Translator translated(texts);
    translateProperties(object, translated);
    translateItems(object, translated);
}

}  // namespace qt
