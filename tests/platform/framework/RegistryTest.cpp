// The registry stand-in: values under keys, the platform's version written
// when absent, component categories, and faults for a damaged store.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "platform/framework/Registry.h"
#include "platform/system/Fault.h"

namespace tess {
namespace {

namespace fs = std::filesystem;

class RegistryTest : public ::testing::Test {
protected:
    void SetUp() override {
        folder = fs::temp_directory_path() /
                 ("tess-registry-" + std::to_string(::getpid()) + "-" +
                  ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(folder);
        fs::create_directories(folder);
        path = (folder / "sub" / "registry.json").string();
    }
    void TearDown() override { fs::remove_all(folder); }

    std::string Contents() const {
        std::ifstream in(path);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }

    fs::path folder;
    std::string path;
};

TEST_F(RegistryTest, TheHostVersionIsTenAndIsWrittenTheFirstTimeItIsRead) {
    Registry registry(path);
    EXPECT_FALSE(fs::exists(path));
    EXPECT_EQ(registry.ReadString(RegistryHive::LocalMachine, "Software\\ESRI\\ArcGIS", "RealVersion"), "10.0");
    ASSERT_TRUE(fs::exists(path));
    EXPECT_NE(Contents().find("\"RealVersion\": \"10.0\""), std::string::npos);
    EXPECT_EQ(registry.HostVersion(), "10.0");
}

TEST_F(RegistryTest, AStoredVersionWins) {
    Registry registry(path);
    registry.WriteString(RegistryHive::LocalMachine, kHostVersionKey, kHostVersionValue, "9.1");
    EXPECT_EQ(registry.HostVersion(), "9.1");
    // Another value under another hive is a different value.
    EXPECT_EQ(registry.ReadString(RegistryHive::CurrentUser, kHostVersionKey, kHostVersionValue), std::nullopt);
}

TEST_F(RegistryTest, KeysIgnoreCaseAndTakeEitherSeparator) {
    Registry registry(path);
    registry.WriteString(RegistryHive::CurrentUser, "Software\\Tessarine\\Settings", "LastFolder", "/data");
    EXPECT_EQ(registry.ReadString(RegistryHive::CurrentUser, "software/tessarine/settings/", "lastfolder"), "/data");
    registry.WriteString(RegistryHive::CurrentUser, "SOFTWARE\\TESSARINE\\SETTINGS", "LASTFOLDER", "/other");
    EXPECT_EQ(registry.ReadString(RegistryHive::CurrentUser, "Software\\Tessarine\\Settings", "LastFolder"), "/other");
    EXPECT_TRUE(registry.DeleteValue(RegistryHive::CurrentUser, "Software\\Tessarine\\Settings", "lastFolder"));
    EXPECT_FALSE(registry.DeleteValue(RegistryHive::CurrentUser, "Software\\Tessarine\\Settings", "lastFolder"));
    EXPECT_EQ(registry.ReadString(RegistryHive::CurrentUser, "Software\\Tessarine\\Settings", "LastFolder"),
              std::nullopt);
}

TEST_F(RegistryTest, ComponentCategoriesRegisterOnceAndUnregisterByEitherName) {
    Registry registry(path);
    const std::string category = "Tessarine Extensions";
    registry.RegisterComponent(category, {"{11111111-2222-3333-4444-555555555555}", "Tessarine.clsExtension"});
    registry.RegisterComponent(category, {"", "Tessarine.clsToolBar"});
    registry.RegisterComponent(category, {"{11111111-2222-3333-4444-555555555555}", "Tessarine.clsExtension"});
    auto members = registry.Components(category);
    ASSERT_EQ(members.size(), 2u);
    EXPECT_EQ(members[0].progId, "Tessarine.clsExtension");
    EXPECT_EQ(registry.Categories(), std::vector<std::string>{category});

    EXPECT_TRUE(registry.UnregisterComponent(category, "{11111111-2222-3333-4444-555555555555}"));
    EXPECT_TRUE(registry.UnregisterComponent(category, "tessarine.clstoolbar"));
    EXPECT_FALSE(registry.UnregisterComponent(category, "Tessarine.clsToolBar"));
    EXPECT_TRUE(registry.Components(category).empty());
    EXPECT_TRUE(registry.Categories().empty());
    EXPECT_THROW(registry.RegisterComponent("", {"", "x"}), Fault);
}

TEST_F(RegistryTest, ADamagedStoreIsAFaultNamingItAndIsLeftAlone) {
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream(path) << "{ not json";
    Registry registry(path);
    try {
        registry.WriteString(RegistryHive::CurrentUser, "k", "v", "x");
        FAIL() << "a damaged store must not be overwritten";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.Number(), fault::InvalidFileFormat);
        EXPECT_NE(fault.Description().find(path), std::string::npos);
    }
    EXPECT_EQ(Contents(), "{ not json");
}

TEST_F(RegistryTest, TheStoreIsFoundThroughTheEnvironment) {
    const char* before = std::getenv("TESS_REGISTRY");
    const std::string saved = before ? before : "";
    ::setenv("TESS_REGISTRY", path.c_str(), 1);
    EXPECT_EQ(Registry::DefaultPath(), path);
    EXPECT_EQ(Registry().Path(), path);
    ::unsetenv("TESS_REGISTRY");
    EXPECT_NE(Registry::DefaultPath().find(".config/tessarine/registry.json"), std::string::npos);
    if (before)
        ::setenv("TESS_REGISTRY", saved.c_str(), 1);
}

} // namespace
} // namespace tess
