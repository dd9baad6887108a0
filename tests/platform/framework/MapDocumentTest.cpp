// The map document file: a round trip of everything a document holds, layers
// whose data is missing, paths relative to the document, extension streams,
// and the faults of bad files, which never damage a document on disk.

#include <cmath>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include <optional>
#include <nlohmann/json.hpp>

#include "../carto/DataFixtures.h"
#include "platform/carto/Elements.h"
#include "platform/carto/EnumElement.h"
#include "platform/carto/FeatureLayer.h"
#include "platform/carto/GroupElement.h"
#include "platform/carto/GroupLayer.h"
#include "platform/carto/Map.h"
#include "platform/carto/MapFrame.h"
#include "platform/carto/PageLayout.h"
#include "platform/carto/SimpleRenderer.h"
#include "platform/carto/StandaloneTable.h"
#include "platform/carto/Symbols.h"
#include "platform/data/SelectionSet.h"
#include "platform/framework/Application.h"
#include "platform/framework/Document.h"
#include "platform/framework/HostContracts.h"
#include "platform/framework/MapDocument.h"
#include "platform/geometry/Geometries.h"
#include "platform/data/Fields.h"
#include "platform/data/Table.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"
#include "platform/system/Fault.h"
#include "platform/system/VariantStream.h"

