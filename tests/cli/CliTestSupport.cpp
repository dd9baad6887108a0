#include "CliTestSupport.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "CommandRun.h"
#include "platform/carto/Layers.h"
#include "platform/data/Cursor.h"
#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/QueryFilter.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/geometry/Geometry.h"
#include "platform/geometry/Path.h"
#include "platform/geometry/Polyline.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"
#include "platform/system/Variant.h"

extern char** environ;

namespace tess::test {
namespace fs = std::filesystem;

TempDir::TempDir() {
    static std::atomic<int> counter{0};
    path_ = fs::temp_directory_path() / ("tess-cli-" + std::to_string(::getpid()) + "-" + std::to_string(++counter));
    fs::remove_all(path_);
    fs::create_directories(path_);
}

TempDir::~TempDir() {
    std::error_code error;
    fs::remove_all(path_, error);
}

Child::Child(const std::vector<std::string>& args, const fs::path& folder, const std::string& input,
             ChildInput kind) {
    int outPipe[2];
    int errPipe[2];
    int inPipe[2];
    if (::pipe(outPipe) != 0 || ::pipe(errPipe) != 0 || ::pipe(inPipe) != 0)
        throw std::runtime_error("pipe failed");
    int terminal = -1;
    if (kind == ChildInput::Terminal) {
        // A pseudo-terminal for the input: the child sees a user who can be asked.
        terminalFd_ = ::posix_openpt(O_RDWR | O_NOCTTY);
        if (terminalFd_ < 0 || ::grantpt(terminalFd_) != 0 || ::unlockpt(terminalFd_) != 0)
            throw std::runtime_error("no pseudo-terminal");
        terminal = ::open(::ptsname(terminalFd_), O_RDWR | O_NOCTTY);
        if (terminal < 0)
            throw std::runtime_error("cannot open the pseudo-terminal");
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, terminal >= 0 ? terminal : inPipe[0], STDIN_FILENO);
    if (terminal >= 0)
        posix_spawn_file_actions_addclose(&actions, terminal);
    posix_spawn_file_actions_adddup2(&actions, outPipe[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errPipe[1], STDERR_FILENO);
    for (int fd : {inPipe[0], inPipe[1], outPipe[0], outPipe[1], errPipe[0], errPipe[1]})
        posix_spawn_file_actions_addclose(&actions, fd);
    posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());

    std::vector<std::string> env;
    for (char** e = environ; *e; ++e)
        if (std::strncmp(*e, "TESS_REGISTRY=", 14) != 0)
            env.emplace_back(*e);
    env.push_back("TESS_REGISTRY=" + (folder / "registry.json").string());
    std::vector<char*> envp;
    for (auto& e : env)
        envp.push_back(e.data());
    envp.push_back(nullptr);

    std::vector<std::string> argv{TESS_CLI_BINARY};
    argv.insert(argv.end(), args.begin(), args.end());
    std::vector<char*> argp;
    for (auto& a : argv)
        argp.push_back(a.data());
    argp.push_back(nullptr);

    const int spawned = posix_spawn(&pid_, TESS_CLI_BINARY, &actions, nullptr, argp.data(), envp.data());
    posix_spawn_file_actions_destroy(&actions);
    ::close(inPipe[0]);
    ::close(outPipe[1]);
    ::close(errPipe[1]);
    if (terminal >= 0)
        ::close(terminal);
    if (spawned != 0)
        throw std::runtime_error(std::string("cannot start ") + TESS_CLI_BINARY);
    if (!input.empty() && ::write(inPipe[1], input.data(), input.size()) < 0)
        throw std::runtime_error("cannot write the child's input");
    ::close(inPipe[1]);
    outFd_ = outPipe[0];
    errFd_ = errPipe[0];
}

Child::~Child() {
    if (pid_ > 0) {
        ::kill(pid_, SIGKILL);
        Finish();
    }
    if (terminalFd_ >= 0)
        ::close(terminalFd_);
}

void Child::Type(const std::string& keys) {
    if (terminalFd_ < 0 || ::write(terminalFd_, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size()))
        throw std::runtime_error("cannot type on the child's terminal");
}

bool Child::Pump() {
    pollfd fds[2] = {{outFd_, POLLIN, 0}, {errFd_, POLLIN, 0}};
    const int open = (outFd_ >= 0) + (errFd_ >= 0);
    if (open == 0)
        return false;
    constexpr int kWaitMilliseconds = 1000;
    if (::poll(fds, 2, kWaitMilliseconds) <= 0)
        return true;
    char buffer[4096];
    for (int i = 0; i < 2; ++i) {
        int& fd = i == 0 ? outFd_ : errFd_;
        if (fd < 0 || !(fds[i].revents & (POLLIN | POLLHUP)))
            continue;
        const ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n <= 0) {
            ::close(fd);
            fd = -1;
        } else {
            (i == 0 ? result_.out : result_.err).append(buffer, static_cast<std::size_t>(n));
        }
    }
    return true;
}

bool Child::WaitForErr(const std::string& text) {
    while (result_.err.find(text) == std::string::npos)
        if (!Pump())
            return false;
    return true;
}

ProcessResult Child::Finish() {
    while (Pump()) {
    }
    if (pid_ > 0) {
        int status = 0;
        ::waitpid(pid_, &status, 0);
        result_.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        pid_ = -1;
    }
    return result_;
}

