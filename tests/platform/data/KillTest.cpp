// A child process rewrites every row of a dataset (adding a field first) and is killed with
// SIGKILL at chosen moments: at each step of saving the change, and after growing delays.
// The dataset must then open and read completely, every row old or every row new.

#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "DataTestSupport.h"
#include "platform/data/Cursor.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/data/detail/Staging.h"
#include "platform/geometry/Geometries.h"
#include "platform/system/Fault.h"

namespace tess::test {
namespace {

namespace fs = std::filesystem;

// Rows enough that rewriting them takes a good part of a second, so that timed kills land
// inside the work and not only before or after it.
constexpr int kShapefileRows = 200000;
constexpr int kGeodatabaseRows = 40000;
constexpr int kOld = 0;
constexpr int kNew = 1;

struct KillCase {
    Format format;
    const char* step;  //!< a step of Staging::Commit to die at, or nullptr for a timed kill
    int delayMs;       //!< timed kill after this many milliseconds
    int expected;      //!< kOld, kNew, or -1 when either is right
};

std::string CaseName(const KillCase& c) {
    return FormatName(c.format) + "_" + (c.step ? std::string(c.step) : "after" + std::to_string(c.delayMs) + "ms");
}

class KillTest : public ::testing::TestWithParam<KillCase> {
protected:
    int Rows() const { return GetParam().format == Format::Shapefile ? kShapefileRows : kGeodatabaseRows; }

    std::shared_ptr<IFeatureWorkspace> Open() {
        const std::string path = GetParam().format == Format::Shapefile ? dir / "shapes" : dir / "data.gdb";
        return std::dynamic_pointer_cast<IFeatureWorkspace>(WorkspaceFactoryForPath(path)->OpenFromFile(path, 0));
    }

    void MakeData() {
        auto ws = MakeWorkspace(GetParam().format, dir);
        auto fc = CreateClass(*ws, "pts", esriGeometryPoint, nullptr, {MakeField("VAL", esriFieldTypeInteger)});
        auto cursor = fc->Insert(true);
        auto buffer = fc->CreateFeatureBuffer();
        buffer->Value(fc->FindField("VAL"), kOld);
        for (int i = 0; i < Rows(); ++i) {
            buffer->Shape(MakePoint(i, kOld));
            cursor->InsertFeature(*buffer);
        }
    }

    // In the child: a new field, then every row gets VAL 1, y 1 and the new field set.
    [[noreturn]] static void Rewrite(const std::shared_ptr<IFeatureWorkspace>& ws) {
        try {
            auto fc = ws->OpenFeatureClass("pts");
            auto edit = std::dynamic_pointer_cast<IWorkspaceEdit>(ws);
            edit->StartEditing(false);
            fc->AddField(MakeField("NEWF", esriFieldTypeDouble, 0, 16, 8));
            const std::int32_t val = fc->FindField("VAL"), added = fc->FindField("NEWF");
            {
                auto cursor = fc->Update(nullptr, true);
                while (auto f = cursor->NextFeature()) {
                    f->Value(val, kNew);
                    f->Value(added, 0.5);
                    auto p = std::dynamic_pointer_cast<IPoint>(f->Shape());
                    p->Y(kNew);
                    cursor->UpdateFeature(*f);
                }
            }
            edit->StopEditing(true);
        } catch (...) {
            ::_exit(2);
        }
        ::_exit(0);
    }

    TempDir dir;
};

TEST_P(KillTest, DatasetOpensAndReadsWholeAfterAKill) {
    const KillCase c = GetParam();
    MakeData();

    const pid_t pid = ::fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        if (c.step)
            data::Staging::SetStepHook([step = std::string(c.step)](std::string_view s) {
                if (s == step)
                    ::raise(SIGKILL);
            });
        Rewrite(Open());
    }
    if (!c.step) {
        std::this_thread::sleep_for(std::chrono::milliseconds(c.delayMs));
        ::kill(pid, SIGKILL);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(pid, &status, 0), pid);
    ASSERT_TRUE(WIFSIGNALED(status) || (WIFEXITED(status) && WEXITSTATUS(status) == 0)) << status;

    auto ws = Open();
    auto fc = ws->OpenFeatureClass("pts");
    const bool hasNew = fc->FindField("NEWF") >= 0;
    auto cursor = fc->Search(nullptr, true);
    int n = 0, newRows = 0;
    while (auto f = cursor->NextFeature()) {
        const std::int32_t v = f->Value(fc->FindField("VAL")).ToLong();
        const auto p = std::dynamic_pointer_cast<IPoint>(f->Shape());
        ASSERT_TRUE(p);
        ASSERT_EQ(p->X(), n);
        ASSERT_EQ(p->Y(), v); // shape and attributes changed together
        if (hasNew) {
            ASSERT_EQ(f->Value(fc->FindField("NEWF")).ToDouble(), v == kNew ? 0.5 : 0.0) << n;
        }
        newRows += v == kNew;
        ++n;
    }
    EXPECT_EQ(n, Rows());
    EXPECT_TRUE(newRows == 0 || newRows == n) << newRows << " of " << n << " rows changed";
    EXPECT_EQ(hasNew, newRows == n);
    if (c.expected != -1) {
        EXPECT_EQ(newRows == n ? kNew : kOld, c.expected);
    }
    // Nothing of the interrupted change is left behind.
    for (const auto& entry : fs::directory_iterator(std::dynamic_pointer_cast<IWorkspace>(ws)->PathName()))
        EXPECT_EQ(entry.path().filename().string().find(".tess-staging"), std::string::npos) << entry.path();
}

INSTANTIATE_TEST_SUITE_P(
    Kills, KillTest,
    ::testing::Values(
        // Before the journal the change is dropped; from the journal on it is completed.
        KillCase{Format::Shapefile, "staged", 0, kOld}, KillCase{Format::Shapefile, "journal", 0, kNew},
        KillCase{Format::Shapefile, "renamed", 0, kNew}, KillCase{Format::Shapefile, "done", 0, kNew},
        KillCase{Format::FileGDB, "staged", 0, kOld}, KillCase{Format::FileGDB, "journal", 0, kNew},
        KillCase{Format::FileGDB, "renamed", 0, kNew}, KillCase{Format::FileGDB, "done", 0, kNew},
        KillCase{Format::Shapefile, nullptr, 0, -1}, KillCase{Format::Shapefile, nullptr, 30, -1},
        KillCase{Format::Shapefile, nullptr, 150, -1}, KillCase{Format::Shapefile, nullptr, 400, -1},
        KillCase{Format::Shapefile, nullptr, 900, -1}, KillCase{Format::Shapefile, nullptr, 1600, -1},
        KillCase{Format::FileGDB, nullptr, 30, -1}, KillCase{Format::FileGDB, nullptr, 200, -1},
        KillCase{Format::FileGDB, nullptr, 600, -1}, KillCase{Format::FileGDB, nullptr, 1500, -1}),
    [](const auto& info) { return CaseName(info.param); });

} // namespace
} // namespace tess::test
