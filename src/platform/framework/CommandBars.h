#pragma once
// The host's commands as the extension finds them: command bars searched by
// class id or ProgID, and items that run a command. A host registers its own
// commands (with the action to run) and the commands of loaded components.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tess {

class IUID;
class ICommand;

class ICommandItem {
public:
    virtual ~ICommandItem() = default;
    //! Runs the command (as a click on it would).
    virtual void Execute() = 0;
    //! The class id text or ProgID the item was registered under.
    virtual std::string ID() const = 0;
    virtual std::string Name() const = 0;
    virtual std::string Caption() const = 0;
};

class ICommandBars {
public:
    virtual ~ICommandBars() = default;
    //! The item registered under the uid's value (ids and ProgIDs compare without regard to
    //! case), or null. noRecurse and noCreate are accepted; nothing is ever created.
    virtual std::shared_ptr<ICommandItem> Find(const IUID& uid, bool noRecurse, bool noCreate) = 0;
};

//! The class id of the host's tool that selects graphic elements.
inline constexpr const char* kSelectElementsToolId = "{C22579D1-BC17-11D0-8667-0000F8751720}";

class CommandBars final : public ICommandBars {
public:
    CommandBars() = default;
    CommandBars(const CommandBars&) = delete;
    CommandBars& operator=(const CommandBars&) = delete;
    ~CommandBars() override;

    std::shared_ptr<ICommandItem> Find(const IUID& uid, bool noRecurse, bool noCreate) override;

    //! Registers a host command; an id already registered is replaced.
    std::shared_ptr<ICommandItem> AddCommand(const std::string& id, const std::string& name,
                                             const std::string& caption, std::function<void()> action);
    //! Registers a component's command: Execute calls OnClick when the command is Enabled.
    std::shared_ptr<ICommandItem> AddCommand(const std::string& progId, std::shared_ptr<ICommand> command);
    //! True when the id was registered.
    bool RemoveCommand(const std::string& id);
    std::vector<std::shared_ptr<ICommandItem>> Items() const { return items_; }

    //! The ids of the items executed, in order, since the last ClearExecuted.
    const std::vector<std::string>& Executed() const { return executed_; }
    void ClearExecuted() { executed_.clear(); }

private:
    class Item;
    std::vector<std::shared_ptr<ICommandItem>> items_;
    std::vector<std::string> executed_;
};

} // namespace tess
