#include "extension/ClassTable.h"

#include "extension/CommandBarDefs.h"
#include "extension/ComponentContract.h"
#include "extension/ConversionCommands.h"
#include "extension/DialogCommands.h"
#include "extension/GraphicsSelectionCommands.h"
#include "extension/ToolCommands.h"
#include "extension/clsFunctionFactory.h"
#include "frame/clsExtension.h"
#include "platform/system/Text.h"

#include <array>
#include <atomic>
#include <cctype>
#include <string>
#include <type_traits>

namespace tess {
namespace {

std::atomic<std::int32_t> liveObjects{0};

// Made with a deleter that counts, so DllCanUnloadNow knows when the last one is gone.
template <class T>
ComponentObject Make() {
    std::shared_ptr<T> object(new T(), [](T* p) {
        delete p;
        --liveObjects;
    });
    ++liveObjects;
    ComponentObject out;
    out.ProgID = T::ProgID;
    if constexpr (std::is_base_of_v<IExtension, T>)
        out.Extension = object;
    if constexpr (std::is_base_of_v<IPersistVariant, T>)
        out.PersistVariant = object;
    if constexpr (std::is_base_of_v<ICommand, T>)
        out.Command = object;
    if constexpr (std::is_base_of_v<IToolBarDef, T>)
        out.ToolBarDef = object;
    if constexpr (std::is_base_of_v<IMenuDef, T>)
        out.MenuDef = object;
    if constexpr (std::is_base_of_v<IRootLevelMenu, T>)
        out.RootLevelMenu = object;
    if constexpr (std::is_base_of_v<IGPFunctionFactory, T>)
        out.FunctionFactory = object;
    return out;
}

template <class T>
constexpr std::string_view NameOf() {
    return std::string_view(T::ProgID).substr(kProgIDPrefix.size());
}

template <class T>
constexpr ClassEntry Entry(ClassKind kind) {
    return ClassEntry{NameOf<T>(), kind, &Make<T>};
}

constexpr std::array kClasses{
    Entry<clsExtension>(ClassKind::Extension),
    Entry<clsToolBar>(ClassKind::ToolBar),
    Entry<clsMenu>(ClassKind::Menu),
    Entry<clsShapeSubMenu>(ClassKind::Menu),
    Entry<clsGraphicsSubMenu>(ClassKind::Menu),
    Entry<clsGeodesicSubMenu>(ClassKind::Menu),
    Entry<clsConvertGeometry>(ClassKind::Command),
    Entry<clsConvertLabelpoint>(ClassKind::Command),
    Entry<clsConvertCentroid>(ClassKind::Command),
    Entry<clsConvertSphCentroid>(ClassKind::Command),
    Entry<clsShapesToVertices>(ClassKind::Command),
    Entry<clsConvertToPolygon>(ClassKind::Command),
    Entry<clsConvertToPolyline>(ClassKind::Command),
    Entry<clsBuildPolygon>(ClassKind::Command),
    Entry<clsConvertSplit>(ClassKind::Command),
    Entry<clsConvertJoin>(ClassKind::Command),
    Entry<cmdNewShapefile>(ClassKind::Command),
    Entry<clsSelGraphics>(ClassKind::Command),
    Entry<clsSelAllElements>(ClassKind::Command),
    Entry<clsUnselElements>(ClassKind::Command),
    Entry<clsFlipGraphicSel>(ClassKind::Command),
    Entry<clsZoomToSelected>(ClassKind::Command),
    Entry<clsNameGraphics>(ClassKind::Command),
    Entry<OGraphicToOCentric>(ClassKind::Command),
    Entry<OCentricToOGraphic>(ClassKind::Command),
    Entry<clsWrapBoundary>(ClassKind::Command),
    Entry<cmdAbout>(ClassKind::Command),
    Entry<clsFunctionFactory>(ClassKind::FunctionFactory),
};

} // namespace

std::span<const ClassEntry> ClassTable() { return kClasses; }

const ClassEntry* FindClass(std::string_view progId) {
    // Both spellings of the label-point command ("...Labelpoint", "...LabelPoint") differ in case
    // only, so the comparison that the host makes finds the one class.
    if (progId.size() <= kProgIDPrefix.size() ||
        !EqualsNoCase(progId.substr(0, kProgIDPrefix.size()), kProgIDPrefix))
        return nullptr;
    const std::string_view name = progId.substr(kProgIDPrefix.size());
    for (const ClassEntry& entry : kClasses)
        if (EqualsNoCase(entry.ClassName, name))
            return &entry;
    return nullptr;
}

std::int32_t LiveComponentObjects() { return liveObjects.load(); }

} // namespace tess