namespace tess {
namespace {

using nlohmann::json;
using testing::MakeShapefile;
using testing::PointFeatures;
using testing::SquareFeatures;
using testing::TempFolder;

constexpr const char* kExtensionProgId = "Tessarine.clsExtension";
constexpr std::int32_t kWgs84 = 4326;
// Curves are written as centre, radius and angles and rebuilt from them; their extreme points
// come back within a few ulps of coordinates of size 10.
constexpr double kCurveTolerance = 1e-12; // map units

//! Settings kept in the document, as an extension keeps its own.
class SettingsExtension final : public IExtension, public IPersistVariant {
public:
    std::string Name() const override { return "Settings"; }
    void Startup(const std::shared_ptr<IApplication>&) override {}
    void Shutdown() override {}
    std::string ID() const override { return kExtensionProgId; }
    void Save(IVariantStream& stream) override {
        stream.Write(Variant(3.0));
        stream.Write(Variant(folder));
        stream.Write(Variant(autoClose));
        stream.Write(Variant(option));
        stream.Write(Variant(shift));
    }
    void Load(IVariantStream& stream) override {
        version = stream.Read().ToDouble();
        folder = stream.Read().ToString();
        autoClose = stream.Read().ToBool();
        option = stream.Read().ToLong();
        shift = stream.Read().ToDouble();
    }
    double version = 0.0;
    std::string folder;
    bool autoClose = false;
    std::int32_t option = 0;
    double shift = 0.0;
};

std::shared_ptr<SettingsExtension> AddSettings(Application& app) {
    auto settings = std::make_shared<SettingsExtension>();
    app.RegisterExtension(kExtensionProgId, "", [settings] { return settings; });
    app.Startup();
    return settings;
}

json ReadJson(const std::string& path) {
    std::ifstream in(path);
    return json::parse(in);
}

std::string ReadText(const std::string& path) {
    std::ifstream in(path);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

void WriteText(const std::string& path, const std::string& text) { std::ofstream(path) << text; }

Envelope BoundsOf(const IElement& element) {
    Envelope bounds;
    element.QueryBounds(nullptr, bounds);
    return bounds;
}

template <class T>
std::shared_ptr<T> Shaped(std::shared_ptr<IGeometry> shape, const std::string& name) {
    auto element = std::make_shared<T>();
    element->Geometry(shape);
    element->Name(name);
    return element;
}

std::shared_ptr<Polyline> Zigzag() {
    auto path = std::make_shared<Path>();
    const WKSPoint points[] = {{0, 0}, {1, 2}, {2, 0}};
    path->AddWKSPoints(3, points);
    // A true curve inside a line: an arc from (2, 0) round to (4, 0).
    CircularArc arc;
    arc.PutCoordsByAngle(Point(3, 0), M_PI, -M_PI, 1.0);
    path->AddSegment(arc);
    auto line = std::make_shared<Polyline>();
    line->AddPart(path);
    return line;
}

class MapDocumentTest : public ::testing::Test {
protected:
    void SetUp() override {
        data = folder / "data";
        std::filesystem::create_directories(data);
        wgs84 = std::static_pointer_cast<ISpatialReference>(
            SpatialReferenceEnvironment().CreateGeographicCoordinateSystem(kWgs84));
        towns = MakeShapefile(data, "towns", esriGeometryPoint, wgs84, PointFeatures(5));
        squares = MakeShapefile(data, "fields", esriGeometryPolygon, wgs84, SquareFeatures(3));
        path = folder / "site.map.json";
    }

    //! A document with something of every kind in it, saved to path.
    void BuildAndSave() {
        app = Application::Create();
        settings = AddSettings(*app);
        settings->folder = "C:\\data\\out";
        settings->autoClose = true;
        settings->option = 2;
        settings->shift = -180.5;
        auto document = app->MxDoc();
        document->ExtensionStream("Other.Extension", "{\"format\": \"tess.VariantStream\", \"version\": 1, "
                                                     "\"values\": [{\"Long\": 7}]}");
        auto map = document->FocusMapObject();
        map->Name("Ground");

        auto townLayer = std::make_shared<FeatureLayer>();
        townLayer->FeatureClass(towns);
        townLayer->Name("Towns");
        townLayer->SelectionSet()->AddList({1, 3});
        townLayer->FieldInfo(townLayer->FindField("NAME"))->Alias("Town");
        townLayer->FieldInfo(townLayer->FindField("POP"))->Visible(false);
        auto red = std::make_shared<SimpleMarkerSymbol>();
        red->Color(std::make_shared<RgbColor>(255, 0, 0));
        red->Size(11.0);
        auto renderer = std::make_shared<SimpleRenderer>();
        renderer->Symbol(red);
        townLayer->Renderer(renderer);

        auto fieldLayer = std::make_shared<FeatureLayer>();
        fieldLayer->FeatureClass(squares);
        fieldLayer->Visible(false);
        auto missing = std::make_shared<FeatureLayer>();
        missing->Name("Lost");
        missing->DataSource({"..\\elsewhere\\old.gdb", "lost", "File Geodatabase Feature Class"});
        missing->Kept({{}, "X > 1"});
        auto group = std::make_shared<GroupLayer>();
        group->Name("Hydro");
        group->Add(fieldLayer);
        group->Add(missing);
        map->AddLayer(group);
        map->AddLayer(townLayer);
        auto table = std::make_shared<StandaloneTable>();
        table->Table(std::dynamic_pointer_cast<ITable>(towns));
        map->AddStandaloneTable(table);
        map->SpatialReference(wgs84);
        map->Extent(std::make_shared<Envelope>(-1, -2, 30, 40));
        document->SelectedLayer(fieldLayer);

        auto marker = Shaped<MarkerElement>(std::make_shared<Point>(1, 2), "well");
        auto markerShape = marker->Geometry();
        markerShape->SpatialReference(wgs84);
        marker->Geometry(markerShape);
        auto green = std::make_shared<SimpleMarkerSymbol>();
        green->Color(std::make_shared<RgbColor>(0, 200, 0));
        green->Style(esriSMSDiamond);
        marker->Symbol(green);
        auto text = Shaped<TextElement>(std::make_shared<Point>(5, 5), "label");
        text->Text("Olympus Mons");
        auto picture = Shaped<PictureElement>(std::make_shared<Envelope>(0, 0, 2, 1), "");
        picture->ImportPictureFromFile("logo.png");
        auto graph = Shaped<DataGraphElement>(std::make_shared<Envelope>(3, 3, 4, 4), "");
        graph->Title("Heights");
        auto inGroup = Shaped<MarkerElement>(std::make_shared<Point>(7, 7), "member");
        auto elementGroup = std::make_shared<GroupElement>();
        elementGroup->Name("set");
        elementGroup->AddElement(inGroup);
        elementGroup->AddElement(Shaped<CircleElement>(MakeCirclePolygon(Point(8, 8), 0.5), "small"));
        std::vector<std::shared_ptr<IElement>> mapGraphics{
            marker,
            Shaped<LineElement>(Zigzag(), "road"),
            Shaped<PolygonElement>(MakeRectanglePolygon(Envelope(10, 10, 12, 11)), "lot"),
            Shaped<RectangleElement>(std::make_shared<Envelope>(-5, -5, -3, -4), "box"),
            Shaped<EllipseElement>(std::make_shared<Envelope>(20, 0, 28, 2), "oval"),
            Shaped<CircleElement>(MakeCirclePolygon(Point(10, 20), 5), "crater"),
            text,
            picture,
            graph,
            elementGroup};
        for (const auto& element : mapGraphics)
            map->AddElement(element, 0);
        map->SelectElement(mapGraphics[5]);
        map->SelectElement(mapGraphics[0]);

        auto second = std::make_shared<Map>();
        second->Name("Orbit");
        document->AddMap(second);
        auto layout = document->Layout();
        auto title = Shaped<TextElement>(std::make_shared<Point>(4.25, 10.5), "title");
        title->Text("Site plan");
        layout->AddElement(title, 0);
        layout->SelectElement(title);
        document->ActiveView(std::static_pointer_cast<IActiveView>(layout));
        document->SetDirty();

        app->SaveDocument(path);
    }

    TempFolder folder{"document"};
    std::string data;
    std::string path;
    std::shared_ptr<ISpatialReference> wgs84;
    std::shared_ptr<IFeatureClass> towns;
    std::shared_ptr<IFeatureClass> squares;
    std::shared_ptr<Application> app;
    std::shared_ptr<SettingsExtension> settings;
};

TEST_F(MapDocumentTest, SavingMakesTheDocumentCleanAndWritesPathsRelativeToIt) {
    BuildAndSave();
    EXPECT_FALSE(app->MxDoc()->IsDirty());
    EXPECT_EQ(app->MxDoc()->Path(), path);
    const json root = ReadJson(path);
    EXPECT_EQ(root["format"], "tessarine.map");
    const json& layers = root["maps"][0]["layers"];
    EXPECT_EQ(layers[0]["source"]["workspace"], "data");
    EXPECT_EQ(layers[1]["layers"][0]["source"]["workspace"], "data");
    EXPECT_EQ(root["maps"][0]["tables"][0]["source"]["workspace"], "data");
    // No temporary file is left beside the document.
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path()))
        files += entry.is_regular_file() ? 1 : 0;
    EXPECT_EQ(files, 1);
}

TEST_F(MapDocumentTest, ARoundTripGivesBackEverything) {
    BuildAndSave();
    app->Shutdown();

    auto reopened = Application::Create();
    auto loaded = AddSettings(*reopened);
    reopened->OpenDocument(path);
    EXPECT_TRUE(reopened->ExtensionFaults().empty());

    // Extension settings.
    EXPECT_EQ(loaded->version, 3.0);
    EXPECT_EQ(loaded->folder, "C:\\data\\out");
    EXPECT_TRUE(loaded->autoClose);
    EXPECT_EQ(loaded->option, 2);
    EXPECT_EQ(loaded->shift, -180.5);

    auto document = reopened->MxDoc();
    EXPECT_FALSE(document->IsDirty());
    EXPECT_TRUE(document->LayoutActive());
    ASSERT_EQ(document->MapList().size(), 2u);
    auto map = document->MapList()[0];
    EXPECT_EQ(map->Name(), "Ground");
    EXPECT_EQ(document->MapList()[1]->Name(), "Orbit");
    ASSERT_TRUE(map->SpatialReference());
    EXPECT_EQ(map->SpatialReference()->Name(), "GCS_WGS_1984");
    EXPECT_EQ(map->Extent()->XMax(), 30.0);
    EXPECT_EQ(map->Extent()->YMin(), -2.0);

    // Layers, in map order, with what each keeps.
    ASSERT_EQ(map->LayerCount(), 2);
    auto townLayer = std::dynamic_pointer_cast<FeatureLayer>(map->Layer(0));
    ASSERT_TRUE(townLayer);
    EXPECT_EQ(townLayer->Name(), "Towns");
    EXPECT_TRUE(townLayer->Valid());
    EXPECT_EQ(townLayer->SelectionSet()->Count(), 2);
    EXPECT_EQ(townLayer->FieldInfo(townLayer->FeatureClass()->Fields()->FindField("NAME"))->Alias(), "Town");
    EXPECT_EQ(townLayer->FindField("POP"), -1);
    auto symbol = std::dynamic_pointer_cast<IMarkerSymbol>(
        std::dynamic_pointer_cast<ISimpleRenderer>(townLayer->Renderer())->Symbol());
    ASSERT_TRUE(symbol);
    EXPECT_EQ(symbol->Size(), 11.0);
    EXPECT_EQ(symbol->Color()->RGB(), 255);

    auto group = std::dynamic_pointer_cast<GroupLayer>(map->Layer(1));
    ASSERT_TRUE(group);
    ASSERT_EQ(group->Count(), 2);
    auto fieldLayer = std::dynamic_pointer_cast<FeatureLayer>(group->Layer(0));
    EXPECT_TRUE(fieldLayer->Valid());
    EXPECT_FALSE(fieldLayer->Visible());
    EXPECT_EQ(document->SelectedLayer(), group->Layer(0));
    auto missing = std::dynamic_pointer_cast<FeatureLayer>(group->Layer(1));
    EXPECT_FALSE(missing->Valid());
    EXPECT_EQ(missing->DataSourceType(), "File Geodatabase Feature Class");
    EXPECT_EQ(missing->Kept().whereClause, "X > 1");
    ASSERT_EQ(map->StandaloneTableCount(), 1);
    EXPECT_TRUE(map->StandaloneTable(0)->Valid());

    // Graphics of the map: kinds, names, shapes with their curves, symbols, selection.
    ASSERT_EQ(map->ElementCount(), 10);
    const std::vector<std::string> kinds{"Marker", "Line",  "Polygon", "Rectangle", "Ellipse",
                                         "Circle", "Text", "Picture", "DataGraph", "Group"};
    for (std::int32_t i = 0; i < map->ElementCount(); ++i)
        EXPECT_EQ(KindWord(KindOf(*map->ElementAt(i))), kinds[static_cast<std::size_t>(i)]);
    auto marker = std::dynamic_pointer_cast<MarkerElement>(map->ElementAt(0));
    EXPECT_EQ(marker->Name(), "well");
    EXPECT_EQ(marker->Geometry()->SpatialReference(), map->SpatialReference());
    EXPECT_EQ(marker->Symbol()->Color()->RGB(), 200 * 256);
    EXPECT_EQ(std::dynamic_pointer_cast<ISimpleMarkerSymbol>(marker->Symbol())->Style(), esriSMSDiamond);

    auto road = std::dynamic_pointer_cast<Polyline>(map->ElementAt(1)->Geometry());
    ASSERT_EQ(road->PartCount(), 1u);
    EXPECT_EQ(road->Part(0).SegmentCount(), 3);
    EXPECT_TRUE(std::dynamic_pointer_cast<ICircularArc>(road->Part(0).Segment(2)));
    // Two straight pieces of sqrt 5 and a half circle of radius 1.
    EXPECT_NEAR(road->Length(), 2 * std::sqrt(5.0) + M_PI, 1e-12);

    auto circle = map->ElementAt(5);
    EXPECT_EQ(std::dynamic_pointer_cast<IElementProperties>(circle)->Name(), "crater");
    auto circleRing = std::dynamic_pointer_cast<Polygon>(circle->Geometry());
    ASSERT_EQ(circleRing->Part(0).SegmentCount(), 1);
    EXPECT_TRUE(std::dynamic_pointer_cast<ICircularArc>(circleRing->Part(0).Segment(0)));
    const Envelope circleBounds = BoundsOf(*circle);
    EXPECT_NEAR(circleBounds.XMin(), 5.0, kCurveTolerance);
    EXPECT_NEAR(circleBounds.YMax(), 25.0, kCurveTolerance);
    const Envelope ovalBounds = BoundsOf(*map->ElementAt(4));
    EXPECT_NEAR(ovalBounds.XMin(), 20.0, kCurveTolerance);
    EXPECT_NEAR(ovalBounds.XMax(), 28.0, kCurveTolerance);
    EXPECT_NEAR(ovalBounds.YMax(), 2.0, kCurveTolerance);
    EXPECT_TRUE(std::dynamic_pointer_cast<IEllipticArc>(
        std::dynamic_pointer_cast<Polygon>(map->ElementAt(4)->Geometry())->Part(0).Segment(0)));

    EXPECT_EQ(std::dynamic_pointer_cast<ITextElement>(map->ElementAt(6))->Text(), "Olympus Mons");
    EXPECT_EQ(std::dynamic_pointer_cast<IPictureElement>(map->ElementAt(7))->Filename(), "logo.png");
    EXPECT_EQ(std::dynamic_pointer_cast<IDataGraphElement>(map->ElementAt(8))->Title(), "Heights");
    auto elementGroup = std::dynamic_pointer_cast<IGroupElement>(map->ElementAt(9));
    ASSERT_EQ(elementGroup->ElementCount(), 2);
    EXPECT_EQ(std::dynamic_pointer_cast<IElementProperties>(elementGroup->Element(1))->Name(), "small");

    EXPECT_EQ(map->ElementSelectionCount(), 2);
    EXPECT_TRUE(map->ElementSelected(map->ElementAt(0)));
    EXPECT_TRUE(map->ElementSelected(circle));

    // The page layout: a frame for each map, and its own selected title.
    auto layout = document->Layout();
    ASSERT_EQ(layout->ElementCount(), 3);
    auto frame = std::dynamic_pointer_cast<IMapFrame>(layout->ElementAt(0));
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->Map(), map);
    EXPECT_EQ(std::dynamic_pointer_cast<IMapFrame>(layout->ElementAt(1))->Map(), document->MapList()[1]);
    EXPECT_TRUE(layout->ElementSelected(layout->ElementAt(2)));
    EXPECT_EQ(layout->ElementSelectionCount(), 1);