ProcessResult RunTessarine(const std::vector<std::string>& args, const fs::path& folder, const std::string& input) {
    Child child(args, folder, input);
    return child.Finish();
}

void CopyDemoData(const fs::path& folder) {
    const fs::path data = folder / "data";
    fs::create_directories(data);
    fs::copy_file(fs::path(TESS_SOURCE_DATA_DIR) / "demo.map.json", data / "demo.map.json");
    fs::copy(TESS_DEMO_DATASETS_DIR, data / "demo", fs::copy_options::recursive);
}

void MakeLongLines(const std::string& folder, int features, int verticesEach) {
    auto workspace = std::dynamic_pointer_cast<IFeatureWorkspace>(ShapefileWorkspaceFactory().OpenFromFile(folder, 0));
    auto fields = std::make_shared<Fields>();
    auto def = std::make_shared<GeometryDef>();
    def->GeometryType(esriGeometryPolyline);
    def->SpatialReference(SpatialReferenceEnvironment().CreateGeographicCoordinateSystem(4326));
    auto shape = std::make_shared<Field>();
    shape->Name("Shape");
    shape->Type(esriFieldTypeGeometry);
    shape->GeometryDef(def);
    fields->AddField(shape);
    auto featureClass = workspace->CreateFeatureClass("long_lines", fields, nullptr, nullptr, esriFTSimple, "Shape", "");
    auto cursor = featureClass->Insert(true);
    auto buffer = featureClass->CreateFeatureBuffer();
    constexpr double kStep = 1e-4; // degrees between vertices
    for (int f = 0; f < features; ++f) {
        std::vector<WKSPoint> points(static_cast<std::size_t>(verticesEach));
        for (int v = 0; v < verticesEach; ++v)
            points[static_cast<std::size_t>(v)] = {v * kStep, f * kStep};
        auto path = std::make_shared<Path>();
        path->AddWKSPoints(verticesEach, points.data());
        auto line = std::make_shared<Polyline>();
        line->AddPart(path);
        buffer->Shape(line);
        cursor->InsertFeature(*buffer);
    }
    cursor->Flush();
}

std::map<std::string, std::string> Snapshot(const fs::path& path) {
    const auto contents = [](const fs::path& file) {
        std::ifstream in(file, std::ios::binary);
        std::ostringstream out;
        out << in.rdbuf();
        return out.str();
    };
    std::map<std::string, std::string> files;
    if (fs::is_regular_file(path)) {
        files[path.filename().string()] = contents(path);
        return files;
    }
    for (const auto& entry : fs::recursive_directory_iterator(path))
        if (entry.is_regular_file())
            files[fs::relative(entry.path(), path).string()] = contents(entry.path());
    return files;
}

std::shared_ptr<IFeatureClass> OpenClass(const std::string& datasetPath) {
    auto layer = cli::OpenDatasetLayer(datasetPath);
    return layer->FeatureClass();
}

std::vector<FeatureRecord> ReadFeatures(const std::string& datasetPath) { return ReadFeatures(datasetPath, ""); }

std::vector<FeatureRecord> ReadFeatures(const std::string& datasetPath, const std::string& where) {
    auto featureClass = OpenClass(datasetPath);
    std::shared_ptr<QueryFilter> filter;
    if (!where.empty()) {
        filter = std::make_shared<QueryFilter>();
        filter->WhereClause(where);
    }
    auto fields = featureClass->Fields();
    std::vector<FeatureRecord> records;
    auto cursor = featureClass->Search(filter, false);
    for (auto feature = cursor->NextFeature(); feature; feature = cursor->NextFeature()) {
        FeatureRecord record;
        record.oid = feature->OID();
        if (auto shape = feature->Shape()) {
            if (auto* point = dynamic_cast<const IPoint*>(shape.get()); point && !shape->IsEmpty()) {
                record.points.emplace_back(point->X(), point->Y());
            } else if (auto* points = dynamic_cast<const IPointCollection*>(shape.get())) {
                std::vector<WKSPoint> vertices(static_cast<std::size_t>(points->PointCount()));
                points->QueryWKSPoints(0, points->PointCount(), vertices.data());
                for (const WKSPoint& v : vertices)
                    record.points.emplace_back(v.X, v.Y);
                // Parts of lines and polygons; each point of a multipoint is a part of its own.
                std::size_t start = 0;
                if (auto* parts = dynamic_cast<const IGeometryCollection*>(shape.get());
                    parts && shape->GeometryType() != esriGeometryMultipoint) {
                    for (std::int32_t i = 0; i < parts->GeometryCount(); ++i) {
                        record.partStarts.push_back(start);
                        auto part = std::dynamic_pointer_cast<IPointCollection>(parts->Geometry(i));
                        start += part ? static_cast<std::size_t>(part->PointCount()) : 0;
                    }
                }
            }
        }
        for (std::int32_t i = 0; i < fields->FieldCount(); ++i) {
            auto field = fields->Field(i);
            if (field->Type() == esriFieldTypeGeometry || field->Type() == esriFieldTypeOID)
                continue;
            std::string name = field->Name();
            std::transform(name.begin(), name.end(), name.begin(),
                           [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
            record.values[name] = feature->Value(i).ToString();
        }
        records.push_back(std::move(record));
    }
    return records;
}

} // namespace tess::test
