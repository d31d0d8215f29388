#include "qt/fontmenu/FacePainter.h"

#ifdef TYPESLATE_HAVE_FACES

#include <QPainter>
#include <QPainterPath>

#include <fcntl.h>
#include <ft2build.h>
#include <hb-ft.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <memory>
#include <vector>

#include FT_FREETYPE_H
#include FT_OUTLINE_H

namespace qt {
namespace {

constexpr double kUnit = 64;  // FreeType's and HarfBuzz's, in a pixel
// No instructions are run that the font brings, and no pictures of a fixed size taken.
constexpr FT_Int32 kLoadFlags = FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP;

template <auto destroy>
struct Destroyer {
    template <typename T>
    void operator()(T* object) const {
        destroy(object);
    }
};
using Library = std::unique_ptr<FT_LibraryRec_, Destroyer<FT_Done_FreeType>>;
using Face = std::unique_ptr<FT_FaceRec_, Destroyer<FT_Done_Face>>;
using ShapingFont = std::unique_ptr<hb_font_t, Destroyer<hb_font_destroy>>;
using Buffer = std::unique_ptr<hb_buffer_t, Destroyer<hb_buffer_destroy>>;

// Read where it is asked for and not mapped: whoever shortens the file then ends no program.
class FontFile {
public:
    explicit FontFile(const std::string& path) : file_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
        struct stat status {};
        if (file_ < 0 || fstat(file_, &status) != 0 || !S_ISREG(status.st_mode)) return;
        if (status.st_size > kLargestFontFile) return;
        stream_.size = static_cast<unsigned long>(status.st_size);
        stream_.descriptor.pointer = this;
        stream_.read = read;
    }
    ~FontFile() {
        if (file_ >= 0) close(file_);
    }
    FontFile(const FontFile&) = delete;

    Face face(FT_Library library, std::uint32_t index) {
        if (!stream_.read) return nullptr;
        FT_Open_Args arguments{};
        arguments.flags = FT_OPEN_STREAM;
        arguments.stream = &stream_;
        FT_Face face = nullptr;
        return Face(FT_Open_Face(library, &arguments, static_cast<FT_Long>(index), &face) == 0 ? face : nullptr);
    }

private:
    // Of a count of 0 the answer is whether there is an error, else how much was read.
    static unsigned long read(FT_Stream stream, unsigned long offset, unsigned char* bytes, unsigned long count) {
        if (count == 0) return offset > stream->size ? 1 : 0;
        const int file = static_cast<FontFile*>(stream->descriptor.pointer)->file_;
        unsigned long got = 0;
        while (got < count) {
            const ssize_t more = pread(file, bytes + got, count - got, static_cast<off_t>(offset + got));
            if (more < 0 && errno == EINTR) continue;
            if (more <= 0) break;
            got += static_cast<unsigned long>(more);
        }
        return got;
    }

    int file_;
    FT_StreamRec stream_{};
};

// At most five. Fonts of pictures mostly have a few signs of ASCII, too, which tell nothing of them.
std::vector<hb_codepoint_t> firstCharacters(FT_Face face) {
    if (!face->charmap && face->num_charmaps > 0) FT_Set_Charmap(face, face->charmaps[0]);
    constexpr std::size_t kMost = 5;
    constexpr FT_ULong kBeforePictures = 0x20FF, kBeforeLetters = 0x20;
    std::vector<hb_codepoint_t> characters;
    for (const FT_ULong before : {kBeforePictures, kBeforeLetters}) {
        FT_UInt glyph = 0;
        FT_ULong character = FT_Get_Next_Char(face, before, &glyph);
        for (; glyph != 0 && characters.size() < kMost; character = FT_Get_Next_Char(face, character, &glyph))
            characters.push_back(static_cast<hb_codepoint_t>(character));
        if (!characters.empty()) break;
    }
    return characters;
}

Buffer shaped(FT_Face face, const std::string& text) {
    Buffer buffer(hb_buffer_create());
    if (text.empty()) {
        const std::vector<hb_codepoint_t> characters = firstCharacters(face);
        const int count = static_cast<int>(characters.size());
        hb_buffer_add_codepoints(buffer.get(), characters.data(), count, 0, count);
    } else {
        const int size = static_cast<int>(std::min<std::size_t>(text.size(), 4 * kMostGlyphs));
        hb_buffer_add_utf8(buffer.get(), text.data(), size, 0, size);
    }
    hb_buffer_guess_segment_properties(buffer.get());
    const ShapingFont font(hb_ft_font_create_referenced(face));
    hb_ft_font_set_load_flags(font.get(), kLoadFlags);
    hb_shape(font.get(), buffer.get(), nullptr, 0);
    return buffer;
}

// Where a glyph is put, and the outline so far; y grows downward.
struct Pen {
    QPainterPath path;
    QPointF place;

