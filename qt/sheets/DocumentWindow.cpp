#include "qt/sheets/DocumentWindow.h"

#include <QFontMetrics>
#include <QScreen>
#include <QShortcut>
#include <QTextBlock>
#include <QVBoxLayout>

#include <utility>

namespace qt {

namespace {

// Of a page that reads well, in the width of an M and lines.
constexpr int kColumns = 50, kLines = 42;
// Of the screen's height, and no more.
constexpr double kTallest = 0.8;

}  // namespace

DocumentWindow::DocumentWindow(const QString& closeHint, std::function<void(const QUrl& link)> follow)
    : text_(*new QTextBrowser(this)),
      view_(text_),
      line_(*new MessageLine(*this, closeHint, {}, [this] { line_.sayNothing(); })) {
    setObjectName(QStringLiteral("documentWindow"));
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowFlags(Qt::Window);
    text_.setFrameShape(QFrame::NoFrame);
    text_.setOpenLinks(false);
    text_.document()->setDocumentMargin(fontMetrics().height());
    text_.document()->setIndentWidth(1.5 * fontMetrics().height());
    connect(&text_, &QTextBrowser::anchorClicked, this, std::move(follow));
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QWidget::close);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    layout->addWidget(&text_, 1);
    layout->addWidget(&line_);
    const QFontMetrics metrics = fontMetrics();
    const int tallest = static_cast<int>(screen()->availableGeometry().height() * kTallest);
    resize(metrics.horizontalAdvance(QLatin1Char('M')) * kColumns, qMin(metrics.lineSpacing() * kLines, tallest));
}

bool DocumentWindow::load(const QString& folder) {
    if (!view_.loadRichText(folder.toStdString())) return false;
    setWindowTitle(text_.document()->begin().text());
    text_.setAccessibleName(windowTitle());
    return true;
}

void DocumentWindow::say(const QString& message) { line_.say(MessageLine::Tone::Information, message, {}); }

}  // namespace qt