    // A stream no running extension claimed is kept.
    ASSERT_TRUE(document->FindExtensionStream("other.extension"));
    reopened->Shutdown();
}

TEST_F(MapDocumentTest, SavingAgainWritesTheSameDocument) {
    BuildAndSave();
    auto reopened = Application::Create();
    AddSettings(*reopened);
    reopened->OpenDocument(path);
    const std::string again = folder / "again.map.json";
    reopened->SaveDocument(again);
    json first = ReadJson(path);
    json second = ReadJson(again);
    // Curves are rebuilt from centre and angles; compare them apart, with a tolerance.
    EXPECT_EQ(first["maps"][0]["layers"], second["maps"][0]["layers"]);
    EXPECT_EQ(first["maps"][0]["tables"], second["maps"][0]["tables"]);
    EXPECT_EQ(first["layout"], second["layout"]);
    EXPECT_EQ(first["extensions"], second["extensions"]);
    EXPECT_EQ(first["maps"][0]["graphics"].size(), second["maps"][0]["graphics"].size());
    for (const auto& member : {"activeView", "focusMap", "selectedLayer"})
        EXPECT_EQ(first[member], second[member]) << member;
    reopened->Shutdown();
}

TEST_F(MapDocumentTest, ALayerWhoseFilesAreMissingIsSavedBackUnchanged) {
    BuildAndSave();
    const json before = ReadJson(path)["maps"][0]["layers"][1]["layers"][1];
    EXPECT_EQ(before["source"]["workspace"], "..\\elsewhere\\old.gdb");
    auto document = ReadMapDocument(path);
    WriteMapDocument(*document, path);
    EXPECT_EQ(ReadJson(path)["maps"][0]["layers"][1]["layers"][1], before);
}

