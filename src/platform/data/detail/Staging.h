#pragma once
// Internal: changes to files of a workspace folder that a kill cannot tear.
//
// The files a change touches are copied into a staging folder inside the
// workspace folder (files it only reads are hard-linked), the engine writes
// the copies, and Commit swaps them in:
//   1. the changed files are flushed to disk;
//   2. a journal listing every rename and removal is written to a temporary
//      name, flushed, and renamed into place (the commit point);
//   3. the renames and removals are done, then the journal and the staging
//      folder are removed.
// Recover, run when a workspace is opened, finishes step 3 when a journal is
// there and otherwise throws away a staging folder left by a dead process.
// Readers of the originals never see a half-written file.

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tess::data {

class Staging {
public:
    //! Starts a change of the files in folder root; the copies live in root/stagingName.
    //! A Fault naming root when the staging folder cannot be made (a read-only folder).
    Staging(std::string root, std::string stagingName);
    //! Rolls back when neither committed nor rolled back.
    ~Staging();
    Staging(const Staging&) = delete;
    Staging& operator=(const Staging&) = delete;

    const std::string& Root() const { return root_; }
    //! The staging folder.
    const std::string& Folder() const { return folder_; }
    //! root/name and folder/name.
    std::string Original(const std::string& name) const;
    std::string Staged(const std::string& name) const;

    //! Copies files of root (names without folders) that the change will write; a file staged as a
    //! link becomes a copy. Files already copied or missing are skipped.
    void Copy(const std::vector<std::string>& names);
    //! Hard-links files the change only reads (copies where links are refused).
    void Link(const std::vector<std::string>& names);
    //! Keeps the engine from making or using the file in the staging folder: a folder of that name
    //! takes its place. The original, if any, is removed by the commit.
    void Block(const std::string& name);
    //! Whether the file was staged by Copy or Link.
    bool Has(const std::string& name) const { return tracked_.count(name) != 0; }

    //! Swaps the change in (see above). Any failure before the commit point leaves the originals
    //! as they were and throws a Fault naming root.
    void Commit();
    //! Throws the copies away.
    void Rollback();
    bool Finished() const { return finished_; }

    //! Completes or rolls back a change interrupted in root, unless a live process still owns it.
    static void Recover(const std::string& root, const std::string& stagingName);

    //! Test hook: called with the name of each step of Commit ("staged", "journal", "renamed",
    //! "done") so that a test can stop the process at that point.
    static void SetStepHook(std::function<void(std::string_view step)> hook);

private:
    void Step(std::string_view step) const;
    std::string root_;
    std::string folder_;
    std::string journal_;
    std::set<std::string> tracked_;
    bool finished_ = false;
};

//! Writes the file through a temporary name, flushes it and renames it into place.
void WriteFileAtomically(const std::string& path, const std::string& content);

} // namespace tess::data
