// A small editor with a font button. Its menu is the one that the user's Typeslate settings ask for, and becomes
// another one as soon as they change.
//
//     fontpicker [IDENTIFIER]      for which application it asks; org.example.FontPicker by default
#include <typeslate.h>

#include <QApplication>
#include <QFile>
#include <QFontDatabase>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSocketNotifier>
#include <QVBoxLayout>

#include <memory>

namespace {

using Menu = std::shared_ptr<const typeslate_menu>;  // with whoever shows a part of it
using Entry = std::unique_ptr<typeslate_entry, decltype(&typeslate_entry_free)>;

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

QFont fontOf(const typeslate_item& item) {
    // One that is kept from programs is known by its file only.
    if (!item.is_active) QFontDatabase::addApplicationFont(QFile::decodeName(item.file));
    QFont font(text(item.family));
    font.setStyleName(text(item.style));
    return font;
}

// A picture of one line of text, as wide as it needs to be.
QIcon picture(const QString& line, const QFont& font, const QPalette& palette) {
    const QFontMetrics metrics(font);
    QPixmap pixmap(std::max(metrics.horizontalAdvance(line), 16), std::max(metrics.height(), 16));
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setFont(font);
    painter.setPen(palette.color(QPalette::WindowText));
    painter.drawText(pixmap.rect(), Qt::AlignCenter, line);
    return pixmap;
}

// A few characters that the font is for.
QString sampleOf(const QFont& font) {
    const auto systems = QFontDatabase::writingSystems(font.family());
    return QFontDatabase::writingSystemSample(systems.isEmpty() ? QFontDatabase::Symbol : systems.constLast()).left(6);
}

class FontPicker : public QWidget {
public:
    explicit FontPicker(QByteArray identifier) : identifier_(std::move(identifier)) {
        setWindowTitle(QStringLiteral("Font picker"));
        button_.setAccessibleName(QStringLiteral("Font"));
        sample_.setPlainText(QStringLiteral("The quick brown fox jumps over the lazy dog.\n0123456789"));
        explanation_.setWordWrap(true);
        auto* layout = new QVBoxLayout(this);
        for (QWidget* widget :
             {static_cast<QWidget*>(&button_), static_cast<QWidget*>(&sample_), static_cast<QWidget*>(&explanation_)})
            layout->addWidget(widget);
        button_.setFocus();
        notifier_.reset(new QSocketNotifier(typeslate_descriptor(settings_.get()), QSocketNotifier::Read));
        connect(notifier_.get(), &QSocketNotifier::activated, this, [this] {
            int changed = 0;
            typeslate_refresh(settings_.get(), &changed);
            if (changed) showMenu();
        });
        showMenu();
    }

private:
    void showMenu() {
        typeslate_application me{};
        me.identifier = identifier_.constData();
        me.name = "Font picker";
        const Entry entry(typeslate_resolve(settings_.get(), &me), typeslate_entry_free);
        int status = 0;
        const Menu menu(typeslate_menu_new(settings_.get(), entry.get(), current_.constData(), nullptr, &status),
                        [](const typeslate_menu* gone) { typeslate_menu_free(const_cast<typeslate_menu*>(gone)); });
        auto* fonts = new QMenu(this);
        if (menu) fill(*fonts, menu->items, menu->item_count, menu);
        connect(fonts, &QMenu::triggered, this, [this](QAction* action) { choose(action); });
        if (QMenu* old = button_.menu()) {
            old->close();
            old->deleteLater();
        }
        button_.setMenu(fonts);
        button_.setText(current_.isEmpty() ? QStringLiteral("Choose a font") : text(current_));
        explanation_.setText(menu ? QStringLiteral("Entry “%1” of Typeslate's list: %2 lines at the top for %3 faces.")
                                        .arg(text(typeslate_entry_name(entry.get())))
                                        .arg(menu->lines)
                                        .arg(menu->faces)
                                  : text(typeslate_status_text(status)));
    }

    // Submenus are filled when they are opened: measuring a thousand faces takes its time.
    void fill(QMenu& menu, const typeslate_item* const* items, std::size_t count, const Menu& tree) {
        for (std::size_t at = 0; at < count; ++at) add(menu, *items[at], tree);
    }

    void add(QMenu& menu, const typeslate_item& item, const Menu& tree) {
        QString title = text(item.title).replace(QLatin1Char('&'), QStringLiteral("&&"));
        if (*item.detail) title += QStringLiteral(" (%1)").arg(text(item.detail));
        if (item.copies > 1) title += QStringLiteral("  ×%1").arg(item.copies);
        if (item.kind == TYPESLATE_ITEM_SEPARATOR) {
            menu.addSeparator();
        } else if (item.kind == TYPESLATE_ITEM_TITLE) {
            menu.addSection(title);
        } else if (item.kind == TYPESLATE_ITEM_SUBMENU) {
            QMenu* inner = menu.addMenu(title);
            dress(*inner->menuAction(), item);
            connect(inner, &QMenu::aboutToShow, this, [this, inner, &item, tree] {
                if (inner->isEmpty()) fill(*inner, item.items, item.item_count, tree);
            });
        } else {
            QAction* action = menu.addAction(title);
            dress(*action, item);
            action->setProperty("face", text(item.full_name));
            action->setData(fontOf(item));
            action->setEnabled(item.is_active);
        }
    }

    void dress(QAction& action, const typeslate_item& item) {
        static const QString sKinds[] = {{},
                                         QStringLiteral("TT"),
                                         QStringLiteral("O"),
                                         QStringLiteral("V"),
                                         QStringLiteral("T1"),
                                         QStringLiteral("B")};
        QFont face = item.drawing == TYPESLATE_DRAWN_IN_FACE ? fontOf(item) : font();
        if (item.size > 0) face.setPointSize(item.size);
        action.setFont(face);
        action.setCheckable(item.is_marked);
        action.setChecked(item.is_marked);
        if (item.drawing == TYPESLATE_DRAWN_WITH_SAMPLE)
            action.setIcon(picture(sampleOf(fontOf(item)), fontOf(item), palette()));
        else if (item.icon != TYPESLATE_NO_ICON)
            action.setIcon(picture(sKinds[item.icon], font(), palette()));
    }

    void choose(QAction* action) {
        current_ = action->property("face").toString().toUtf8();
        QFont font = action->data().value<QFont>();
        font.setPointSize(24);
        sample_.setFont(font);
        showMenu();
    }

    const QByteArray identifier_;
    QByteArray current_;
    std::unique_ptr<typeslate_settings, decltype(&typeslate_close)> settings_{typeslate_open(nullptr), typeslate_close};
    QPushButton button_;
    QPlainTextEdit sample_;
    QLabel explanation_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace

int main(int count, char** arguments) {
    QApplication application(count, arguments);
    QApplication::setDesktopFileName(QStringLiteral("org.example.FontPicker"));
    FontPicker picker(count > 1 ? arguments[1] : "org.example.FontPicker");
    picker.resize(420, 320);
    picker.show();
    return QApplication::exec();
}