TEST_F(MapDocumentTest, MovingTheDocumentKeepsItsDataReachable) {
    BuildAndSave();
    std::filesystem::create_directories(folder / "moved");
    const std::string moved = folder / "moved/site.map.json";
    auto document = ReadMapDocument(path);
    WriteMapDocument(*document, moved);
    const json root = ReadJson(moved);
    EXPECT_EQ(root["maps"][0]["layers"][0]["source"]["workspace"], data);
    auto reread = ReadMapDocument(moved);
    EXPECT_TRUE(reread->MapList()[0]->Layer(0)->Valid());
}

TEST_F(MapDocumentTest, ADocumentWithDataGoneStillOpens) {
    BuildAndSave();
    std::filesystem::remove_all(data);
    auto document = ReadMapDocument(path);
    auto map = document->MapList()[0];
    auto towns = std::dynamic_pointer_cast<FeatureLayer>(map->Layer(0));
    EXPECT_FALSE(towns->Valid());
    EXPECT_EQ(towns->DataSourceType(), "Shapefile Feature Class");
    EXPECT_EQ(towns->Kept().oids, (std::vector<std::int32_t>{1, 3}));
    EXPECT_FALSE(map->StandaloneTable(0)->Valid());
    // And it saves back what it was given.
    WriteMapDocument(*document, path);
    EXPECT_EQ(ReadJson(path)["maps"][0]["layers"][0]["selection"]["oids"], json::array({1, 3}));
}

