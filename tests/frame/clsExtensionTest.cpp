#include "frame/clsExtension.h"
#include "platform/system/Fault.h"
#include "platform/framework/Registry.h"
#include "platform/system/VariantStream.h"
#include "platform/ui/ScriptedUI.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <random>

namespace tess {
namespace {

class ExtensionTest : public ::testing::Test {
protected:
    void SetUp() override { previous_ = SetUI(ui_); }
    void TearDown() override { SetUI(previous_); }
    std::shared_ptr<ScriptedUI> ui_ = std::make_shared<ScriptedUI>();
    std::shared_ptr<IUIServices> previous_;
};

TEST_F(ExtensionTest, StartsWithEverythingClear) {
    clsExtension ext;
    EXPECT_EQ(ext.Name(), "Tessarine Suite");
    EXPECT_EQ(ext.ID(), "Tessarine.clsExtension");
    EXPECT_EQ(ext.LongitudeShift(), 0.0);
    EXPECT_EQ(ext.LongitudeWrapOption(), 0);
    EXPECT_TRUE(ext.DirectoryPath().empty());
    EXPECT_FALSE(ext.ShouldContinue());
    EXPECT_EQ(ext.SelectedLayer(), nullptr);
}

TEST_F(ExtensionTest, SaveThenLoadGivesBackEveryPersistedProperty) {
    clsExtension a;
    a.DirectoryPath("/data/out.gdb");
    a.NewShapefileLocation(""); // empty strings stay empty
    a.ProgressDialogSetExpanded(true);
    a.ProgressDialogAutoClose(true);
    a.LongitudeShift(-180.0);
    a.LongitudeWrapOption(2);
    a.CustomBoundaryWest(-0.1);
    a.CustomBoundaryNorth(90.0);
    a.CustomBoundaryEast(359.9);
    a.CustomBoundarySouth(-90.0);
    a.DirectoryType("File Geodatabase");
    MemoryVariantStream stream;
    a.Save(stream);
    ASSERT_EQ(stream.Count(), 12u);
    EXPECT_EQ(stream.Read().ToDouble(), 3.0); // the stream version leads

    // Through the document's text form, as the map document carries it.
    auto reread = MemoryVariantStream::FromText(stream.ToText());
    clsExtension b;
    b.Load(reread);
    EXPECT_TRUE(ui_->Errors().empty());
    EXPECT_EQ(b.LoadedStreamVersion(), 3.0);
    EXPECT_EQ(b.DirectoryPath(), "/data/out.gdb");
    EXPECT_EQ(b.NewShapefileLocation(), "");
    EXPECT_TRUE(b.ProgressDialogSetExpanded());
    EXPECT_TRUE(b.ProgressDialogAutoClose());
    EXPECT_EQ(b.LongitudeShift(), -180.0);
    EXPECT_EQ(b.LongitudeWrapOption(), 2);
    EXPECT_EQ(b.CustomBoundaryWest(), -0.1);
    EXPECT_EQ(b.CustomBoundaryNorth(), 90.0);
    EXPECT_EQ(b.CustomBoundaryEast(), 359.9);
    EXPECT_EQ(b.CustomBoundarySouth(), -90.0);
    EXPECT_EQ(b.DirectoryType(), "File Geodatabase");
}

TEST_F(ExtensionTest, ShortStreamKeepsWhatWasReadAndReportsTheFault) {
    MemoryVariantStream stream;
    stream.Write(Variant(3.0));
    stream.Write(Variant(std::string("/old/place")));
    stream.Write(Variant(std::string("/old/place/out.shp")));
    stream.Write(Variant(true));
    clsExtension ext;
    ext.ProgressDialogAutoClose(true);
    ext.Load(stream);
    EXPECT_EQ(ext.DirectoryPath(), "/old/place");
    EXPECT_EQ(ext.NewShapefileLocation(), "/old/place/out.shp");
    EXPECT_TRUE(ext.ProgressDialogSetExpanded());
    EXPECT_TRUE(ext.ProgressDialogAutoClose()); // not reached: unchanged
    auto errors = ui_->Errors();
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_NE(errors[0].find("IPersistVariant_Load "), std::string::npos);
}

TEST_F(ExtensionTest, StreamWithUnconvertibleValueIsReported) {
    MemoryVariantStream stream;
    stream.Write(Variant(std::string("three")));
    clsExtension ext;
    ext.Load(stream);
    EXPECT_EQ(ui_->Errors().size(), 1u);
}

TEST(HostVersionTest, NineTwoAndLaterEnablePolygonBuilding) {
    struct Case {
        const char* text;
        bool expected;
    } cases[] = {
        {"9.2", true},  {"9.3.1", true}, {"10.0", true}, {"10", false}, {"9.1", false},
        {"8.3", false}, {"", false},     {"Unable to determine ArcGIS Version!", false},
        {"x.2", false}, {"11.1", true},
    };
    for (const auto& c : cases)
        EXPECT_EQ(IsVersion92OrLater(c.text), c.expected) << c.text;
}

TEST(HostVersionTest, SubKeyJoinsWithBackslashes) {
    EXPECT_EQ(SubKey("ESRI", "ArcGIS", ""), "Software\\ESRI\\ArcGIS");
    EXPECT_EQ(SubKey("ESRI", "ArcGIS", "9.2"), "Software\\ESRI\\ArcGIS\\9.2");
}

TEST_F(ExtensionTest, StartupReadsTheRegistryVersion) {
    auto path = std::filesystem::temp_directory_path() / "tess-ext-registry.json";
    std::filesystem::remove(path);
    const char* old = std::getenv("TESS_REGISTRY");
    std::string previous = old ? old : "";
    setenv("TESS_REGISTRY", path.c_str(), 1);
    {
        clsExtension ext;
        ext.Startup(nullptr);
        EXPECT_TRUE(ext.IsVersion92()); // the platform declares 10.0
    }
    Registry().WriteString(RegistryHive::LocalMachine, "Software\\ESRI\\ArcGIS", "RealVersion", "9.1");
    {
        clsExtension ext;
        ext.Startup(nullptr);
        EXPECT_FALSE(ext.IsVersion92());
    }
    std::filesystem::remove(path);
    if (previous.empty())
        unsetenv("TESS_REGISTRY");
    else
        setenv("TESS_REGISTRY", previous.c_str(), 1);
}

} // namespace
} // namespace tess

