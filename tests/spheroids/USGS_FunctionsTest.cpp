#include "spheroids/USGS_Functions.h"

#include "FaultRecorder.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"
#include "platform/system/Arrays.h"
#include "platform/system/Clone.h"
#include "platform/system/Collection.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

namespace tess::USGS_Functions {
namespace {

using tess::testing::FaultRecorder;
namespace fs = std::filesystem;

std::vector<std::string> Lines(const std::string& table) {
    std::vector<std::string> lines;
    std::size_t start = 0, at;
    while ((at = table.find("\r\n", start)) != std::string::npos) {
        lines.push_back(table.substr(start, at - start));
        start = at + 2;
    }
    EXPECT_EQ(start, table.size()) << "every line ends in CR LF";
    return lines;
}

std::vector<std::string> Names(const IVariantArray& catalogue, int index) {
    auto array = catalogue.Element(index).As<IStringArray>();
    std::vector<std::string> names;
    for (int i = 0; array && i < array->Count(); ++i)
        names.push_back(array->Element(i));
    return names;
}

TEST(SpheroidTables, PlanetaryTableHas71RowsInCodeOrder) {
    const auto lines = Lines(ESRIPlanetString());
    ASSERT_EQ(lines.size(), 71u);
    for (int i = 0; i < 71; ++i) {
        std::istringstream fields(lines[i]);
        std::string constant;
        int code = 0;
        fields >> constant >> code;
        EXPECT_EQ(code, 107900 + i);
        EXPECT_EQ(constant.rfind("esriSRSpheroid_", 0), 0u);
    }
    EXPECT_EQ(lines[5], "esriSRSpheroid_Mars2000 107905 Mars 2000. ");
    EXPECT_EQ(lines[6], "esriSRSpheroid_MarsDeimos 107906 Mars - Deimos. ");
    EXPECT_EQ(lines[70], "esriSRSpheroid_PlutoCharon 107970 Pluto - Charon. ");
}

TEST(SpheroidTables, CommonEarthTableKeepsItsOrderAndOddEndings) {
    const auto lines = Lines(ESRICommonEarthString());
    ASSERT_EQ(lines.size(), 56u);
    EXPECT_EQ(lines.front(), "esriSRSpheroid_Airy1830 7001 Airy 1830. ");
    EXPECT_EQ(lines[2], "esriSRSpheroid_ATS1977 7041 Average Terrestrial System 1977. ");
    EXPECT_EQ(lines[52], "esriSRSpheroid_Clarke1880_IntlFt 7055 Clarke 1880 (Intl Foot) ");
    EXPECT_EQ(lines.back(), "esriSRSpheroid_MajorAuxiliarySphere_WGS1984 107037 Major auxiliary sphere based upon WGS 1984.");
}

class CatalogueTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::random_device seed;
        folder_ = fs::temp_directory_path() / ("tess-spheroids-" + std::to_string(seed()));
        fs::create_directories(folder_);
        previous_ = AppPath();
        AppPath(folder_.string());
    }
    void TearDown() override {
        AppPath(previous_);
        fs::remove_all(folder_);
    }
    void WriteFile(const std::string& text) { std::ofstream(folder_ / "spheroids.dat", std::ios::binary) << text; }

    fs::path folder_;
    std::string previous_;
    FaultRecorder faults_;
};

TEST_F(CatalogueTest, WithoutFileAllPlatformRowsResolveInTableOrder) {
    const auto catalogue = GetSpheroids();
    ASSERT_TRUE(catalogue);
    ASSERT_EQ(catalogue->Count(), 6);
    EXPECT_TRUE(catalogue->Element(0).IsNothing());
    EXPECT_TRUE(catalogue->Element(1).IsNothing());

    const auto planets = Names(*catalogue, 3);
    const auto earth = Names(*catalogue, 5);
    ASSERT_EQ(planets.size(), 71u);
    ASSERT_EQ(earth.size(), 56u);
    EXPECT_EQ(planets[3], "The Moon");
    EXPECT_EQ(planets[5], "Mars 2000");
    EXPECT_EQ(earth[23], "GRS 1967 = International 1967");
    EXPECT_EQ(earth[52], "Clarke 1880 (Intl Foot)");
    EXPECT_EQ(earth[55], "Major auxiliary sphere based upon WGS 1984");
    EXPECT_EQ(catalogue->Element(2).As<Collection>()->Count(), 71);
    EXPECT_EQ(catalogue->Element(4).As<Collection>()->Count(), 56);
    EXPECT_EQ(faults_.Count(), 0u);
}

