// The component library as a host sees it: loaded from its file, every class
// created through the exported entry point, registration in a registry of its
// own, the bitmap resources.

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "ExtensionTestSupport.h"
#include "extension/ComponentLibrary.h"
#include "platform/framework/Registry.h"

namespace tess {
namespace {

using test::TempRegistry;

// Every class the host may ask for, as the menus and the registration name them.
const std::vector<std::string> kCommands = {
    "clsConvertGeometry", "clsConvertLabelpoint", "clsConvertCentroid", "clsConvertSphCentroid",
    "clsShapesToVertices", "clsConvertToPolygon", "clsConvertToPolyline", "clsBuildPolygon",
    "clsConvertSplit",    "clsConvertJoin",       "cmdNewShapefile",    "clsSelGraphics",
    "clsSelAllElements",  "clsUnselElements",     "clsFlipGraphicSel",  "clsZoomToSelected",
    "clsNameGraphics",    "OGraphicToOCentric",   "OCentricToOGraphic", "clsWrapBoundary",
    "cmdAbout"};
const std::vector<std::string> kMenus = {"clsMenu", "clsShapeSubMenu", "clsGraphicsSubMenu", "clsGeodesicSubMenu"};

std::string ProgID(const std::string& className) { return "Tessarine." + className; }

class ComponentLibraryTest : public test::ScriptedUITest {
protected:
    ComponentLibrary library{TESS_EXTENSION_LIBRARY};
};

TEST_F(ComponentLibraryTest, EveryCommandIsCreatedByItsProgIDAsACommandOnly) {
    for (const std::string& name : kCommands) {
        SCOPED_TRACE(name);
        ComponentObject object = library.Create(ProgID(name));
        ASSERT_TRUE(object.Command);
        EXPECT_EQ(object.ProgID, ProgID(name));
        EXPECT_FALSE(object.Extension || object.MenuDef || object.ToolBarDef || object.FunctionFactory);
        EXPECT_FALSE(object.Command->Name().empty());
    }
}

TEST_F(ComponentLibraryTest, BarsMenusExtensionAndFactoryHaveTheirInterfaces) {
    ComponentObject bar = library.Create(ProgID("clsToolBar"));
    ASSERT_TRUE(bar.ToolBarDef);
    EXPECT_FALSE(bar.MenuDef);
    for (const std::string& name : kMenus) {
        SCOPED_TRACE(name);
        ComponentObject menu = library.Create(ProgID(name));
        ASSERT_TRUE(menu.MenuDef);
        // Only the root menu may stand at the top level.
        EXPECT_EQ(menu.RootLevelMenu != nullptr, name == "clsMenu");
    }
    ComponentObject extension = library.Create("Tessarine.clsExtension");
    ASSERT_TRUE(extension.Extension);
    ASSERT_TRUE(extension.PersistVariant);
    EXPECT_EQ(extension.Extension->Name(), "Tessarine Suite");
    // Both pointers are one object: a cast across its interfaces finds the other.
    EXPECT_EQ(extension.As<IPersistVariant>().get(), extension.PersistVariant.get());
    EXPECT_EQ(extension.As<ICommand>(), nullptr);

    ComponentObject factory = library.Create("Tessarine.clsFunctionFactory");
    ASSERT_TRUE(factory.FunctionFactory);
    EXPECT_EQ(factory.FunctionFactory->Name(), "Tessarine Toolset");
}

TEST_F(ComponentLibraryTest, ProgIDsIgnoreCaseAndBothLabelPointSpellingsMakeOneClass) {
    struct Case {
        const char* asked;
        const char* made;
    };
    const Case cases[] = {
        {"Tessarine.clsConvertLabelpoint", "Tessarine.clsConvertLabelpoint"},
        {"Tessarine.clsConvertLabelPoint", "Tessarine.clsConvertLabelpoint"},
        {"TESSARINE.CLSCONVERTLABELPOINT", "Tessarine.clsConvertLabelpoint"},
        {"tessarine.clsmenu", "Tessarine.clsMenu"},
        {"Tessarine.ocentrictoographic", "Tessarine.OCentricToOGraphic"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.asked);
        ComponentObject object;
        EXPECT_EQ(library.GetClassObject(c.asked, &object), component::kOk);
        EXPECT_EQ(object.ProgID, c.made);
        EXPECT_FALSE(object.Empty());
    }
    EXPECT_EQ(library.Create("Tessarine.clsConvertLabelPoint").Command->Name(), "Tessarine_PolygonToLabelPoints");
}

TEST_F(ComponentLibraryTest, UnknownNamesFailCleanly) {
    for (const char* name : {"Tessarine.clsNothing", "clsMenu", "Tessarine.", "", "Other.clsMenu",
                             "{BD6262BC-D9D4-4B93-87E0-E442702D93E6}", "Tessarine.clsMenuX"}) {
        SCOPED_TRACE(name);
        ComponentObject object;
        object.ProgID = "left over";
        EXPECT_EQ(library.GetClassObject(name, &object), component::kClassNotAvailable);
        EXPECT_TRUE(object.Empty());
        EXPECT_TRUE(object.ProgID.empty()); // the out object is cleared, not left as it was
    }
    ComponentObject object;
    EXPECT_EQ(library.GetClassObject(nullptr, &object), component::kInvalidPointer);
    EXPECT_EQ(library.GetClassObject("Tessarine.clsMenu", nullptr), component::kInvalidPointer);
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST_F(ComponentLibraryTest, CanUnloadOnlyWhenEveryObjectIsReleased) {
    ASSERT_EQ(library.CanUnloadNow(), component::kOk);
    ComponentObject menu = library.Create("Tessarine.clsMenu");
    ComponentObject command = library.Create("Tessarine.cmdAbout");
    EXPECT_EQ(library.CanUnloadNow(), component::kFalse);
    std::shared_ptr<IMenuDef> keptByHost = menu.MenuDef;
    menu = {};
    command = {};
    EXPECT_EQ(library.CanUnloadNow(), component::kFalse); // the host still holds the menu
    keptByHost.reset();
    EXPECT_EQ(library.CanUnloadNow(), component::kOk);
}

TEST_F(ComponentLibraryTest, RegistrationEntersEveryClassInItsCategoryOnceAndUnregistrationRemovesIt) {
    TempRegistry temp;
    ASSERT_EQ(library.RegisterServer(), component::kOk);
    ASSERT_EQ(library.RegisterServer(), component::kOk); // again: nothing doubles
    Registry registry(temp.Path());

    auto progIds = [&](const char* category) {
        std::vector<std::string> ids;
        for (const ComponentRegistration& r : registry.Components(category))
            ids.push_back(r.progId);
        return ids;
    };
    EXPECT_EQ(progIds(component::kExtensionsCategory), std::vector<std::string>{"Tessarine.clsExtension"});
    EXPECT_EQ(progIds(component::kCommandBarsCategory), std::vector<std::string>{"Tessarine.clsToolBar"});
    EXPECT_EQ(progIds(component::kFunctionFactoriesCategory),
              std::vector<std::string>{"Tessarine.clsFunctionFactory"});
    std::vector<std::string> menus = progIds(component::kMenusCategory);
    std::vector<std::string> expectedMenus;
    for (const auto& m : kMenus)
        expectedMenus.push_back(ProgID(m));
    EXPECT_EQ(std::set<std::string>(menus.begin(), menus.end()),
              std::set<std::string>(expectedMenus.begin(), expectedMenus.end()));
    std::vector<std::string> commands = progIds(component::kCommandsCategory);
    EXPECT_EQ(commands.size(), kCommands.size());

    // Every registered class names the library that makes it, and the library makes it.
    for (const std::string& category : registry.Categories())
        for (const ComponentRegistration& r : registry.Components(category)) {
            SCOPED_TRACE(r.progId);
            auto server = registry.ReadString(RegistryHive::ClassesRoot, r.progId, component::kServerValueName);
            ASSERT_TRUE(server);
            EXPECT_EQ(std::filesystem::canonical(*server), std::filesystem::canonical(TESS_EXTENSION_LIBRARY));
            EXPECT_FALSE(library.Create(r.progId).Empty());
        }

    ASSERT_EQ(library.UnregisterServer(), component::kOk);
    EXPECT_TRUE(registry.Categories().empty());
    EXPECT_FALSE(registry.ReadString(RegistryHive::ClassesRoot, "Tessarine.clsMenu", component::kServerValueName));
    EXPECT_EQ(library.UnregisterServer(), component::kOk); // nothing left to remove is no failure
}

TEST_F(ComponentLibraryTest, EveryCommandsBitmapIdHasASixteenBySixteenPicture) {
    std::set<std::vector<std::uint8_t>> distinct;
    for (const std::string& name : kCommands) {
        SCOPED_TRACE(name);
        const std::int32_t id = library.Create(ProgID(name)).Command->Bitmap();
        std::int32_t width = 0;
        std::int32_t height = 0;
        const std::uint8_t* pixels = library.BitmapResource(id, &width, &height);
        ASSERT_NE(pixels, nullptr);
        EXPECT_EQ(width, 16);
        EXPECT_EQ(height, 16);
        std::vector<std::uint8_t> picture(pixels, pixels + width * height * component::kBitmapBytesPerPixel);
        // Not a blank square: the picture has more than one colour.
        std::set<std::vector<std::uint8_t>> colours;
        for (std::size_t at = 0; at < picture.size(); at += component::kBitmapBytesPerPixel)
            colours.insert({picture[at], picture[at + 1], picture[at + 2]});
        EXPECT_GT(colours.size(), 1u);
        distinct.insert(picture);
    }
    EXPECT_EQ(distinct.size(), kCommands.size()); // no two commands share a picture
    EXPECT_EQ(library.BitmapResource(102, nullptr, nullptr), nullptr); // an id the table does not use
}

TEST_F(ComponentLibraryTest, AHostStartsTheExtensionMadeByTheLibraryAndFindsItByProgID) {
    TempRegistry temp;
    temp.HostVersion("9.3.1");
    auto app = Application::Create();
    app->RegisterExtension("Tessarine.clsExtension", "", [this] {
        return library.Create("Tessarine.clsExtension").Extension;
    });
    app->Startup();
    std::shared_ptr<clsExtension> extension = FindTessExtension(*app);
    ASSERT_TRUE(extension);
    EXPECT_TRUE(extension->IsVersion92());
    // The commands made by the library find the same extension through the application.
    ComponentObject build = library.Create("Tessarine.clsBuildPolygon");
    build.Command->OnCreate(app);
    EXPECT_TRUE(build.Command->Enabled());
    app->Shutdown();
    EXPECT_TRUE(ui_->Errors().empty());
}

} // namespace
} // namespace tess
