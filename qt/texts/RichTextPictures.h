// The pictures of an rtfd folder, and how a document shows them: drawn from all their pixels at any scale.
#pragma once

#include "qt/texts/RichTextRuns.h"

#include <QHash>
#include <QImage>
#include <QString>
#include <QTextCharFormat>
#include <QTextDocument>

#include <optional>

namespace qt {

class RichTextPictures {
public:
    static constexpr int kLargestFile = 4 << 20;  // bytes
    static constexpr int kLargestSide = 2048;     // pixels; no larger picture is read
    static constexpr double kLargestShown = 512;  // points; a larger picture is shown smaller
    static constexpr int kMostPixels = 16 << 20;  // of all the pictures of a text; the others are left out

    // The document learns to draw the formats made here.
    RichTextPictures(const QString& folder, QTextDocument& document);
    // Nothing when the folder holds no such PNG file of its own: links and paths that lead out of it are not followed.
    std::optional<QTextCharFormat> format(const RichTextRun& picture);

private:
    QString fileNamed(const QString& name) const;
    QImage imageNamed(const QString& name);

    QString folder_;
    QHash<QString, QImage> images_;  // by their names in the text; null for what is no picture
    int pixelsLeft_ = kMostPixels;
};

}  // namespace qt
