// Names in their own faces: real fonts, files that are none, and faces that take too long.
#include "qt/fontmenu/FaceImages.h"
#include "qt/fontmenu/FontMenuSamples.h"
#include "tests/qt/QtTest.h"

#include <QElapsedTimer>

#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <latch>
#include <mutex>

using namespace qt;
using namespace std::chrono_literals;

namespace {

const std::string kSans = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
                  kMono = "/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf";

FaceText wanted(const std::string& file, const std::string& text = "Héllo", std::uint32_t index = 0) {
    return {
        .file = file, .index = index, .text = text, .size = 20, .height = 30, .mostWidth = 300, .color = 0xFF0000FF};
}

// The part that is not transparent.
QRect inked(const QImage& image) {
    QRect all;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) > 30) all |= QRect(x, y, 1, 1);
    return all;
}

// Draws nothing, and not before it may.
struct SlowDrawing {
    FaceImages::Draw draw() {
        return [this](const FaceText& text) {
            {
                const std::lock_guard lock(mutex);
                begun.push_back(text.text);
            }
            ++count;
            if (text.file == "slow") mayEnd.wait();
            QImage image(10, 10, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::red);
            ++ended;
            return image;
        };
    }
    std::vector<std::string> takeBegun() {
        const std::lock_guard lock(mutex);
        return std::exchange(begun, {});
    }
    std::mutex mutex;
    std::vector<std::string> begun;
    std::latch mayEnd{1};
    std::atomic<int> count = 0, ended = 0;
};

}  // namespace

TEST(ANameIsDrawnInItsFaceInTheColourAndSizeAskedFor) {
    const QImage hello = drawFaceText(wanted(kSans));
    REQUIRE(!hello.isNull());
    CHECK_EQ(hello.height(), 30);
    QRect ink = inked(hello);
    CHECK(ink.top() > 2 && ink.bottom() > 20 && ink.bottom() < 24 && ink.width() > 35 && ink.width() < 70);
    const QPoint stem(ink.left() + 1, 15);
    CHECK(qAlpha(hello.pixel(stem)) > 200 && qBlue(hello.pixel(stem)) == qAlpha(hello.pixel(stem)));
    CHECK(qRed(hello.pixel(stem)) == 0);
    CHECK(inked(drawFaceText(wanted(kMono))).width() > ink.width());
    FaceText twice = wanted(kSans);
    twice.size *= 2;
    twice.height *= 2;
    twice.scale = 2;
    const QImage larger = drawFaceText(twice);
    CHECK(larger.devicePixelRatio() == 2 && std::abs(inked(larger).width() - 2 * ink.width()) < 4);
    FaceText narrow = wanted(kSans, std::string(3000, 'W'));
    CHECK_EQ(drawFaceText(narrow).width(), 300);
    // Joined letters, from the right: the last one's tail is on the left.
    CHECK(inked(drawFaceText(wanted(kSans, "سلام"))).width() < inked(drawFaceText(wanted(kSans, "س ل ا م"))).width());
    CHECK(drawFaceText(wanted(kSans, "")) == drawFaceText(wanted(kSans, "℀℁ℂ℃℄")));
}

TEST(ASampleIsOfTheFontsOwnWriting) {
    using platform::WritingSystem;
    platform::FontFace face;
    CHECK_EQ(sampleFor(face), "");
    for (auto [system, sample] : {std::pair{WritingSystem::Latin, "Abcd"},
                                  {WritingSystem::Yi, "ꆈꌠ"},
                                  {WritingSystem::Thai, "กขค"},
                                  {WritingSystem::Hebrew, "אבגד"},
                                  {WritingSystem::Arabic, "أبجد"}}) {
        face.writingSystems.set(static_cast<std::size_t>(system));
        CHECK_EQ(sampleFor(face), sample);
    }
    face.isSymbolic = true;
    CHECK_EQ(sampleFor(face), "");
}

TEST(WhatCannotBeDrawnIsLeftPlain) {
    check::TemporaryFolder folder;
    const std::string whole = check::readFile(kSans);
    auto file = [&](const char* name, const std::string& bytes) {
        check::writeFile(folder / name, bytes);
        return folder / name;
    };
    REQUIRE(mkfifo((folder / "pipe").c_str(), 0600) == 0);
    file("large", whole);
    REQUIRE(truncate((folder / "large").c_str(), kLargestFontFile + 1) == 0);
    std::string type1 = "%!PS-AdobeFont-1.0: Hostile\n/FontMatrix [0 0 0 0 0 0] def eexec " + std::string(5000, 'f');
    std::string bitmap =
        "STARTFONT 2.1\nFONT x\nSIZE 8 75 75\nFONTBOUNDINGBOX 8 8 0 0\nCHARS 1\nSTARTCHAR H\nENCODING 72\n"
        "SWIDTH 500 0\nDWIDTH 8 0\nBBX 8 1 0 0\nBITMAP\nFF\nENDCHAR\nENDFONT\n";
    const std::pair<std::string, std::string> files[] = {{"missing", folder / "missing"},
                                                         {"a folder", folder.path()},
                                                         {"a pipe", folder / "pipe"},
                                                         {"empty", file("empty", "")},
                                                         {"no font", file("text", "Lorem ipsum")},
                                                         {"cut off", file("cut", whole.substr(0, 5000))},
                                                         {"too large", folder / "large"},
                                                         {"hostile", file("type1", type1)},
                                                         {"a bitmap", file("bdf", bitmap)}};
    for (const auto& [what, path] : files) {
        CONTEXT(what);
        CHECK(drawFaceText(wanted(path, "H")).isNull());
    }
    CHECK(drawFaceText(wanted(kSans, "H", 7)).isNull());
    CHECK(drawFaceText(wanted(kSans, "H漢")).isNull());
    // Whatever is changed in a file, there is a picture or none.
    std::uint32_t random = 1;
    auto next = [&] { return random = random * 1664525 + 1013904223; };
    int pictures = 0;
    for (int round = 0; round < 60; ++round) {
        std::string bytes = whole;
        for (int i = 0; i < 40; ++i) bytes[(next() >> 8) % (round % 2 ? 2000 : bytes.size())] = char(next() >> 24);
        const QImage image = drawFaceText(wanted(file("changed", bytes)));
        CHECK(image.isNull() || (image.height() == 30 && image.width() <= 300));
        pictures += !image.isNull();
    }
    CHECK(pictures > 0 && pictures < 60);
}

