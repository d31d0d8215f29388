#include "qt/QtToolkit.h"
#include "qt/controls/QtTextView.h"
#include "tests/qt/QtTest.h"
#include "tests/support/Script.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTextBrowser>
#include <QTextDocument>

#include <cmath>

using namespace platform;
using namespace qt;

namespace {

QString in(const check::TemporaryFolder& folder, const char* name) { return QString::fromStdString(folder / name); }

// Of so many points in each direction, coloured by their place.
template <typename ColourAt>
QImage painted(int extent, ColourAt colourAt) {
    QImage image(extent, extent, QImage::Format_ARGB32);
    for (int y = 0; y < extent; ++y)
        for (int x = 0; x < extent; ++x) image.setPixelColor(x, y, colourAt(x, y));
    return image;
}

void writePicture(const QString& path, QColor colour, int extent = 32) {
    REQUIRE(painted(extent, [&](int, int) { return colour; }).save(path, "PNG"));
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
    const std::string png = check::readFile(folder / "red.png"), whole = element("icns", element("icp5", png));
    auto drawing = [](const std::string& inner) {
        return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='8' "
               "height='8'>"
               "<rect width='8' height='8' fill='#f00'/>" +
               inner + "</svg>";
    };
    std::string many = "<use href='#a'/>";
    for (int i = 0; i < 6; ++i) many += many;
    std::string red("\xFF\0\0", 3);
    for (int i = 0; i < 10; ++i) red += red;
    const std::tuple<const char*, std::string, bool> cases[] = {
        {"a.png", png, true},
        {"a.svg", drawing(""), true},
        {"file.svg", drawing("<image width='8' height='8' href='a.png'/>"), false},
        {"file.png", drawing("<image width='8' height='8' xlink:href='/dev/zero'/>"), false},
        {"nested.svg", drawing("<image width='8' height='8' href='data:image/svg+xml,x'/>"), false},
        {"style.svg", "<?xml-stylesheet href='a.css'?>" + drawing(""), false},
        {"used.svg", drawing("<defs><g id='a'/></defs><use href='#a'/><a href='http://b'/>"), true},
        {"bomb.svg", drawing(many), false},
        {"a.ppm", "P6 32 32 255 " + red, true},
        {"wide.ppm", "P6 4097 1 255 " + std::string(3 * 4097, '\xFF'), false},
        {"one.icns", whole, true},
        {"b.svg", "<svg", false},
        {"b.png", "no picture", false},
        {"cut.icns", whole.substr(0, whole.size() - 1), false},
        {"empty.icns", "", false},
        {"zero.icns", element("icns", std::string(64, '\0')), false},
        {"a.icns", element("icns", element("ic04", "no picture") + element("icp5", png)), true}};
    for (const auto& [name, bytes, isImage] : cases) {
        CONTEXT(name);
        check::writeFile(folder / name, bytes);
        ImageRef image = toolkit.imageAtPath(folder / name);
        CHECK_EQ(image != nullptr, isImage);
        if (image && isImage) CHECK(colorOf(image) == QColor(Qt::red));
    }
    CHECK(!toolkit.imageAtPath(folder / "missing.png") && !toolkit.imageAtPath(folder.path()));

    // Read once, and again when it has changed.
    ImageRef first = toolkit.imageAtPath(folder / "red.png");
    CHECK(toolkit.imageAtPath(folder / "red.png") == first);
    writePicture(in(folder, "red.png"), Qt::blue);
    QFile file(in(folder, "red.png"));
    REQUIRE(file.open(QIODevice::ReadWrite));
    REQUIRE(file.setFileTime(QDateTime::currentDateTime().addSecs(60), QFileDevice::FileModificationTime));
    CHECK(colorOf(toolkit.imageAtPath(folder / "red.png")) == QColor(Qt::blue));
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
    CHECK(toolkit.workspaceIcon(folder / "a.desktop") == icon && questions == 0);
    CHECK(colorOf(icon) == QColor(Qt::green));
    CHECK(!QtImage::of(toolkit.workspaceIcon(folder / "b"))->icon().isNull() && questions == 2);
    CHECK(!QtImage::of(toolkit.genericApplicationIcon())->icon().isNull());
    toolkit.setApplicationIcon(icon);
    toolkit.setApplicationIcon(nullptr);
    CHECK(colorOf(toolkit.applicationIcon()) == QColor(Qt::green));
}

TEST(TheBadgeTakesTheLowerRightQuarterPixelByPixel) {
    useApplication();
    QtToolkit toolkit({});
    auto imageOf = [](const QImage& image) -> ImageRef {
        return std::make_shared<QtImage>(QIcon(QPixmap::fromImage(image)));
    };
    // Of 128 points, the upper left quarter transparent.
    const QImage product =
        painted(128, [](int x, int y) { return QColor(2 * x, 2 * y, 255, x < 64 && y < 64 ? 0 : 255); });
    auto isNear = [](double a, double b) { return std::abs(a - b) <= 1.5; };  // half of what one of its pixels makes
    for (int extent : {128, 127}) {
        const QImage base = painted(extent, [](int x, int y) { return QColor(x * 7 % 256, y * 13 % 256, 0); });
        const double size = extent, side = std::floor(0.5 * size), scale = size / side;
        CHECK_EQ(toolkit.imageSize(imageOf(base)).width, size);
        const ImageRef badged = toolkit.imageByDrawing(imageOf(base), imageOf(product),
                                                       {{size - side, 0}, {side, side}}, {{0, 0}, {size, size}});
        CHECK_EQ(toolkit.imageSize(badged).width, size);
        const QImage result = QtImage::of(badged)->icon().pixmap(extent, extent).toImage();
        REQUIRE(result.size() == base.size());
        int wrong = 0;
        for (int y = 0; y < extent; ++y)
            for (int x = 0; x < extent; ++x) {
                // Where the pixel's centre lies in the icon. Of a larger icon the lower left corner is taken.
                const double left = (x - 64 + 0.5) * scale - 0.5, top = (y - 64 + 0.5) * scale - 0.5 + 128 - size;
                const QColor shown = result.pixelColor(x, y);
                if (x < 64 || y < 64 || (left < 62 && top < 62))
                    wrong += shown != base.pixelColor(x, y);
                else if (left > 65 || top > 65)
                    wrong += !isNear(shown.red(), 2 * left) || !isNear(shown.green(), 2 * top) || shown.blue() != 255;
            }
        CHECK_EQ(wrong, 0);
    }
}

TEST(ATextShowsPicturesOfItsOwnFolderAndOpensNothingElse) {
    useApplication();
    check::TemporaryFolder folder;
    QDir text(in(folder, "text.rtfd"));
    REQUIRE(text.mkpath(QStringLiteral("deep")));
    for (const char* name : {"text.rtfd/own.png", "text.rtfd/deep/in.png", "outside.png"})
        writePicture(in(folder, name), Qt::red);
    REQUIRE(check::writeFile(folder / "text.rtfd/text.png", "no picture"));
    QFile::link(QStringLiteral("own.png"), in(folder, "text.rtfd/inner.png"));
    QFile::link(QStringLiteral("../outside.png"), in(folder, "text.rtfd/outer.png"));
    QTextBrowser widget;
    widget.setFont(QFont(widget.font().family(), 30));
    QtTextView view(widget);
    CHECK(widget.document()->defaultFont() == widget.font());
    view.setString("before");
    CHECK(!view.loadRichText(folder / "text.rtfd"));
    CHECK_EQ(widget.toPlainText().toStdString(), "before");
    for (const std::string& line : check::linesOf(TEST_DATA "/pictures.txt")) {
        const bool isShown = line.starts_with("shown");
        const std::string name =
            QString::fromStdString(line.substr(line.find(' ') + 1)).replace("FOLDER", in(folder, "")).toStdString();
        CONTEXT(name);
        REQUIRE(check::writeFile(folder / "text.rtfd/TXT.html", "<img src='" + name + "' width=40 height=40>\xC3\xA9"));
        REQUIRE(view.loadRichText(folder / "text.rtfd"));
        CHECK(widget.toPlainText().endsWith(QChar(0xE9)));
        CHECK_EQ(widget.grab().toImage().pixelColor(20, 20) == QColor(Qt::red), isShown);
    }
    // Nothing of the text before is kept.
    REQUIRE(check::writeFile(folder / "text.rtfd/TXT.html", "<img src='own.png' width=40 height=40>"));
    for (QColor colour : {Qt::red, Qt::blue}) {
        writePicture(in(folder, "text.rtfd/own.png"), colour);
        REQUIRE(view.loadRichText(folder / "text.rtfd"));
        CHECK(widget.grab().toImage().pixelColor(20, 20) == colour);
    }
}
