#include "platform/data/DatasetUse.h"

#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <mutex>

#include "platform/data/detail/DatasetUse.h"
#include "platform/data/detail/TableImpl.h"
#include "platform/data/detail/WorkspaceImpl.h"
#include "platform/system/Fault.h"
#include "platform/system/Text.h"

namespace tess {
namespace data {
namespace {

constexpr const char* kSource = "tess.data";

// The folder or file of a workspace by device and inode, so that "./x", "x/" and a link to x are
// one workspace; by its normalized path when it cannot be looked at.
std::string WorkspaceIdentity(const std::string& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) == 0)
        return std::to_string(info.st_dev) + ":" + std::to_string(info.st_ino);
    return NormalizePath(path);
}

struct Holder {
    std::string workspace; // identity
    std::string table;     // lower case
    std::function<std::string()> user;
};

struct Register {
    std::mutex mutex;
    std::uint64_t next = 1;
    std::map<std::uint64_t, Holder> holders;
};

// Never destroyed: layers held by statics let go of their holds after static destruction began.
Register& Holds() {
    static Register* r = new Register;
    return *r;
}

std::vector<std::string> Users(const std::string& workspace, const std::string& table) {
    std::vector<std::function<std::string()>> found;
    {
        Register& r = Holds();
        std::lock_guard lock(r.mutex);
        for (const auto& [id, h] : r.holders)
            if (h.workspace == workspace && (table.empty() || h.table == table))
                found.push_back(h.user);
    }
    // The words are asked outside the lock: a holder may look at itself to answer.
    std::vector<std::string> words;
    for (const auto& user : found) {
        std::string w = user ? user() : std::string();
        if (w.empty())
            w = "another part of this program";
        if (std::find(words.begin(), words.end(), w) == words.end())
            words.push_back(std::move(w));
    }
    return words;
}

bool KeyOf(const IDataset& dataset, std::string& workspace, std::string& table) {
    const auto* stored = dynamic_cast<const TableImpl*>(&dataset);
    if (!stored)
        return false;
    workspace = WorkspaceIdentity(stored->Owner()->PathName());
    table = Lower(stored->Name());
    return true;
}

std::string JoinWords(const std::vector<std::string>& words) {
    std::string out;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (i > 0)
            out += i + 1 == words.size() ? " and " : ", ";
        out += words[i];
    }
    return out;
}

} // namespace

void CheckNotHeld(const std::string& workspacePath, const std::string& table, const std::string& display) {
    const std::vector<std::string> users = Users(WorkspaceIdentity(workspacePath), Lower(table));
    if (users.empty())
        return;
    throw DataFault(fault::DataFailed, kSource,
                "'" + display + "' is in use by " + JoinWords(users) + ", so it cannot be deleted or replaced");
}

bool AnyHeld(const std::string& workspacePath) {
    return !Users(WorkspaceIdentity(workspacePath), std::string()).empty();
}

} // namespace data

DatasetHold::~DatasetHold() { Release(); }

DatasetHold::DatasetHold(DatasetHold&& other) noexcept : id_(other.id_) { other.id_ = 0; }

DatasetHold& DatasetHold::operator=(DatasetHold&& other) noexcept {
    if (this != &other) {
        Release();
        id_ = other.id_;
        other.id_ = 0;
    }
    return *this;
}

void DatasetHold::Release() {
    if (id_ == 0)
        return;
    data::Register& r = data::Holds();
    std::lock_guard lock(r.mutex);
    r.holders.erase(id_);
    id_ = 0;
}

DatasetHold HoldDataset(const IDataset& dataset, std::function<std::string()> user) {
    data::Holder holder;
    if (!data::KeyOf(dataset, holder.workspace, holder.table))
        return {};
    holder.user = std::move(user);
    data::Register& r = data::Holds();
    std::lock_guard lock(r.mutex);
    const std::uint64_t id = r.next++;
    r.holders.emplace(id, std::move(holder));
    return DatasetHold(id);
}

std::vector<std::string> DatasetUsers(const IDataset& dataset) {
    std::string workspace, table;
    if (!data::KeyOf(dataset, workspace, table))
        return {};
    return data::Users(workspace, table);
}

} // namespace tess
