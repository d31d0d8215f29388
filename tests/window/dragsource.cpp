// A window that can be dragged from, as a file manager can: it offers the files named on the command line.
#include <QApplication>
#include <QDrag>
#include <QLabel>
#include <QMimeData>
#include <QUrl>

namespace {

class Source final : public QLabel {
public:
    explicit Source(const QStringList& files) : QLabel(QStringLiteral("Drag me")) {
        for (const QString& file : files) urls_ << QUrl::fromLocalFile(file);
        setWindowTitle(QStringLiteral("dragsource"));
        resize(120, 60);
    }

protected:
    void mouseMoveEvent(QMouseEvent*) override {
        auto* drag = new QDrag(this);
        auto* files = new QMimeData;
        files->setUrls(urls_);
        drag->setMimeData(files);
        drag->exec(Qt::CopyAction);
    }

private:
    QList<QUrl> urls_;
};

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    Source source(application.arguments().mid(1));
    source.show();
    return application.exec();
}
