// A part of typeslatectl that is loaded only by the commands that use it.
#pragma once

#include <string>

namespace tools {

struct InstalledModule {
    const char* file;
    const char* factoryName;

    std::string path() const;  // where the product is installed
    // Loads it, for good. Null when it is not there or cannot be loaded.
    template <typename Factory>
    Factory factory() const {
        return reinterpret_cast<Factory>(symbol());
    }

private:
    void* symbol() const;
};

}  // namespace tools
