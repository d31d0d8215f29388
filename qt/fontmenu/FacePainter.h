// A line of text in the font of a file, whatever is in that file.
#pragma once

#include <QImage>

#include <cstdint>
#include <string>

namespace qt {

// All lengths are in pixels of the image.
struct FaceText {
    std::string file;           // its path; any bytes
    std::int64_t modified = 0;  // when the file was changed last, to tell its contents from others
    std::uint32_t index = 0;    // in the file: the face in the lower 16 bits, the named style above them
    // UTF-8; empty: the first characters of the font, pictures before letters.
    std::string text;
    int size = 0;                   // of the em square
    int height = 0, mostWidth = 0;  // of the image; what is wider is cut off
    double scale = 1;               // pixels in a point of the screen
    QRgb color = 0;

    bool operator==(const FaceText&) const = default;
};

constexpr std::int64_t kLargestFontFile = std::int64_t{256} << 20;  // bytes; of a larger one nothing is drawn
constexpr int kMostGlyphs = 200;                                    // of a text; the rest is left out

// All texts of one size and height have the same base line. Null when the file cannot be opened or read, is larger than
// kLargestFontFile, is no font, has no outlines or lacks a character of the text; always where this was built without
// FreeType and HarfBuzz. Any thread may call it; it takes as long as reading the file does, and what is in it.
QImage drawFaceText(const FaceText& wanted);

}  // namespace qt