TEST(PicturesComeOnceAndTheNewestWishFirst) {
    useApplication();
    SlowDrawing drawing;
    int changes = 0;
    FaceImages images([&] { ++changes; }, drawing.draw(), 20s);
    CHECK(images.image(wanted("slow", "first")).isNull());
    REQUIRE(waitFor([&] { return drawing.count > 0; }));
    drawing.takeBegun();
    for (std::size_t i = 0; i < FaceImages::kMostWaiting + 1; ++i) images.image(wanted("a", std::to_string(i)));
    images.image(wanted("a", "5"));
    drawing.mayEnd.count_down();
    // However many come before the window is painted, it is painted once for them, or for the last once more.
    while (drawing.ended <= int(FaceImages::kMostWaiting)) std::this_thread::yield();
    const auto order = drawing.takeBegun();
    REQUIRE(order.size() == FaceImages::kMostWaiting);
    CHECK(order[0] == "5" && order[1] == std::to_string(FaceImages::kMostWaiting) && order.back() == "1");
    CHECK(waitFor([&] { return !images.image(wanted("a", "1")).isNull(); }));
    CHECK(waitFor([&] { return changes > 0; }));
    settle();
    CHECK(changes <= 2);
    CHECK_EQ(drawing.takeBegun().size(), 0U);
    // Each of these makes another picture.
    using Change = void (*)(FaceText&);
    for (Change change : std::initializer_list<Change>{
             [](FaceText& t) { t.file = "b"; }, [](FaceText& t) { t.modified = 1; }, [](FaceText& t) { t.index = 1; },
             [](FaceText& t) { t.size = 1; }, [](FaceText& t) { t.scale = 2; }, [](FaceText& t) { t.color = 1; }}) {
        FaceText other = wanted("a", "1");
        change(other);
        CHECK(images.image(other).isNull());
        CHECK(waitFor([&] { return !images.image(other).isNull(); }));
    }
}

TEST(OnlySoManyBytesOfPicturesAreKept) {
    useApplication();
    int drawn = 0;
    constexpr int kSide = 512, kBytes = kSide * kSide * 4, kMost = FaceImages::kMostBytes / kBytes;
    FaceImages images([] {},
                      [&](const FaceText&) {
                          ++drawn;
                          return QImage(kSide, kSide, QImage::Format_ARGB32_Premultiplied);
                      },
                      20s);
    auto see = [&](int i) { return waitFor([&] { return !images.image(wanted("a", std::to_string(i))).isNull(); }); };
    for (int i = 0; i < kMost + 5; ++i) CHECK(see(i));
    CHECK_EQ(drawn, kMost + 5);
    CHECK(see(kMost + 4) && drawn == kMost + 5);
    CHECK(see(0) && drawn == kMost + 6);
}

TEST(AFaceThatTakesTooLongIsGivenUpAndTheOthersAreDrawn) {
    useApplication();
    SlowDrawing drawing;
    int changes = 0;
    FaceImages images([&] { ++changes; }, drawing.draw(), 20ms);
    auto slow = [](int i) { return wanted("slow", "s", static_cast<std::uint32_t>(i)); };
    for (int i = 0; i < FaceImages::kMostGivenUp; ++i) {
        settle();
        images.image(slow(i));
        const int before = changes;
        CHECK(waitFor([&] { return changes > before; }));
        if (i == 0) CHECK(waitFor([&] { return !images.image(wanted("a", "quick")).isNull(); }));
    }
    drawing.takeBegun();
    images.image(slow(0));
    images.image(wanted("a", "too many hang"));
    drawing.mayEnd.count_down();
    for (const char* text : {"later", "later", "last"}) {
        CHECK(waitFor([&] { return !images.image(wanted("a", text)).isNull(); }));
        images.image(slow(0));
    }
    for (const std::string& text : drawing.takeBegun()) CHECK(text == "later" || text == "last");
    // A changed file has another chance.
    FaceText changed = slow(0);
    changed.modified = 5;
    CHECK(waitFor([&] { return !images.image(changed).isNull(); }));
}

TEST(TheEndWaitsForNoFace) {
    useApplication();
    SlowDrawing drawing;
    QElapsedTimer timer;
    {
        FaceImages images([] {}, drawing.draw(), 10ms);
        images.image(wanted("slow"));
        REQUIRE(waitFor([&] { return drawing.count > 0; }));
        timer.start();
    }
    CHECK(drawing.ended == 0 && timer.elapsed() < 5000);
    drawing.mayEnd.count_down();
    CHECK(waitFor([&] { return drawing.ended == 1; }));
}
