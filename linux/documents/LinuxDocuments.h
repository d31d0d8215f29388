// Documents on the disk, and the two forms that they have.
#pragma once

#include "linux/files/FileAccess.h"
#include "platform/Documents.h"

#include <optional>
#include <string>
#include <string_view>

namespace linux {

class LinuxDocuments final : public platform::DocumentServices {
public:
    explicit LinuxDocuments(FileAccess& files = FileAccess::system()) : files_(files) {}
    Document read(std::string_view path, std::size_t most) override;
    std::string write(std::string_view path, const platform::PropertyList& value) override;

private:
    FileAccess& files_;
};

// The value of a document that lies in memory. The name is what a problem calls it.
platform::DocumentServices::Document documentIn(std::string_view bytes, std::string_view name);

enum class DocumentForm { XML, JSON };
// Nothing when the value cannot be expressed in that form: XML has no control characters, and its dates lie within the
// years 1 to 9999.
std::optional<std::string> documentText(const platform::PropertyList& value, DocumentForm form);

}  // namespace linux
