#include "platform/qt/QtToolkit.h"
#include "tests/qt/QtTest.h"

#include <QImage>

using namespace platform;
using namespace platform::qt;

namespace {

QString in(const check::TemporaryFolder& folder, const char* name) { return QString::fromStdString(folder / name); }

void writePicture(const QString& path, QColor color, int extent = 32) {
    QImage image(extent, extent, QImage::Format_ARGB32);
    image.fill(color);
    REQUIRE(image.save(path, "PNG"));
}

std::string element(const char* type, const std::string& payload) {
    auto length = static_cast<std::uint32_t>(payload.size() + 8);
    std::string text(type);
    for (int shift : {24, 16, 8, 0}) text += static_cast<char>(length >> shift);
    return text + payload;
}

QColor colorOf(const ImageRef& image) { return QtImage::of(image)->icon().pixmap(32, 32).toImage().pixelColor(16, 16); }

}  // namespace

TEST(ImagesOfEveryShippedKindAreReadAndOthersRefused) {
    useApplication();
    ExpectWarning warning("b.svg");
    check::TemporaryFolder folder;
    QtToolkit toolkit({});
    writePicture(in(folder, "red.png"), Qt::red);
    std::string png = check::readFile(folder / "red.png");
    std::string svg =
        "<svg xmlns='http://www.w3.org/2000/svg' width='8' height='8'>"
        "<rect width='8' height='8' fill='#f00'/></svg>";
    struct {
        const char* name;
        std::string bytes;
        bool isImage;
    } const cases[] = {
        {"a.png", png, true},
        {"a.svg", svg, true},
        {"a.icns", element("icns", element("ic04", "no picture") + element("icp5", png)), true},
        {"cut.icns", element("icns", element("icp5", png)).substr(0, 60), false},
        {"zero.icns", element("icns", std::string(64, '\0')), false},
        {"empty.icns", "", false},
        {"b.svg", "<svg", false},
        {"b.png", "no picture", false},
    };
    for (const auto& c : cases) {
        CONTEXT(c.name);
        REQUIRE(check::writeFile(folder / c.name, c.bytes));
        ImageRef image = toolkit.imageAtPath(folder / c.name);
        CHECK_EQ(image != nullptr, c.isImage);
        if (image && c.isImage) CHECK(colorOf(image) == QColor(Qt::red));
    }
    CHECK(!toolkit.imageAtPath(folder / "missing.png"));
    CHECK(!toolkit.imageAtPath(folder.path()));
}

TEST(AnImageIsKeptUntilItsFileChanges) {
    useApplication();
    check::TemporaryFolder folder;
    QtToolkit toolkit({});
    writePicture(in(folder, "a.png"), Qt::red);
    ImageRef first = toolkit.imageAtPath(folder / "a.png");
    CHECK(toolkit.imageAtPath(folder / "a.png") == first);
    writePicture(in(folder, "a.png"), Qt::blue);
    QFile file(in(folder, "a.png"));
    REQUIRE(file.open(QIODevice::ReadWrite));
    REQUIRE(file.setFileTime(QDateTime::currentDateTime().addSecs(60), QFileDevice::FileModificationTime));
    CHECK(colorOf(toolkit.imageAtPath(folder / "a.png")) == QColor(Qt::blue));
}

TEST(AFileShowsTheIconOfItsApplicationOnceItIsNeeded) {
    useApplication();
    check::TemporaryFolder folder;
    writePicture(in(folder, "icon.png"), Qt::green);
    int questions = 0;
    QtToolkit toolkit([&](std::string_view path) {
        ++questions;
        return path.ends_with(".desktop") ? folder / "icon.png" : std::string();
    });
    ImageRef icon = toolkit.workspaceIcon(folder / "a.desktop");
    CHECK(toolkit.workspaceIcon(folder / "a.desktop") == icon);
    CHECK_EQ(questions, 0);
    CHECK(colorOf(icon) == QColor(Qt::green));
    CHECK(!QtImage::of(toolkit.workspaceIcon(folder / "b"))->icon().isNull());
    CHECK(!QtImage::of(toolkit.genericApplicationIcon())->icon().isNull());
    CHECK_EQ(questions, 2);

    toolkit.setApplicationIcon(icon);
    toolkit.setApplicationIcon(nullptr);
    CHECK(colorOf(toolkit.applicationIcon()) == QColor(Qt::green));
}
