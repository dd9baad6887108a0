#include "extension/ComponentFolder.h"

#include <dlfcn.h>

#include <filesystem>

namespace tess {

std::string ComponentLibraryPath() {
    // Any function of this library tells the loader which file it came from.
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&ComponentLibraryPath), &info) == 0 || !info.dli_fname)
        return {};
    std::error_code ec;
    const auto resolved = std::filesystem::canonical(info.dli_fname, ec);
    return ec ? std::string(info.dli_fname) : resolved.string();
}

std::string ComponentFolder() {
    return std::filesystem::path(ComponentLibraryPath()).parent_path().string();
}

std::string ManualPath() { return ComponentFolder() + "/" + kManualFileName; }

} // namespace tess