namespace tess {
namespace {

// Whatever a document carries as the extension's stream, reading it never crashes:
// text that is no stream is a Fault, a stream of odd values ends in a reported fault.
TEST_F(ExtensionTest, RandomAndTruncatedStreamsNeverCrash) {
    clsExtension source;
    source.DirectoryPath("/data/out");
    source.DirectoryType("Shapefile");
    MemoryVariantStream good;
    source.Save(good);
    const std::string text = good.ToText();

    std::mt19937 random(20261122); // fixed seed: the same cases every run
    const std::string alphabet = "{}[]\":,0123456789.eE+-truefalsnulDoubleStringBooleanLong \\u";
    int parsed = 0;
    for (int round = 0; round < 3000; ++round) {
        std::string input;
        switch (round % 3) {
        case 0: // truncated anywhere
            input = text.substr(0, random() % (text.size() + 1));
            break;
        case 1: { // a few bytes changed
            input = text;
            for (int k = 0; k < 3; ++k)
                input[random() % input.size()] = alphabet[random() % alphabet.size()];
            break;
        }
        default: // noise
            for (std::size_t k = random() % 64; k > 0; --k)
                input += alphabet[random() % alphabet.size()];
        }
        std::optional<MemoryVariantStream> stream;
        try {
            stream = MemoryVariantStream::FromText(input);
        } catch (const Fault&) {
            continue;
        }
        ++parsed;
        clsExtension target;
        target.Load(*stream);
    }
    EXPECT_GT(parsed, 0); // some mutations still parse and reach Load
}

} // namespace
} // namespace tess
