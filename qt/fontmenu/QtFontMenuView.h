// A tree that shows a font menu as it would unfold. Faces are drawn only when they come in sight.
#pragma once

#include "qt/controls/WidgetView.h"
#include "qt/fontmenu/FontMenuDelegate.h"
#include "qt/fontmenu/FontMenuModel.h"

#include <QLabel>
#include <QTreeView>

namespace qt {

class QtFontMenuView final : public QObject, public WidgetView<platform::FontMenuView, QTreeView> {
public:
    // The texts outlive it.
    QtFontMenuView(QTreeView& widget, const platform::Bundle& texts);
    void setMenu(std::shared_ptr<const platform::ListedFonts> fonts,
                 std::vector<platform::FontMenuItem> items) override;
    void setPlaceholder(std::string_view text) override;

private:
    bool eventFilter(QObject* object, QEvent* event) override;
    void showPlaceholder();
    void collectUnfolded(const QModelIndex& parent, QList<QStringList>& paths) const;

    const QString designedDescription_;
    FontMenuModel model_;
    FontMenuDelegate delegate_;
    QLabel* placeholder_;  // the widget's
};

}  // namespace qt
