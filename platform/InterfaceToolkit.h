// Interface files, images and alerts.
#pragma once

#include "platform/Bundle.h"
#include "platform/Controls.h"

#include <optional>
#include <string>
#include <string_view>

namespace platform {

class InterfaceToolkit {
public:
    virtual ~InterfaceToolkit() = default;
    // Null when the file cannot be read as an image.
    virtual ImageRef imageAtPath(std::string_view path) = 0;
    // The icon under which the desktop shows a file.
    virtual ImageRef workspaceIcon(std::string_view path) = 0;
    virtual ImageRef genericApplicationIcon() = 0;
    // The host application's icon; a copy is the caller's own.
    virtual ImageRef applicationIcon() = 0;
    virtual void setApplicationIcon(const ImageRef& image) = 0;  // null is ignored
    // Modal, with the default button only.
    virtual void runAlert(std::string_view title, std::string_view message) = 0;
    virtual void beep() = 0;
};

}  // namespace platform