TEST_F(MapDocumentTest, BackslashedRelativePathsResolveAgainstTheDocument) {
    const json root{{"format", "tessarine.map"},
                    {"version", 1},
                    {"maps",
                     {{{"name", "Layers"},
                       {"layers",
                        {{{"type", "feature"},
                          {"name", "t"},
                          {"source", {{"workspace", ".\\data"}, {"dataset", "towns"}}},
                          {"selection", {{"where", "POP >= 30"}}}}}}}}}};
    WriteText(path, root.dump());
    auto document = ReadMapDocument(path);
    auto layer = std::dynamic_pointer_cast<FeatureLayer>(document->MapList()[0]->Layer(0));
    ASSERT_TRUE(layer->Valid());
    EXPECT_EQ(layer->SelectionSet()->Count(), 2);
    // Nothing else was given: one map in data view, no frame, no reference, no extension streams.
    EXPECT_FALSE(document->LayoutActive());
    EXPECT_EQ(document->MapList()[0]->SpatialReference(), nullptr);
    EXPECT_TRUE(document->ExtensionStreams().empty());
}

struct BadDocument {
    const char* what;
    std::string text;
};

TEST_F(MapDocumentTest, BadDocumentsAreFaultsThatNameTheFile) {
    const std::vector<BadDocument> cases{
        {"not JSON", "{ \"format\": "},
        {"empty file", ""},
        {"not an object", "[1, 2]"},
        {"another format", R"({"format": "other", "version": 1, "maps": [{}]})"},
        {"a newer version", R"({"format": "tessarine.map", "version": 99, "maps": [{}]})"},
        {"no map", R"({"format": "tessarine.map", "version": 1, "maps": []})"},
        {"a text coordinate",
         R"({"format": "tessarine.map", "version": 1, "maps": [{"graphics": [{"type": "Marker",
             "geometry": {"type": "point", "x": "one", "y": 2}}]}]})"},
        {"an unknown element",
         R"({"format": "tessarine.map", "version": 1, "maps": [{"graphics": [{"type": "Hologram"}]}]})"},
        {"a shape of the wrong kind",
         R"({"format": "tessarine.map", "version": 1, "maps": [{"graphics": [{"type": "Marker",
             "geometry": {"type": "polyline", "paths": []}}]}]})"},
        {"a frame of a map not there",
         R"({"format": "tessarine.map", "version": 1, "maps": [{}],
             "layout": {"graphics": [{"type": "MapFrame", "map": 3}]}})"},
        {"a layer without source",
         R"({"format": "tessarine.map", "version": 1, "maps": [{"layers": [{"type": "feature"}]}]})"},
        {"an unreadable reference",
         R"({"format": "tessarine.map", "version": 1, "maps": [{"spatialReference": "GEOGCS[nonsense"}]})"},
        {"a focus map not there", R"({"format": "tessarine.map", "version": 1, "maps": [{}], "focusMap": 2})"},
    };
    for (const auto& bad : cases) {
        SCOPED_TRACE(bad.what);
        WriteText(path, bad.text);
        try {
            ReadMapDocument(path);
            ADD_FAILURE() << "read without a fault";
        } catch (const Fault& fault) {
            EXPECT_EQ(fault.Number(), fault::InvalidFileFormat);
            EXPECT_NE(fault.Description().find(path), std::string::npos) << fault.Description();
        }
        EXPECT_EQ(ReadText(path), bad.text); // reading never touches the file
    }
}

