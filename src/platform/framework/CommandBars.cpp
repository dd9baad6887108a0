#include "platform/framework/CommandBars.h"

#include <algorithm>
#include <cctype>

#include "platform/framework/HostContracts.h"
#include "platform/system/Fault.h"
#include "platform/system/UID.h"

namespace tess {
namespace {

bool SameId(const std::string& a, const std::string& b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](unsigned char x, unsigned char y) {
               return std::toupper(x) == std::toupper(y);
           });
}

} // namespace

class CommandBars::Item final : public ICommandItem {
public:
    Item(CommandBars* bars, std::string id, std::string name, std::string caption, std::function<void()> action)
        : bars_(bars), id_(std::move(id)), name_(std::move(name)), caption_(std::move(caption)),
          action_(std::move(action)) {}

    void Execute() override {
        if (bars_)
            bars_->executed_.push_back(id_);
        if (action_)
            action_();
    }
    std::string ID() const override { return id_; }
    std::string Name() const override { return name_; }
    std::string Caption() const override { return caption_; }
    void Detach() { bars_ = nullptr; }

private:
    CommandBars* bars_;
    std::string id_;
    std::string name_;
    std::string caption_;
    std::function<void()> action_;
};

CommandBars::~CommandBars() {
    for (const auto& item : items_)
        std::static_pointer_cast<Item>(item)->Detach();
}

std::shared_ptr<ICommandItem> CommandBars::Find(const IUID& uid, bool, bool) {
    const std::string id = uid.Value();
    for (const auto& item : items_) {
        if (SameId(item->ID(), id))
            return item;
    }
    return nullptr;
}

std::shared_ptr<ICommandItem> CommandBars::AddCommand(const std::string& id, const std::string& name,
                                                      const std::string& caption, std::function<void()> action) {
    if (id.empty())
        throw Fault(fault::InvalidCall, "CommandBars", "A command needs a class id or ProgID");
    RemoveCommand(id);
    auto item = std::make_shared<Item>(this, id, name, caption, std::move(action));
    items_.push_back(item);
    return item;
}

std::shared_ptr<ICommandItem> CommandBars::AddCommand(const std::string& progId, std::shared_ptr<ICommand> command) {
    if (!command)
        throw Fault(fault::ObjectNotSet, "CommandBars", "No command was given for '" + progId + "'");
    const std::string name = command->Name();
    const std::string caption = command->Caption();
    return AddCommand(progId, name, caption, [command] {
        if (command->Enabled())
            command->OnClick();
    });
}

bool CommandBars::RemoveCommand(const std::string& id) {
    auto it = std::find_if(items_.begin(), items_.end(), [&](const auto& item) { return SameId(item->ID(), id); });
    if (it == items_.end())
        return false;
    std::static_pointer_cast<Item>(*it)->Detach();
    items_.erase(it);
    return true;
}

} // namespace tess
