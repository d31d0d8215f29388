// The pictures of an rtfd folder, and how a document shows them: drawn from all their pixels at any scale.
#pragma once

#include "platform/qt/RichTextRuns.h"

#include <QString>
#include <QTextCharFormat>
#include <QTextDocument>

#include <optional>

namespace platform::qt {

class RichTextPictures {
public:
    static constexpr int kLargestFile = 4 << 20;  // bytes
    static constexpr int kLargestSide = 2048;     // pixels; no larger picture is read
    static constexpr double kLargestShown = 512;  // points; a larger picture is shown smaller

    // The document learns to draw the formats made here.
    RichTextPictures(const QString& folder, QTextDocument& document);
    // Nothing when the folder holds no such PNG file of its own: links and paths that lead out of it are not followed.
    std::optional<QTextCharFormat> format(const RichTextRun& picture) const;

private:
    QString fileNamed(const QString& name) const;
    QString folder_;
};

}  // namespace platform::qt
