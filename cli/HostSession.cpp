#include "HostSession.h"

#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>

#include "TextUtil.h"
#include "extension/ComponentLibrary.h"
#include "platform/framework/Application.h"
#include "platform/framework/Registry.h"

namespace tess::cli {
namespace {

namespace fs = std::filesystem;

// The ProgIDs a host starts from when the registry stand-in cannot tell it (a store that
// cannot be written): the extension and its toolbar, as the component contract names them.
constexpr const char* kExtensionProgID = "Tessarine.clsExtension";
constexpr const char* kToolBarProgID = "Tessarine.clsToolBar";
// Menus nest: the root menu, its sub-menus. More depth than this is a loop in the tables.
constexpr int kMaxMenuDepth = 8;

class ItemDef final : public IItemDef {
public:
    void ID(const std::string& progId) override { id = progId; }
    void Group(bool startsGroup) override { group = startsGroup; }
    void SubType(std::int32_t) override {}
    std::string id;
    bool group = false;
};

} // namespace

fs::path ProgramFolder() {
    std::error_code error;
    const fs::path self = fs::read_symlink("/proc/self/exe", error);
    return error ? fs::path() : self.parent_path();
}

std::string FindExtensionLibrary() {
    if (const char* given = std::getenv("TESS_EXTENSION_LIBRARY"); given && *given)
        return given;
    std::vector<fs::path> candidates;
    if (const fs::path folder = ProgramFolder(); !folder.empty()) {
        candidates.push_back(folder / kExtensionLibraryName);
        candidates.push_back(folder.parent_path() / "lib" / kExtensionLibraryName);
        candidates.push_back(folder.parent_path() / "lib" / "tessarine" / kExtensionLibraryName);
    }
#if defined(TESS_EXTENSION_BUILD_PATH) && defined(TESS_BUILD_TREE)
    // A program of the build tree finds the library the build made; an installed one never does.
    const std::string program = ProgramFolder().string();
    if (program.rfind(TESS_BUILD_TREE, 0) == 0)
        candidates.emplace_back(TESS_EXTENSION_BUILD_PATH);
#endif
    for (const fs::path& candidate : candidates) {
        std::error_code error;
        if (fs::is_regular_file(candidate, error))
            return candidate.string();
    }
    return {};
}

HostSession::HostSession(const std::string& libraryPath)
    : libraryPath_(libraryPath), library_(std::make_unique<ComponentLibrary>(libraryPath)) {
    if (Registered(component::kExtensionsCategory).empty())
        library_->RegisterServer(); // a store that cannot be written leaves the fallbacks below

    app_ = Application::Create();
    std::vector<std::string> extensions = Registered(component::kExtensionsCategory);
    if (extensions.empty())
        extensions.push_back(kExtensionProgID);
    for (const std::string& progId : extensions) {
        const ComponentLibrary* library = library_.get();
        app_->RegisterExtension(progId, "", [library, progId] { return library->Create(progId).Extension; });
    }
    app_->Startup();
}

HostSession::~HostSession() {
    if (app_) {
        app_->Shutdown();
        app_->NewDocument(); // layers and elements made by the library go before it closes
    }
    app_.reset();
}

std::vector<std::string> HostSession::Registered(const char* category) const {
    std::vector<std::string> progIds;
    try {
        for (const ComponentRegistration& entry : Registry().Components(category))
            if (!entry.progId.empty())
                progIds.push_back(entry.progId);
    } catch (const std::exception&) {
        // An unreadable store: the contract's own names serve.
    }
    return progIds;
}

BarItem HostSession::ReadItem(const std::string& progId, bool group, int depth) const {
    BarItem item;
    item.progId = progId;
    item.group = group;
    const ComponentObject object = library_->Create(progId);
    if (object.MenuDef && depth < kMaxMenuDepth) {
        item.isMenu = true;
        item.name = object.MenuDef->Name();
        item.caption = object.MenuDef->Caption();
        for (std::int32_t pos = 0; pos < object.MenuDef->ItemCount(); ++pos) {
            ItemDef def;
            object.MenuDef->GetItemInfo(pos, def);
            if (!def.id.empty())
                item.items.push_back(ReadItem(def.id, def.group, depth + 1));
        }
    } else if (object.Command) {
        object.Command->OnCreate(app_);
        item.name = object.Command->Name();
        item.caption = object.Command->Caption();
        item.enabled = object.Command->Enabled();
    } else {
        item.known = false;
        item.caption = progId;
    }
    return item;
}

std::vector<ToolBar> HostSession::CommandBars() const {
    std::vector<std::string> progIds = Registered(component::kCommandBarsCategory);
    if (progIds.empty())
        progIds.push_back(kToolBarProgID);
    std::vector<ToolBar> bars;
    for (const std::string& progId : progIds) {
        const ComponentObject object = library_->Create(progId);
        if (!object.ToolBarDef)
            continue;
        ToolBar bar{progId, object.ToolBarDef->Name(), object.ToolBarDef->Caption(), {}};
        for (std::int32_t pos = 0; pos < object.ToolBarDef->ItemCount(); ++pos) {
            ItemDef def;
            object.ToolBarDef->GetItemInfo(pos, def);
            if (!def.id.empty())
                bar.items.push_back(ReadItem(def.id, def.group, 0));
        }
        bars.push_back(std::move(bar));
    }
    return bars;
}

std::string HostSession::FindCommand(const std::string& commandName) const {
    std::string found;
    auto search = [&](const auto& self, const std::vector<BarItem>& items) -> void {
        for (const BarItem& item : items) {
            if (!found.empty())
                return;
            if (item.isMenu)
                self(self, item.items);
            else if (item.known && EqualsNoCase(item.name, commandName))
                found = item.progId;
        }
    };
    for (const ToolBar& bar : CommandBars())
        search(search, bar.items);
    if (!found.empty())
        return found;
    // Commands a host may place itself, on no menu of the library's.
    for (const std::string& progId : Registered(component::kCommandsCategory))
        if (auto command = CreateCommand(progId); command && EqualsNoCase(command->Name(), commandName))
            return progId;
    return {};
}

std::shared_ptr<ICommand> HostSession::CreateCommand(const std::string& progId) const {
    std::shared_ptr<ICommand> command = library_->Create(progId).Command;
    if (command)
        command->OnCreate(app_);
    return command;
}

} // namespace tess::cli