TEST_F(MapDocumentTest, ADocumentCutShortAnywhereIsAFault) {
    BuildAndSave();
    const std::string whole = ReadText(path);
    // Every cut of a written document leaves unbalanced JSON; a stride keeps the run short.
    constexpr std::size_t kStride = 97; // bytes
    for (std::size_t length = 0; length + 1 < whole.size(); length += kStride) {
        WriteText(path, whole.substr(0, length));
        EXPECT_THROW(ReadMapDocument(path), Fault) << "cut at " << length;
    }
}

TEST_F(MapDocumentTest, AMissingFileIsANotFoundFaultAndTheOpenDocumentStays) {
    auto application = Application::Create();
    auto before = application->MxDoc();
    const std::string nowhere = folder / "nowhere.map.json";
    try {
        application->OpenDocument(nowhere);
        FAIL() << "opened a missing file";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.Number(), fault::NotFound);
        EXPECT_NE(fault.Description().find(nowhere), std::string::npos);
    }
    WriteText(path, "{]");
    EXPECT_THROW(application->OpenDocument(path), Fault);
    EXPECT_EQ(application->MxDoc(), before);
}

//! An element of no kind the platform knows.
class ForeignElement final : public IElement {
public:
    std::shared_ptr<IGeometry> Geometry() const override { return std::make_shared<Point>(0, 0); }
    void Geometry(const std::shared_ptr<IGeometry>&) override {}
    void QueryBounds(const std::shared_ptr<IDisplay>&, IEnvelope& bounds) const override { bounds.SetEmpty(); }
    bool HitTest(double, double, double) const override { return false; }
    bool Locked() const override { return false; }
    void Locked(bool) override {}
};

