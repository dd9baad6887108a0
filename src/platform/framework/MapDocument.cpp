#include "platform/framework/MapDocument.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>
#include <filesystem>

#include <nlohmann/json.hpp>

#include "platform/carto/FeatureLayer.h"
#include "platform/carto/GraphicElements.h"
#include "platform/carto/GroupLayer.h"
#include "platform/carto/Map.h"
#include "platform/carto/PageLayout.h"
#include "platform/carto/SimpleRenderer.h"
#include "platform/carto/StandaloneTable.h"
#include "platform/carto/detail/DataSources.h"
#include "platform/data/Dataset.h"
#include "platform/data/SelectionSet.h"
#include "platform/data/Workspace.h"
#include "platform/framework/Document.h"
#include "platform/framework/detail/ElementJson.h"
#include "platform/framework/detail/TextFile.h"
#include "platform/geometry/Envelope.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/Transform.h"
#include "platform/system/Fault.h"

namespace tess {
namespace {

using json = nlohmann::ordered_json;
namespace fs = std::filesystem;

constexpr const char* kSource = "MapDocument";
constexpr const char* kFormat = "tessarine.map";
constexpr int kVersion = 1;
constexpr const char* kLayoutView = "layout";
constexpr const char* kMapView = "map";
constexpr std::size_t kNumberBuffer = 32; // the longest shortest form of a double is 24 characters

[[noreturn]] void Malformed(const std::string& what) { throw Fault(fault::InvalidFileFormat, kSource, what); }

// Paths

std::string FolderOf(const std::string& file) {
    if (file.empty())
        return "";
    std::string path = file;
    std::replace(path.begin(), path.end(), '\\', '/');
    return fs::absolute(fs::path(path)).parent_path().lexically_normal().generic_string();
}

//! The path relative to folder when it lies inside it; otherwise as it is.
std::string Relativize(const std::string& absolute, const std::string& folder) {
    if (folder.empty())
        return absolute;
    const fs::path target = fs::path(absolute).lexically_normal();
    const fs::path base = fs::path(folder).lexically_normal();
    if (!target.is_absolute())
        return absolute;
    if (target == base)
        return ".";
    const fs::path relative = target.lexically_relative(base);
    if (relative.empty() || *relative.begin() == "..")
        return target.generic_string();
    return relative.generic_string();
}

struct PathContext {
    std::string oldFolder; //!< folder the document was read from (relative paths in it start there)
    std::string newFolder; //!< folder it is written to
};

//! The workspace path to write for a layer or table.
std::string WorkspaceToWrite(const DataSourceInfo& source, const std::shared_ptr<const void>& data,
                             const IDataset* dataset, const PathContext& paths) {
    if (data && dataset) {
        if (auto workspace = dataset->Workspace())
            return Relativize(workspace->PathName(), paths.newFolder);
    }
    // Data that could not be reached goes back as it came, unless the document moves.
    if (paths.oldFolder.empty() || paths.oldFolder == paths.newFolder)
        return source.workspacePath;
    return Relativize(detail::ResolveWorkspacePath(source.workspacePath, paths.oldFolder), paths.newFolder);
}

// Envelopes

json EnvelopeToJson(const std::shared_ptr<IEnvelope>& box) {
    if (!box || box->IsEmpty())
        return nullptr;
    return json::array({box->XMin(), box->YMin(), box->XMax(), box->YMax()});
}

std::shared_ptr<IEnvelope> EnvelopeFromJson(const json& value) {
    if (value.is_null())
        return nullptr;
    if (!value.is_array() || value.size() != 4)
        Malformed("an extent must be written [xmin, ymin, xmax, ymax]");
    return std::make_shared<Envelope>(value[0].get<double>(), value[1].get<double>(), value[2].get<double>(),
                                      value[3].get<double>());
}

// Data sources

json SourceToJson(const DataSourceInfo& source, const std::string& workspace) {
    return json{{"workspace", workspace}, {"dataset", source.datasetName}, {"type", source.sourceType}};
}

DataSourceInfo SourceFromJson(const json& value) {
    DataSourceInfo source;
    source.workspacePath = value.at("workspace").get<std::string>();
    source.datasetName = value.at("dataset").get<std::string>();
    source.sourceType = value.value("type", std::string());
    return source;
}

// Layers

json SelectionToJson(const FeatureLayer& layer) {
    if (!layer.Valid() || !layer.Kept().Empty()) {
        const KeptSelection& kept = layer.Kept();
        if (!kept.whereClause.empty())
            return json{{"where", kept.whereClause}};
        if (!kept.oids.empty())
            return json{{"oids", kept.oids}};
        return nullptr;
    }
    auto selection = layer.SelectionSet();
    if (!selection || selection->Count() == 0)
        return nullptr;
    std::vector<std::int32_t> oids;
    auto ids = selection->IDs();
    ids->Reset();
    for (std::int32_t oid = ids->Next(); oid != -1; oid = ids->Next())
        oids.push_back(oid);
    return json{{"oids", oids}};
}

json LayerToJson(const ILayer& layer, const PathContext& paths) {
    if (auto* group = dynamic_cast<const GroupLayer*>(&layer)) {
        json members = json::array();
        for (std::int32_t i = 0; i < group->Count(); ++i)
            members.push_back(LayerToJson(*group->Layer(i), paths));
        json value{{"type", "group"}, {"name", group->Name()}, {"visible", group->Visible()}};
        value["layers"] = std::move(members);
        return value;
    }
    auto* feature = dynamic_cast<const FeatureLayer*>(&layer);
    if (!feature)
        throw Fault(fault::InvalidCall, kSource, "The layer '" + layer.Name() + "' is of a kind a document cannot hold");
    const auto featureClass = feature->FeatureClass();
    const std::string workspace = WorkspaceToWrite(feature->DataSource(), featureClass,
                                                   dynamic_cast<const IDataset*>(featureClass.get()), paths);
    json value{{"type", "feature"},
               {"name", feature->Name()},
               {"visible", feature->Visible()},
               {"selectable", feature->Selectable()},
               {"source", SourceToJson(feature->DataSource(), workspace)}};
    if (json selection = SelectionToJson(*feature); !selection.is_null())
        value["selection"] = selection;
    json fields = json::array();
    for (const auto& display : feature->FieldDisplays()) {
        json field{{"name", display.fieldName}, {"visible", display.visible}};
        if (!display.alias.empty())
            field["alias"] = display.alias;
        fields.push_back(field);
    }
    if (!fields.empty())
        value["fields"] = fields;
    if (auto renderer = std::dynamic_pointer_cast<ISimpleRenderer>(feature->Renderer())) {
        auto symbol = renderer->Symbol();
        value["renderer"] =
            json{{"type", "simple"}, {"label", renderer->Label()}, {"symbol", detail::SymbolToJson(symbol.get())}};
    }
    return value;
}

std::shared_ptr<ILayer> LayerFromJson(const json& value, const std::string& folder) {
    if (!value.is_object())
        Malformed("a layer must be an object");
    const std::string type = value.at("type").get<std::string>();
    if (type == "group") {
        auto group = std::make_shared<GroupLayer>();
        group->Name(value.value("name", std::string()));
        group->Visible(value.value("visible", true));
        for (const json& member : detail::ListMember(value, "layers"))
            group->Add(LayerFromJson(member, folder));
        return group;
    }
    if (type != "feature")
        Malformed("unknown layer type \"" + type + "\"");
    auto layer = std::make_shared<FeatureLayer>();
    layer->Name(value.value("name", std::string()));
    layer->Visible(value.value("visible", true));
    layer->Selectable(value.value("selectable", true));
    layer->DataSource(SourceFromJson(value.at("source")));
    if (value.contains("fields")) {
        std::vector<FieldDisplay> displays;
        for (const json& field : value["fields"])
            displays.push_back({field.at("name").get<std::string>(), field.value("alias", std::string()),
                                field.value("visible", true)});
        layer->FieldDisplays(displays);
    }
    if (value.contains("renderer")) {
        const json& renderer = value["renderer"];
        if (renderer.value("type", std::string()) != "simple")
            Malformed("unknown renderer type " + renderer.value("type", std::string()));
        auto simple = std::make_shared<SimpleRenderer>();
        simple->Label(renderer.value("label", std::string()));
        simple->Symbol(detail::SymbolFromJson(renderer.value("symbol", json())));
        layer->Renderer(simple);
    }
    if (value.contains("selection") && !value["selection"].is_null()) {
        const json& selection = value["selection"];
        KeptSelection kept;
        if (selection.contains("where"))
            kept.whereClause = selection["where"].get<std::string>();
        else
            kept.oids = selection.at("oids").get<std::vector<std::int32_t>>();
        layer->Kept(kept);
    }
    layer->Connect(folder); // a layer whose data is missing stays, not Valid
    return layer;
}

// Tables

json TableToJson(const StandaloneTable& table, const PathContext& paths) {
    const auto data = table.Table();
    const std::string workspace =
        WorkspaceToWrite(table.DataSource(), data, dynamic_cast<const IDataset*>(data.get()), paths);
    return json{{"name", table.Name()}, {"source", SourceToJson(table.DataSource(), workspace)}};
}

std::shared_ptr<IStandaloneTable> TableFromJson(const json& value, const std::string& folder) {
    auto table = std::make_shared<StandaloneTable>();
    table->Name(value.value("name", std::string()));
    table->DataSource(SourceFromJson(value.at("source")));
    table->Connect(folder);
    return table;
}

// Graphics

json GraphicsToJson(GraphicsContainerBase& container, const detail::ElementContext& context) {
    json list = json::array();
    for (std::int32_t i = 0; i < container.ElementCount(); ++i) {
        auto element = container.ElementAt(i);
        json value = detail::ElementToJson(*element, context);
        if (container.ElementSelected(element))
            value["selected"] = true;
        list.push_back(std::move(value));
    }
    return list;
}

void GraphicsFromJson(const json& list, GraphicsContainerBase& container, detail::ElementContext& context) {
    if (!list.is_array())
        Malformed("\"graphics\" must be a list");
    for (const json& value : list) {
        auto element = detail::ElementFromJson(value, context);
        container.AddElement(element);
        if (value.value("selected", false))
            container.SelectElement(element);
    }
}

std::string ReferenceText(const std::shared_ptr<ISpatialReference>& reference) {
    return reference ? reference->ExportToESRI() : std::string();
}

// The whole document

json DocumentToJson(const MxDocument& document, const PathContext& paths) {
    const auto& maps = document.MapList();
    auto mapIndex = [&maps](const IMap* map) {
        for (std::size_t i = 0; i < maps.size(); ++i) {
            if (static_cast<const IMap*>(maps[i].get()) == map)
                return static_cast<int>(i);
        }
        return -1;
    };

    json mapList = json::array();
    int focusIndex = 0;
    json selectedLayer = nullptr;
    for (std::size_t m = 0; m < maps.size(); ++m) {
        Map& map = *maps[m];
        if (maps[m] == document.FocusMapObject())
            focusIndex = static_cast<int>(m);
        detail::ElementContext context;
        context.mapReference = map.SpatialReference();
        context.mapIndex = mapIndex;

        json layers = json::array();
        for (std::int32_t i = 0; i < map.LayerCount(); ++i)
            layers.push_back(LayerToJson(*map.Layer(i), paths));
        json tables = json::array();
        for (std::int32_t i = 0; i < map.StandaloneTableCount(); ++i) {
            auto table = std::dynamic_pointer_cast<StandaloneTable>(map.StandaloneTable(i));
            if (!table)
                throw Fault(fault::InvalidCall, kSource, "A table of the map is of a kind a document cannot hold");
            tables.push_back(TableToJson(*table, paths));
        }
        const auto all = map.AllLayers();
        if (auto chosen = document.SelectedLayer()) {
            auto it = std::find(all.begin(), all.end(), chosen);
            if (it != all.end())
                selectedLayer = json{{"map", m}, {"layer", it - all.begin()}};
        }
        json value{{"name", map.Name()},
                   {"spatialReference", map.SpatialReference() ? json(ReferenceText(map.SpatialReference())) : json()},
                   {"extent", map.ExtentIsSet() ? EnvelopeToJson(map.Extent()) : json()}};
        value["layers"] = std::move(layers);
        value["tables"] = std::move(tables);
        value["graphics"] = GraphicsToJson(map, context);
        mapList.push_back(std::move(value));
    }

    detail::ElementContext layoutContext;
    layoutContext.mapIndex = mapIndex;
    auto layout = document.Layout();
    json layoutValue{{"pageSize", json::array({layout->PageWidth(), layout->PageHeight()})},
                     {"extent", layout->ExtentIsSet() ? EnvelopeToJson(layout->Extent()) : json()}};
    layoutValue["graphics"] = GraphicsToJson(*layout, layoutContext);

    json extensions = json::object();
    for (const auto& [progId, text] : document.ExtensionStreams()) {
        json parsed = json::parse(text, nullptr, false);
        extensions[progId] = parsed.is_discarded() ? json(text) : parsed;
    }

    json root{{"format", kFormat},
              {"version", kVersion},
              {"activeView", document.LayoutActive() ? kLayoutView : kMapView},
              {"focusMap", focusIndex},
              {"selectedLayer", selectedLayer}};
    root["maps"] = std::move(mapList);
    root["layout"] = std::move(layoutValue);
    root["extensions"] = std::move(extensions);
    return root;
}

std::shared_ptr<MxDocument> DocumentFromJson(const json& root, const std::string& folder) {
    if (!root.is_object() || root.value("format", std::string()) != kFormat)
        Malformed("it is not a map document (its \"format\" is not \"" + std::string(kFormat) + "\")");
    if (root.at("version").get<int>() > kVersion)
        Malformed("it was written by a newer version (format version " + root["version"].dump() + ")");
    const json& mapList = root.at("maps");
    if (!mapList.is_array() || mapList.empty())
        Malformed("a map document holds at least one map");

    std::vector<std::shared_ptr<Map>> maps;
    for (std::size_t m = 0; m < mapList.size(); ++m)
        maps.push_back(std::make_shared<Map>());
    auto mapAt = [&maps](int index) -> std::shared_ptr<IMap> {
        if (index < 0 || static_cast<std::size_t>(index) >= maps.size())
            return nullptr;
        return maps[static_cast<std::size_t>(index)];
    };

    for (std::size_t m = 0; m < mapList.size(); ++m) {
        const json& value = mapList[m];
        Map& map = *maps[m];
        map.Name(value.value("name", std::string()));
        std::shared_ptr<ISpatialReference> reference;
        if (value.contains("spatialReference") && !value["spatialReference"].is_null())
            reference = FromWkt(value["spatialReference"].get<std::string>());
        const json& layers = detail::ListMember(value, "layers");
        // The list is top first and AddLayer puts each at the top.
        for (auto it = layers.rbegin(); it != layers.rend(); ++it)
            map.AddLayer(LayerFromJson(*it, folder));
        map.SpatialReference(reference); // the document's, not one adopted from a layer
        for (const json& table : detail::ListMember(value, "tables"))
            map.AddStandaloneTable(TableFromJson(table, folder));
        if (auto extent = EnvelopeFromJson(value.value("extent", json()))) {
            extent->SpatialReference(reference);
            map.Extent(extent);
        }
        detail::ElementContext context;
        context.mapReference = reference;
        context.mapAt = mapAt;
        GraphicsFromJson(detail::ListMember(value, "graphics"), map, context);
    }

    auto layout = std::make_shared<PageLayout>();
    const json& layoutValue = detail::ObjectMember(root, "layout");
    if (layoutValue.contains("pageSize")) {
        const json& size = layoutValue["pageSize"];
        layout->PageSize(size.at(0).get<double>(), size.at(1).get<double>());
    }
    if (auto extent = EnvelopeFromJson(layoutValue.value("extent", json())))
        layout->Extent(extent);
    detail::ElementContext layoutContext;
    layoutContext.mapAt = mapAt;
    GraphicsFromJson(detail::ListMember(layoutValue, "graphics"), *layout, layoutContext);

    auto document = std::make_shared<MxDocument>();
    document->ReplaceContents(maps, layout);
    const int focus = root.value("focusMap", 0);
    if (focus < 0 || static_cast<std::size_t>(focus) >= maps.size())
        Malformed("the focus map " + std::to_string(focus) + " is not one of the document's maps");
    document->FocusMap(maps[static_cast<std::size_t>(focus)]);
    const std::string view = root.value("activeView", std::string(kMapView));
    if (view == kLayoutView)
        document->ActiveView(layout);
    else if (view != kMapView)
        Malformed("the active view must be \"map\" or \"layout\", not \"" + view + "\"");

    if (root.contains("selectedLayer") && !root["selectedLayer"].is_null()) {
        const json& chosen = root["selectedLayer"];
        const auto m = chosen.at("map").get<std::size_t>();
        const auto k = chosen.at("layer").get<std::size_t>();
        if (m < maps.size()) {
            const auto all = maps[m]->AllLayers();
            if (k < all.size())
                document->SelectedLayer(all[k]);
        }
    }
    const json& extensions = detail::ObjectMember(root, "extensions");
    for (const auto& [progId, stream] : extensions.items())
        document->ExtensionStream(progId, stream.is_string() ? stream.get<std::string>() : stream.dump());
    return document;
}

// Text layout: objects and lists of objects one member per line; a list of numbers, or of
// coordinate pairs, on one line, so that a shape of many vertices stays readable.

bool IsFlat(const json& value) {
    if (!value.is_array())
        return !value.is_object();
    return std::all_of(value.begin(), value.end(), [](const json& item) {
        return item.is_primitive() || (item.is_array() && std::all_of(item.begin(), item.end(), [](const json& inner) {
                                           return inner.is_primitive();
                                       }));
    });
}

//! Numbers as the shortest text that reads back to the same double (a whole number keeps its
//! ".0", so it reads back as a double); other scalars as the library writes them.
void PrintScalar(const json& value, std::string& out) {
    if (value.is_number_float()) {
        const double number = value.get<double>();
        char buffer[kNumberBuffer];
        const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, number);
        if (error == std::errc() && std::isfinite(number)) {
            const std::string_view text(buffer, static_cast<std::size_t>(end - buffer));
            out += text;
            if (text.find_first_of(".e") == std::string_view::npos)
                out += ".0";
            return;
        }
    } else if (value.is_number_integer()) {
        out += std::to_string(value.get<std::int64_t>());
        return;
    }
    out += value.dump();
}

void Print(const json& value, int depth, std::string& out) {
    constexpr int kIndent = 2; // spaces per level
    const std::string pad(static_cast<std::size_t>((depth + 1) * kIndent), ' ');
    const std::string closePad(static_cast<std::size_t>(depth * kIndent), ' ');
    if (IsFlat(value)) {
        if (!value.is_array()) {
            PrintScalar(value, out);
            return;
        }
        out += '[';
        for (std::size_t i = 0; i < value.size(); ++i) {
            if (i > 0)
                out += ", ";
            Print(value[i], depth + 1, out);
        }
        out += ']';
        return;
    }
    if (value.empty()) {
        out += value.is_array() ? "[]" : "{}";
        return;
    }
    out += value.is_array() ? "[\n" : "{\n";
    bool first = true;
    for (auto it = value.begin(); it != value.end(); ++it) {
        if (!first)
            out += ",\n";
        first = false;
        out += pad;
        if (value.is_object())
            out += json(it.key()).dump() + ": ";
        Print(*it, depth + 1, out);
    }
    out += '\n' + closePad + (value.is_array() ? ']' : '}');
}

} // namespace

std::shared_ptr<MxDocument> ReadMapDocument(const std::string& path) {
    const std::string text = detail::ReadTextFile(path);
    try {
        const json root = json::parse(text);
        auto document = DocumentFromJson(root, FolderOf(path));
        document->Path(path);
        return document;
    } catch (const json::exception& error) {
        throw Fault(fault::InvalidFileFormat, kSource,
                    "The map document '" + path + "' cannot be read: " + error.what());
    } catch (const Fault& error) {
        throw Fault(fault::InvalidFileFormat, kSource,
                    "The map document '" + path + "' cannot be read: " + error.Description());
    }
}

void WriteMapDocument(const MxDocument& document, const std::string& path) {
    const PathContext paths{FolderOf(document.Path()), FolderOf(path)};
    std::string text;
    try {
        Print(DocumentToJson(document, paths), 0, text);
        text += '\n';
    } catch (const json::exception& error) {
        throw Fault(fault::InvalidCall, kSource, "The map document '" + path + "' cannot be written: " + error.what());
    }
    detail::WriteTextFileAtomically(path, text);
}

} // namespace tess
