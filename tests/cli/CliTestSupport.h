#pragma once
// Shared pieces of the tests of the headless host: temporary folders, the built
// program run as a child process, the demo data copied into a test's folder, and
// the features of a dataset read back through the platform.

#include <sys/types.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tess {
class IFeatureClass;
}

namespace tess::test {

//! A fresh folder under the system's temporary folder, removed with everything in it.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    const std::filesystem::path& Path() const { return path_; }
    std::string operator/(const std::string& name) const { return (path_ / name).string(); }

private:
    std::filesystem::path path_;
};

struct ProcessResult {
    int exitCode = -1; //!< the exit status, or 128 + the signal that ended the child
    std::string out;
    std::string err;
};

//! What the child reads: a pipe with the given text, or a terminal that the test types into.
enum class ChildInput { Pipe, Terminal };

//! A child running the built `tessarine` in `folder`, with its own registry stand-in there.
class Child {
public:
    Child(const std::vector<std::string>& args, const std::filesystem::path& folder, const std::string& input = "",
          ChildInput kind = ChildInput::Pipe);
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    pid_t Pid() const { return pid_; }
    //! Types on the child's terminal (ChildInput::Terminal): "n\n", or "\x04" for Ctrl-D.
    void Type(const std::string& keys);
    //! Reads what the child wrote until `text` appears in its error stream (true) or it ends (false).
    bool WaitForErr(const std::string& text);
    //! Reads everything and waits for the end.
    ProcessResult Finish();

private:
    bool Pump(); // false once both streams are closed
    pid_t pid_ = -1;
    int terminalFd_ = -1; // the controlling side of the child's terminal
    int outFd_ = -1;
    int errFd_ = -1;
    ProcessResult result_;
};

//! Runs `tessarine args...` in `folder` and waits for it.
ProcessResult RunTessarine(const std::vector<std::string>& args, const std::filesystem::path& folder,
                           const std::string& input = "");

//! Copies the demo document and datasets into folder/data (demo.map.json and data/demo/...).
void CopyDemoData(const std::filesystem::path& folder);

//! A polyline shapefile long_lines.shp in folder: `features` lines of `verticesEach` vertices each.
void MakeLongLines(const std::string& folder, int features, int verticesEach);

//! The bytes of every file under path (or of the file itself), by path relative to it.
std::map<std::string, std::string> Snapshot(const std::filesystem::path& path);

//! One feature of a dataset as the tests compare them.
struct FeatureRecord {
    std::int32_t oid = 0;
    std::vector<std::pair<double, double>> points; //!< every vertex, parts one after the other
    std::vector<std::size_t> partStarts;            //!< index in points where each part starts
    std::map<std::string, std::string> values;     //!< attribute text by upper-case field name
};

std::shared_ptr<IFeatureClass> OpenClass(const std::string& datasetPath);
//! The features of the dataset at `datasetPath` (see OpenDatasetLayer), in storage order.
std::vector<FeatureRecord> ReadFeatures(const std::string& datasetPath);
//! The features that `where` selects.
std::vector<FeatureRecord> ReadFeatures(const std::string& datasetPath, const std::string& where);

} // namespace tess::test