    QPointF at(const FT_Vector* point) const { return place + QPointF(point->x, -point->y) / kUnit; }
    static int move(const FT_Vector* to, void* pen) {
        static_cast<Pen*>(pen)->path.closeSubpath();
        static_cast<Pen*>(pen)->path.moveTo(static_cast<Pen*>(pen)->at(to));
        return 0;
    }
    static int line(const FT_Vector* to, void* pen) {
        static_cast<Pen*>(pen)->path.lineTo(static_cast<Pen*>(pen)->at(to));
        return 0;
    }
    static int conic(const FT_Vector* by, const FT_Vector* to, void* pen) {
        static_cast<Pen*>(pen)->path.quadTo(static_cast<Pen*>(pen)->at(by), static_cast<Pen*>(pen)->at(to));
        return 0;
    }
    static int cubic(const FT_Vector* by, const FT_Vector* by2, const FT_Vector* to, void* pen) {
        Pen& p = *static_cast<Pen*>(pen);
        p.path.cubicTo(p.at(by), p.at(by2), p.at(to));
        return 0;
    }
};

// Empty when the font lacks a character.
QPainterPath outline(FT_Face face, hb_buffer_t* buffer, int mostWidth) {
    static constexpr FT_Outline_Funcs kSteps{Pen::move, Pen::line, Pen::conic, Pen::cubic, 0, 0};
    unsigned count = 0;
    const hb_glyph_info_t* glyphs = hb_buffer_get_glyph_infos(buffer, &count);
    const hb_glyph_position_t* places = hb_buffer_get_glyph_positions(buffer, nullptr);
    Pen pen;
    pen.path.setFillRule(Qt::WindingFill);
    QPointF origin;
    for (unsigned i = 0; i < std::min<unsigned>(count, kMostGlyphs) && origin.x() < mostWidth; ++i) {
        if (glyphs[i].codepoint == 0) return {};
        pen.place = origin + QPointF(places[i].x_offset, -places[i].y_offset) / kUnit;
        origin += QPointF(places[i].x_advance, -places[i].y_advance) / kUnit;
        if (FT_Load_Glyph(face, glyphs[i].codepoint, kLoadFlags) != 0) return {};
        if (face->glyph->format != FT_GLYPH_FORMAT_OUTLINE) return {};
        if (FT_Outline_Decompose(&face->glyph->outline, &kSteps, &pen) != 0) return {};
    }
    pen.path.closeSubpath();
    return pen.path;
}

QImage filled(const QPainterPath& path, const FaceText& wanted) {
    // Capitals, which are some 0.7 of the size high, stand in the middle.
    constexpr double kBaseline = 0.35;
    const QRectF bounds = path.boundingRect();
    if (bounds.isEmpty()) return {};
    const double left = std::clamp(-bounds.left(), 0.0, double(wanted.size));
    const double width = std::clamp(std::ceil(bounds.right() + left) + 1, 1.0, double(wanted.mostWidth));
    QImage image(static_cast<int>(width), wanted.height, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) return {};
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(left, std::round(wanted.height / 2.0 + kBaseline * wanted.size));
    painter.fillPath(path, QColor::fromRgba(wanted.color));
    painter.end();
    image.setDevicePixelRatio(wanted.scale);
    return image;
}

}  // namespace

QImage drawFaceText(const FaceText& wanted) {
    FT_Library opened = nullptr;
    if (FT_Init_FreeType(&opened) != 0) return {};
    const Library library(opened);
    FontFile file(wanted.file);
    const Face face = file.face(library.get(), wanted.index);
    if (!face || !FT_IS_SCALABLE(face)) return {};
    if (FT_Set_Pixel_Sizes(face.get(), 0, static_cast<FT_UInt>(wanted.size)) != 0) return {};
    const Buffer buffer = shaped(face.get(), wanted.text);
    return filled(outline(face.get(), buffer.get(), wanted.mostWidth), wanted);
}

}  // namespace qt

#else

namespace qt {

QImage drawFaceText(const FaceText&) { return {}; }

}  // namespace qt

#endif
