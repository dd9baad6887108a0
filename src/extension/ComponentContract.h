#pragma once
// The component contract of the extension library (libtessarine_extension.so),
// as a host sees it. A host loads the library at run time (ComponentLibrary.h
// does the loading) and finds four C entry points:
//
//   DllGetClassObject(progId, out)  creates one object of a class named by its ProgID
//                                   ("Tessarine.clsMenu", compared without regard to case)
//                                   and hands it out under every host interface it has;
//   DllCanUnloadNow()               kOk when no object made by the library is alive;
//   DllRegisterServer()             enters the library's classes in the component
//                                   categories of the registry stand-in;
//   DllUnregisterServer()           takes them out again.
//
// Every class of the library answers to "Tessarine." and its class name. The
// bitmaps of the commands are the library's resources: ICommand::Bitmap gives an
// id, and TessBitmapResource gives the picture of an id.

#include <cstdint>
#include <memory>
#include <string>

#include "platform/framework/HostContracts.h" // the interfaces handed out
#include "extension/GPFunctionFactory.h"      // IGPFunctionFactory, handed out too

namespace tess {

//! Result codes of the entry points; the values are those hosts know from component libraries.
namespace component {
inline constexpr std::int32_t kOk = 0;    //!< done; DllCanUnloadNow: nothing alive
inline constexpr std::int32_t kFalse = 1; //!< DllCanUnloadNow: objects are alive
inline constexpr std::int32_t kInvalidPointer = static_cast<std::int32_t>(0x80004003u);
inline constexpr std::int32_t kClassNotAvailable = static_cast<std::int32_t>(0x80040111u);
inline constexpr std::int32_t kRegistrationFailed = static_cast<std::int32_t>(0x80040201u);

//! Component categories of the registry stand-in that DllRegisterServer fills; a host lists
//! them to find what to create at start (extensions) and what it may show (bars, menus, commands).
inline constexpr const char* kExtensionsCategory = "Map Extensions";
inline constexpr const char* kCommandBarsCategory = "Map Command Bars";
inline constexpr const char* kMenusCategory = "Map Menus";
inline constexpr const char* kCommandsCategory = "Map Commands";
inline constexpr const char* kFunctionFactoriesCategory = "Geoprocessing Function Factories";
//! Registry stand-in value under ClassesRoot\<ProgID> naming the library that makes the class.
inline constexpr const char* kServerValueName = "InprocServer";

//! Bitmap resources: 24 bits per pixel, rows top first, each pixel red, green, blue.
inline constexpr std::int32_t kBitmapBytesPerPixel = 3;
} // namespace component

//! One object made by DllGetClassObject, under each host interface that it implements
//! (null where it implements none). All pointers share the object's ownership.
struct ComponentObject {
    std::string ProgID; //!< the class's own spelling, "Tessarine.clsConvertLabelpoint"
    std::shared_ptr<IExtension> Extension;
    std::shared_ptr<IPersistVariant> PersistVariant;
    std::shared_ptr<ICommand> Command;
    std::shared_ptr<IToolBarDef> ToolBarDef;
    std::shared_ptr<IMenuDef> MenuDef;
    std::shared_ptr<IRootLevelMenu> RootLevelMenu;
    std::shared_ptr<IGPFunctionFactory> FunctionFactory;

    //! The object under another interface (a cast across its bases), or null.
    template <class Interface>
    std::shared_ptr<Interface> As() const {
        std::shared_ptr<Interface> found;
        auto tryFrom = [&found](const auto& from) {
            if (!found && from)
                found = std::dynamic_pointer_cast<Interface>(from);
        };
        tryFrom(Extension);
        tryFrom(PersistVariant);
        tryFrom(Command);
        tryFrom(ToolBarDef);
        tryFrom(MenuDef);
        tryFrom(RootLevelMenu);
        tryFrom(FunctionFactory);
        return found;
    }
    bool Empty() const { return !Extension && !PersistVariant && !Command && !ToolBarDef && !MenuDef &&
                                !RootLevelMenu && !FunctionFactory; }
};

} // namespace tess

#define TESS_COMPONENT_EXPORT extern "C" __attribute__((visibility("default")))

//! Creates an object of the class named by its ProgID (ignoring case). out is cleared first.
//! kOk, kClassNotAvailable for a name the library does not know, kInvalidPointer for null
//! arguments.
TESS_COMPONENT_EXPORT std::int32_t DllGetClassObject(const char* progIdOrClsid, tess::ComponentObject* out);
//! kOk when every object the library made has been released, else kFalse.
TESS_COMPONENT_EXPORT std::int32_t DllCanUnloadNow();
//! Writes the registrations to the registry stand-in (its default path: $TESS_REGISTRY). Again
//! changes nothing. kOk, or kRegistrationFailed when the store cannot be written.
TESS_COMPONENT_EXPORT std::int32_t DllRegisterServer();
//! Removes what DllRegisterServer wrote; kOk also when nothing was there.
TESS_COMPONENT_EXPORT std::int32_t DllUnregisterServer();
//! The picture of a bitmap id: rows of width * kBitmapBytesPerPixel bytes, or null for an id the
//! library does not have. width and height may be null.
TESS_COMPONENT_EXPORT const std::uint8_t* TessBitmapResource(std::int32_t id, std::int32_t* width,
                                                             std::int32_t* height);

namespace tess::component {
// Pointer types of the entry points, for hosts that look them up by name.
using GetClassObjectFn = std::int32_t (*)(const char*, ComponentObject*);
using CanUnloadNowFn = std::int32_t (*)();
using RegisterServerFn = std::int32_t (*)();
using UnregisterServerFn = std::int32_t (*)();
using BitmapResourceFn = const std::uint8_t* (*)(std::int32_t, std::int32_t*, std::int32_t*);
} // namespace tess::component