TEST_F(MapDocumentTest, AFailedSaveLeavesTheDocumentOnDiskWhole) {
    BuildAndSave();
    const std::string before = ReadText(path);
    app->MxDoc()->FocusMapObject()->AddElement(std::make_shared<ForeignElement>(), 0);
    EXPECT_THROW(app->SaveDocument(), Fault);
    EXPECT_EQ(ReadText(path), before);

    const std::string noFolder = folder / "no/such/folder/site.map.json";
    try {
        WriteMapDocument(*ReadMapDocument(path), noFolder);
        FAIL() << "wrote into a folder that is not there";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.Number(), fault::DataFailed);
        EXPECT_NE(fault.Description().find(noFolder), std::string::npos);
    }
}

//! Writes the document into its own folder made read-only; true when that failed with a fault
//! of the right number naming the path. The superuser writes anywhere, so it tries as "nobody";
//! nothing when this machine will not let the test become "nobody".
std::optional<bool> RefusedInReadOnlyFolder(const MxDocument& document, const std::string& folderPath, const std::string& path) {
    constexpr uid_t kNobody = 65534;
    namespace fs = std::filesystem;
    fs::permissions(folderPath, fs::perms::owner_read | fs::perms::owner_exec | fs::perms::group_read |
                                    fs::perms::group_exec | fs::perms::others_read | fs::perms::others_exec);
    auto attempt = [&] {
        try {
            WriteMapDocument(document, path);
        } catch (const Fault& fault) {
            return fault.Number() == fault::DataFailed && fault.Description().find(path) != std::string::npos;
        }
        return false;
    };
    if (::geteuid() != 0)
        return attempt();
    const pid_t child = ::fork();
    constexpr int kCannotDrop = 2;
    if (child == 0) {
        if (::setresgid(kNobody, kNobody, kNobody) != 0 || ::setresuid(kNobody, kNobody, kNobody) != 0)
            ::_exit(kCannotDrop);
        ::_exit(attempt() ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == kCannotDrop)
        return std::nullopt;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST_F(MapDocumentTest, AReadOnlyFolderIsAFaultNamingThePath) {
    BuildAndSave();
    const std::string before = ReadText(path);
    auto document = ReadMapDocument(path);
    // The temporary folder above must let another user through to the document's folder.
    std::filesystem::permissions(folder.Path(), std::filesystem::perms::all & ~std::filesystem::perms::others_write &
                                                    ~std::filesystem::perms::group_write);
    const auto refused = RefusedInReadOnlyFolder(*document, folder.Path(), path);
    std::filesystem::permissions(folder.Path(), std::filesystem::perms::owner_all);
    if (!refused)
        GTEST_SKIP() << "cannot run as an unprivileged user here";
    EXPECT_TRUE(*refused);
    EXPECT_EQ(ReadText(path), before);
}

TEST_F(MapDocumentTest, AnExtensionThatFailsToLoadDoesNotStopTheDocument) {
    BuildAndSave();
    // A stream shorter than the extension reads: its Load runs past the end.
    json root = ReadJson(path);
    root["extensions"][kExtensionProgId]["values"] = json::array({{{"Double", 3.0}}});
    WriteText(path, root.dump());
    auto reopened = Application::Create();
    auto loaded = AddSettings(*reopened);
    reopened->OpenDocument(path);
    EXPECT_EQ(loaded->version, 3.0); // read before the fault, and kept
    ASSERT_EQ(reopened->ExtensionFaults().size(), 1u);
    EXPECT_EQ(reopened->MxDoc()->MapList()[0]->Name(), "Ground");
    reopened->Shutdown();
}

} // namespace
} // namespace tess
