// The four entry points of the component contract, and the bitmap resources.
// Nothing may leave them as an exception: a host calls them through C linkage.

#include "extension/ClassTable.h"
#include "extension/CommandBitmaps.h"
#include "extension/ComponentContract.h"
#include "extension/ComponentFolder.h"
#include "platform/framework/Registry.h"
#include "spheroids/USGS_Functions.h"

#include <string>

namespace tess {
namespace {

const char* CategoryOf(ClassKind kind) {
    switch (kind) {
    case ClassKind::Extension: return component::kExtensionsCategory;
    case ClassKind::ToolBar: return component::kCommandBarsCategory;
    case ClassKind::Menu: return component::kMenusCategory;
    case ClassKind::Command: return component::kCommandsCategory;
    case ClassKind::FunctionFactory: return component::kFunctionFactoriesCategory;
    }
    return component::kCommandsCategory;
}

std::string ProgIDOf(const ClassEntry& entry) { return std::string(kProgIDPrefix) + std::string(entry.ClassName); }

// The custom spheroids file lies beside the library; tell the catalogue so once it is loaded.
[[maybe_unused]] const bool kSpheroidFolderSet = [] {
    const std::string folder = ComponentFolder();
    if (!folder.empty())
        USGS_Functions::AppPath(folder);
    return true;
}();

} // namespace
} // namespace tess

std::int32_t DllGetClassObject(const char* progIdOrClsid, tess::ComponentObject* out) {
    using namespace tess;
    if (!progIdOrClsid || !out)
        return component::kInvalidPointer;
    *out = ComponentObject{};
    try {
        const ClassEntry* entry = FindClass(progIdOrClsid);
        if (!entry)
            return component::kClassNotAvailable;
        *out = entry->Create();
        return component::kOk;
    } catch (...) {
        *out = ComponentObject{};
        return component::kClassNotAvailable;
    }
}

std::int32_t DllCanUnloadNow() {
    return tess::LiveComponentObjects() == 0 ? tess::component::kOk : tess::component::kFalse;
}

std::int32_t DllRegisterServer() {
    using namespace tess;
    try {
        Registry registry;
        const std::string library = ComponentLibraryPath();
        for (const ClassEntry& entry : ClassTable()) {
            const std::string progId = ProgIDOf(entry);
            registry.RegisterComponent(CategoryOf(entry.Kind), ComponentRegistration{"", progId});
            registry.WriteString(RegistryHive::ClassesRoot, progId, component::kServerValueName, library);
        }
        return component::kOk;
    } catch (...) {
        return component::kRegistrationFailed;
    }
}

std::int32_t DllUnregisterServer() {
    using namespace tess;
    try {
        Registry registry;
        for (const ClassEntry& entry : ClassTable()) {
            const std::string progId = ProgIDOf(entry);
            registry.UnregisterComponent(CategoryOf(entry.Kind), progId);
            registry.DeleteValue(RegistryHive::ClassesRoot, progId, component::kServerValueName);
        }
        return component::kOk;
    } catch (...) {
        return component::kRegistrationFailed;
    }
}

const std::uint8_t* TessBitmapResource(std::int32_t id, std::int32_t* width, std::int32_t* height) {
    const tess::CommandBitmap* bitmap = tess::LoadCommandBitmap(id);
    if (!bitmap)
        return nullptr;
    if (width)
        *width = tess::CommandBitmap::Width;
    if (height)
        *height = tess::CommandBitmap::Height;
    return bitmap->Pixels.data();
}
