#pragma once
// The interfaces a host calls on the components it loads: extensions, commands,
// toolbars and menus. Components implement them; hosts and the framework call them.

#include <cstdint>
#include <memory>
#include <string>

namespace tess {

class IApplication;
class IVariantStream;

//! Created once per application; Startup receives the application object.
class IExtension {
public:
    virtual ~IExtension() = default;
    virtual std::string Name() const = 0;
    //! Receives the host application (the host's initialization data).
    virtual void Startup(const std::shared_ptr<IApplication>& application) = 0;
    virtual void Shutdown() = 0;
};

//! Settings an extension keeps inside the map document.
class IPersistVariant {
public:
    virtual ~IPersistVariant() = default;
    //! The ProgID the document files the stream under.
    virtual std::string ID() const = 0;
    virtual void Load(IVariantStream& stream) = 0;
    virtual void Save(IVariantStream& stream) = 0;
};

class ICommand {
public:
    virtual ~ICommand() = default;
    virtual bool Enabled() = 0;
    virtual bool Checked() = 0;
    virtual std::string Name() = 0;
    virtual std::string Caption() = 0;
    virtual std::string Tooltip() = 0;
    virtual std::string Message() = 0;
    virtual std::string HelpFile() = 0;
    virtual std::int32_t HelpContextID() = 0;
    //! Id of the command's 16 x 16 picture in the component's resources.
    virtual std::int32_t Bitmap() = 0;
    virtual std::string Category() = 0;
    //! hook is the host application.
    virtual void OnCreate(const std::shared_ptr<IApplication>& hook) = 0;
    virtual void OnClick() = 0;
};

//! What GetItemInfo fills for one position of a toolbar or menu.
class IItemDef {
public:
    virtual ~IItemDef() = default;
    virtual void ID(const std::string& progId) = 0;
    virtual void Group(bool startsGroup) = 0;
    virtual void SubType(std::int32_t subType) = 0;
};

class IToolBarDef {
public:
    virtual ~IToolBarDef() = default;
    virtual std::int32_t ItemCount() = 0;
    virtual void GetItemInfo(std::int32_t pos, IItemDef& itemDef) = 0;
    virtual std::string Name() = 0;
    virtual std::string Caption() = 0;
};

class IMenuDef {
public:
    virtual ~IMenuDef() = default;
    virtual std::int32_t ItemCount() = 0;
    virtual void GetItemInfo(std::int32_t pos, IItemDef& itemDef) = 0;
    virtual std::string Name() = 0;
    virtual std::string Caption() = 0;
};

//! Marks a menu the host may show at the top level.
class IRootLevelMenu {
public:
    virtual ~IRootLevelMenu() = default;
};

} // namespace tess
