#include "platform/data/detail/Staging.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <sstream>

#include "platform/system/Fault.h"

namespace tess::data {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSource = "tess.data";
constexpr const char* kOwnerFile = ".owner";
constexpr const char* kJournalHeader = "tess-journal 1";
constexpr const char* kTempSuffix = ".tmp";

// Staging folders of this process that are in use, so that a recovery run by another
// workspace object never takes them for leftovers.
std::mutex& RegistryMutex() {
    static std::mutex m;
    return m;
}
std::set<std::string>& Registry() {
    static std::set<std::string> active;
    return active;
}

std::function<void(std::string_view)>& Hook() {
    static std::function<void(std::string_view)> hook;
    return hook;
}

[[noreturn]] void Fail(const std::string& what, const std::error_code& ec) {
    throw DataFault(fault::DataFailed, kSource, what + (ec ? " (" + ec.message() + ")" : std::string()));
}

void SyncPath(const std::string& path, bool directory) {
    const int fd = ::open(path.c_str(), directory ? (O_RDONLY | O_DIRECTORY) : O_RDONLY);
    if (fd < 0)
        return;
    ::fsync(fd);
    ::close(fd);
}

// The start time of a process (field 22 of /proc/<pid>/stat), which tells a live owner from
// another process that happens to have been given the same number later.
std::string ProcessStart(long pid) {
    std::ifstream in("/proc/" + std::to_string(pid) + "/stat");
    std::string text;
    std::getline(in, text);
    const std::size_t close = text.rfind(')');
    if (close == std::string::npos)
        return {};
    std::istringstream rest(text.substr(close + 1));
    std::string field;
    constexpr int kStartTimeField = 20; // fields after the command name, counted from 1 (state is 1)
    for (int i = 1; i <= kStartTimeField && rest >> field; ++i) {
    }
    return field;
}

bool OwnerAlive(const std::string& folder) {
    std::ifstream in(folder + "/" + kOwnerFile);
    long pid = 0;
    std::string start;
    if (!(in >> pid >> start))
        return false;
    if (pid == static_cast<long>(::getpid()))
        return false; // ours but not registered: left by an earlier failure of this process
    if (::kill(static_cast<pid_t>(pid), 0) != 0 && errno != EPERM)
        return false;
    return ProcessStart(pid) == start;
}

struct JournalEntry {
    char op; // 'M' move the staged file into place, 'D' remove the original
    std::string name;
};

std::vector<JournalEntry> ReadJournal(const std::string& path) {
    std::ifstream in(path);
    std::string line;
    std::vector<JournalEntry> entries;
    if (!std::getline(in, line) || line != kJournalHeader)
        return entries;
    while (std::getline(in, line)) {
        if (line.size() > 2 && (line[0] == 'M' || line[0] == 'D') && line[1] == ' ')
            entries.push_back({line[0], line.substr(2)});
    }
    return entries;
}

// Idempotent: a rename whose source is gone was done before the interruption.
void ApplyJournal(const std::string& root, const std::string& folder, const std::vector<JournalEntry>& entries,
                  const std::function<void(std::string_view)>& afterFirstMove) {
    bool moved = false;
    for (const JournalEntry& e : entries) {
        std::error_code ec;
        if (e.op == 'M') {
            const std::string from = folder + "/" + e.name;
            if (!fs::exists(from, ec))
                continue;
            fs::rename(from, root + "/" + e.name, ec);
            if (ec)
                Fail("Cannot complete the change of '" + root + "': '" + e.name + "' cannot be moved into place", ec);
            if (!moved && afterFirstMove)
                afterFirstMove("renamed");
            moved = true;
        } else {
            fs::remove(root + "/" + e.name, ec);
        }
    }
    SyncPath(root, true);
}

} // namespace

void WriteFileAtomically(const std::string& path, const std::string& content) {
    const std::string temp = path + kTempSuffix;
    {
        std::ofstream out(temp, std::ios::binary | std::ios::trunc);
        out << content;
        out.flush();
        if (!out)
            Fail("Cannot write '" + path + "'", std::error_code(errno, std::generic_category()));
    }
    SyncPath(temp, false);
    std::error_code ec;
    fs::rename(temp, path, ec);
    if (ec)
        Fail("Cannot write '" + path + "'", ec);
    SyncPath(fs::path(path).parent_path().string(), true);
}

Staging::Staging(std::string root, std::string stagingName)
    : root_(std::move(root)), folder_(root_ + "/" + stagingName), journal_(folder_ + ".journal") {
    std::error_code ec;
    fs::remove_all(folder_, ec);
    if (!fs::create_directory(folder_, ec) || ec)
        Fail("Cannot change the data in '" + root_ + "': the folder cannot be written", ec);
    {
        std::ofstream owner(folder_ + "/" + kOwnerFile);
        const long pid = static_cast<long>(::getpid());
        owner << pid << ' ' << ProcessStart(pid) << '\n';
        if (!owner)
            Fail("Cannot change the data in '" + root_ + "': the folder cannot be written",
                 std::error_code(errno, std::generic_category()));
    }
    std::lock_guard lock(RegistryMutex());
    Registry().insert(folder_);
}

