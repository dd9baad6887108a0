#pragma once
// The headless host's hold on the extension: the component library loaded
// through its entry points, the application with the extension started in it,
// and the toolbar, menus and commands read as a host reads them.

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace tess {
class Application;
class ComponentLibrary;
class ICommand;
} // namespace tess

namespace tess::cli {

//! One position of a toolbar or menu, as the host shows it.
struct BarItem {
    std::string progId;
    bool group = false;          //!< a separator above the item
    bool isMenu = false;
    bool known = true;           //!< false: the library made nothing for the ProgID
    std::string name;            //!< the menu's or command's Name
    std::string caption;         //!< as the definition gives it, "&" marks included
    bool enabled = true;         //!< commands only
    std::vector<BarItem> items;  //!< a menu's own items
};

struct ToolBar {
    std::string progId;
    std::string name;
    std::string caption;
    std::vector<BarItem> items;
};

//! Where the extension library is: $TESS_EXTENSION_LIBRARY, beside the program, in ../lib or
//! ../lib/tessarine from it, or where the build made it. Empty when none of these exists.
std::string FindExtensionLibrary();
//! The folder of the running program; empty when it cannot be told.
std::filesystem::path ProgramFolder();

class HostSession {
public:
    //! Loads the library, enters its classes in the registry stand-in when they are not there
    //! yet (the self-registration an installer does), creates the application and starts the
    //! extensions. std::runtime_error when the library cannot be loaded.
    explicit HostSession(const std::string& libraryPath);
    //! Shuts the extensions down and lets go of every object before the library closes.
    ~HostSession();
    HostSession(const HostSession&) = delete;
    HostSession& operator=(const HostSession&) = delete;

    const std::shared_ptr<Application>& App() const { return app_; }
    const std::string& LibraryPath() const { return libraryPath_; }

    //! The toolbars and their menus, as a host reads them item by item.
    std::vector<ToolBar> CommandBars() const;
    //! The ProgID of the command whose Name is `commandName` (without regard to case), found on the
    //! toolbars' menus and in the registered commands; empty when there is none.
    std::string FindCommand(const std::string& commandName) const;
    //! Creates the command and hands it the application (OnCreate); null for an unknown ProgID.
    std::shared_ptr<ICommand> CreateCommand(const std::string& progId) const;

private:
    std::vector<std::string> Registered(const char* category) const;
    BarItem ReadItem(const std::string& progId, bool group, int depth) const;

    std::string libraryPath_;
    std::unique_ptr<ComponentLibrary> library_;
    std::shared_ptr<Application> app_;
};

} // namespace tess::cli