TEST_F(CatalogueTest, PlatformRowCarriesFactoryAxesConstantAndAClone) {
    const auto catalogue = GetSpheroids();
    ASSERT_TRUE(catalogue);
    const auto row = catalogue->Element(4).As<Collection>()->Item("wgs 1984").As<IVariantArray>();
    ASSERT_TRUE(row);
    ASSERT_EQ(row->Count(), 5);
    const auto fromFactory = SpatialReferenceEnvironment().CreateSpheroid(7030);
    EXPECT_EQ(row->Element(0).ToString(), "WGS 1984");
    EXPECT_EQ(row->Element(1).ToDouble(), fromFactory->SemiMajorAxis());
    EXPECT_EQ(row->Element(2).ToDouble(), fromFactory->SemiMinorAxis());
    EXPECT_EQ(row->Element(3).ToString(), "esriSRSpheroid_WGS1984");
    const auto copy = row->Element(4).As<ISpheroid>();
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->SemiMajorAxis(), 6378137.0);
    EXPECT_NEAR(copy->SemiMinorAxis(), 6356752.314245, 1e-6); // metres
}

TEST_F(CatalogueTest, BadCustomLinesAreSkippedSilentlyAndOrderIsKept) {
    WriteFile("Io2,1830000,1815000,first\r\n"
              "Short,1,2\r\n"
              "Long,1,2,3,4\r\n"
              "Letters,abc,2,x\r\n"
              "\r\n"
              "Ceres,487300,454700, dwarf planet\n");
    const auto catalogue = GetSpheroids();
    ASSERT_TRUE(catalogue);
    EXPECT_EQ(Names(*catalogue, 1), (std::vector<std::string>{"Io2", "Ceres"}));
    const auto ceres = catalogue->Element(0).As<Collection>()->Item("CERES").As<IVariantArray>();
    ASSERT_EQ(ceres->Count(), 4);
    EXPECT_EQ(ceres->Element(1).ToDouble(), 487300.0);
    EXPECT_EQ(ceres->Element(2).ToDouble(), 454700.0);
    EXPECT_EQ(ceres->Element(3).ToString(), " dwarf planet"); // fields are not trimmed
    EXPECT_EQ(faults_.Count(), 0u);
}

TEST_F(CatalogueTest, RepeatedNamesAreNumberedWithoutRegardToCase) {
    WriteFile("Moon,1737400,1737400,a\r\nMOON,1737400,1737400,b\r\nMoon,1,1,c\r\n");
    const auto catalogue = GetSpheroids();
    ASSERT_TRUE(catalogue);
    EXPECT_EQ(Names(*catalogue, 1), (std::vector<std::string>{"Moon", "MOON (2)", "Moon (3)"}));
}

TEST_F(CatalogueTest, FileWithoutAValidLineFailsTheWholeCatalogue) {
    for (const char* text : {"", "only,three,fields\r\n"}) {
        WriteFile(text);
        EXPECT_EQ(GetSpheroids(), nullptr) << text;
        EXPECT_TRUE(faults_.LastNames("GetSpheroids ")) << faults_.Last();
    }
    EXPECT_EQ(faults_.Count(), 2u);
}

TEST(SpheroidFromCode, UnknownOrUnreadableCodeIsNullWithoutReport) {
    FaultRecorder faults;
    const SpatialReferenceEnvironment factory;
    EXPECT_EQ(SpheroidFromCode(factory, "999999"), nullptr);
    EXPECT_EQ(SpheroidFromCode(factory, "abc"), nullptr);
    const auto mars = SpheroidFromCode(factory, "107905");
    ASSERT_TRUE(mars);
    EXPECT_EQ(mars->SemiMajorAxis(), 3396190.0);
    EXPECT_EQ(faults.Count(), 0u);
}

} // namespace
} // namespace tess::USGS_Functions
