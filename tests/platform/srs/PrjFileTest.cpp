#include "platform/srs/PrjFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"
#include "platform/system/Fault.h"

namespace tess {
namespace {

namespace fs = std::filesystem;

class PrjFileTest : public ::testing::Test {
protected:
    void SetUp() override {
        dir_ = fs::temp_directory_path() /
               ("tess-prj-" + std::to_string(::getpid()) + "-" +
                ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir_);
        fs::create_directories(dir_);
    }
    void TearDown() override { fs::remove_all(dir_); }
    std::string Path(const char* name) const { return (dir_ / name).string(); }
    static std::string Read(const std::string& path) {
        std::ifstream in(path);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }
    fs::path dir_;
};

TEST_F(PrjFileTest, RoundTripKeepsTheSystem) {
    const SpatialReferenceEnvironment factory;
    for (std::int32_t code : {32633, 3857}) {
        auto sr = factory.CreateProjectedCoordinateSystem(code);
        WritePrjFile(Path("out.prj"), *sr);
        EXPECT_EQ(Read(Path("out.prj")), sr->ExportToESRI());
        auto back = factory.CreateESRISpatialReferenceFromPRJFile(Path("out.prj"));
        EXPECT_TRUE(back->IsEqual(*sr)) << code;
        EXPECT_EQ(back->Name(), sr->Name());
    }
    auto mars = factory.CreateGeographicCoordinateSystem(104905);
    WritePrjFile(Path("mars.prj"), *mars);
    auto back = ReadPrjFile(Path("mars.prj"));
    EXPECT_EQ(back->Name(), "GCS_Mars_2000");
    EXPECT_TRUE(back->IsEqual(*mars));
    // Only the target remains: the temporary file was renamed over it.
    EXPECT_EQ(std::distance(fs::directory_iterator(dir_), fs::directory_iterator()), 2);
}

TEST_F(PrjFileTest, MissingFileIsUnknownAndBackslashesAreSeparators) {
    auto sr = ReadPrjFile(Path("none.prj"));
    EXPECT_NE(std::dynamic_pointer_cast<IUnknownCoordinateSystem>(sr), nullptr);
    const SpatialReferenceEnvironment factory;
    WritePrjFile(Path("a.prj"), *factory.CreateGeographicCoordinateSystem(4326));
    std::string windows = Path("a.prj");
    windows.replace(windows.rfind('/'), 1, "\\");
    EXPECT_EQ(ReadPrjFile(windows)->Name(), "GCS_WGS_1984");
}

TEST_F(PrjFileTest, CorruptFileFaultsNamingThePath) {
    for (const char* content : {"", "this is not a projection", "GEOGCS[\"x\",DATUM["}) {
        std::ofstream(Path("bad.prj")) << content;
        try {
            (void)ReadPrjFile(Path("bad.prj"));
            ADD_FAILURE() << "read: " << content;
        } catch (const Fault& f) {
            EXPECT_EQ(f.Number(), fault::SpatialReferenceFailed);
            EXPECT_NE(f.Description().find(Path("bad.prj")), std::string::npos) << f.Description();
        }
    }
}

TEST_F(PrjFileTest, UnknownReferenceWritesNoFile) {
    const SpatialReferenceEnvironment factory;
    WritePrjFile(Path("x.prj"), *factory.CreateGeographicCoordinateSystem(4326));
    WritePrjFile(Path("x.prj"), *factory.CreateUnknown());
    EXPECT_FALSE(fs::exists(Path("x.prj")));
    EXPECT_THROW(WritePrjFile(Path("no/such/dir/x.prj"), *factory.CreateGeographicCoordinateSystem(4326)), Fault);
}

} // namespace
} // namespace tess
