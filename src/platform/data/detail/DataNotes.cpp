#include "platform/data/DataNotes.h"

#include <mutex>

namespace tess {
namespace {

// Distinct notes kept; beyond that only counts grow, so a damaged file of millions of records
// cannot fill the memory with its warnings.
constexpr std::size_t kMaxDistinctNotes = 200;

struct Notes {
    std::mutex mutex;
    std::vector<DataNote> list;
};

// Never destroyed, so that a read during static destruction still has somewhere to note.
Notes& Store() {
    static Notes* notes = new Notes;
    return *notes;
}

} // namespace

std::vector<DataNote> DataNotes() {
    Notes& n = Store();
    std::lock_guard lock(n.mutex);
    return n.list;
}

void ClearDataNotes() {
    Notes& n = Store();
    std::lock_guard lock(n.mutex);
    n.list.clear();
}

void AddDataNote(const std::string& dataset, const std::string& text) {
    Notes& n = Store();
    std::lock_guard lock(n.mutex);
    for (DataNote& note : n.list)
        if (note.dataset == dataset && note.text == text) {
            ++note.count;
            return;
        }
    if (n.list.size() >= kMaxDistinctNotes) {
        ++n.list.back().count;
        return;
    }
    n.list.push_back({dataset, text, 1});
}

} // namespace tess