Staging::~Staging() {
    if (!finished_) {
        try {
            Rollback();
        } catch (...) {
            // Nothing reached the originals; a leftover folder is removed at the next open.
        }
    }
}

std::string Staging::Original(const std::string& name) const { return root_ + "/" + name; }
std::string Staging::Staged(const std::string& name) const { return folder_ + "/" + name; }

void Staging::Copy(const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        std::error_code ec;
        if (!fs::is_regular_file(Original(name), ec))
            continue;
        if (tracked_.count(name)) {
            std::error_code eq;
            if (!fs::equivalent(Staged(name), Original(name), eq) || eq)
                continue; // already a copy of its own
            fs::remove(Staged(name), ec); // a link becomes a copy before anyone writes it
        }
        fs::copy_file(Original(name), Staged(name), fs::copy_options::overwrite_existing, ec);
        if (ec)
            Fail("Cannot change '" + Original(name) + "': no room for a working copy", ec);
        tracked_.insert(name);
    }
}

void Staging::Link(const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        std::error_code ec;
        if (tracked_.count(name) || !fs::is_regular_file(Original(name), ec))
            continue;
        fs::create_hard_link(Original(name), Staged(name), ec);
        if (ec) {
            ec.clear();
            fs::copy_file(Original(name), Staged(name), fs::copy_options::overwrite_existing, ec);
            if (ec)
                Fail("Cannot change '" + Original(name) + "': no room for a working copy", ec);
        }
        tracked_.insert(name);
    }
}

void Staging::Block(const std::string& name) {
    std::error_code ec;
    if (fs::is_regular_file(Original(name), ec))
        tracked_.insert(name);
    fs::remove(Staged(name), ec);
    fs::create_directory(Staged(name), ec);
    if (ec)
        Fail("Cannot change the data in '" + root_ + "'", ec);
}

void Staging::Step(std::string_view step) const {
    if (Hook())
        Hook()(step);
}

void Staging::SetStepHook(std::function<void(std::string_view)> hook) { Hook() = std::move(hook); }

void Staging::Commit() {
    if (finished_)
        return;
    std::vector<JournalEntry> entries;
    std::error_code ec;
    std::set<std::string> present;
    for (const auto& entry : fs::directory_iterator(folder_, ec)) {
        const std::string name = entry.path().filename().string();
        if (name == kOwnerFile || !entry.is_regular_file())
            continue;
        present.insert(name);
        std::error_code eq;
        if (tracked_.count(name) && fs::equivalent(entry.path(), Original(name), eq) && !eq)
            continue; // a link that nobody wrote through
        SyncPath(entry.path().string(), false);
        entries.push_back({'M', name});
    }
    if (ec)
        Fail("Cannot save the change of '" + root_ + "'", ec);
    for (const std::string& name : tracked_)
        if (!present.count(name))
            entries.push_back({'D', name});
    SyncPath(folder_, true);
    Step("staged");

    std::string journal = std::string(kJournalHeader) + "\n";
    for (const JournalEntry& e : entries)
        journal += std::string(1, e.op) + " " + e.name + "\n";
    WriteFileAtomically(journal_, journal);
    Step("journal");

    ApplyJournal(root_, folder_, entries, [this](std::string_view s) { Step(s); });
    Step("done");
    fs::remove(journal_, ec);
    fs::remove_all(folder_, ec);
    finished_ = true;
    std::lock_guard lock(RegistryMutex());
    Registry().erase(folder_);
}

void Staging::Rollback() {
    if (finished_)
        return;
    finished_ = true;
    {
        std::lock_guard lock(RegistryMutex());
        Registry().erase(folder_);
    }
    std::error_code ec;
    fs::remove_all(folder_, ec);
}

void Staging::Recover(const std::string& root, const std::string& stagingName) {
    const std::string folder = root + "/" + stagingName;
    const std::string journal = folder + ".journal";
    {
        std::lock_guard lock(RegistryMutex());
        if (Registry().count(folder))
            return;
    }
    std::error_code ec;
    fs::remove(journal + kTempSuffix, ec); // a journal never completed: the change had not committed
    if (fs::exists(journal, ec)) {
        ApplyJournal(root, folder, ReadJournal(journal), {});
        fs::remove(journal, ec);
        fs::remove_all(folder, ec);
        return;
    }
    if (fs::exists(folder, ec) && !OwnerAlive(folder))
        fs::remove_all(folder, ec);
}

} // namespace tess::data
