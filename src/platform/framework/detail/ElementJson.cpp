#include "platform/framework/detail/ElementJson.h"

#include <nlohmann/json.hpp>

#include "platform/carto/Elements.h"
#include "platform/carto/EnumElement.h"
#include "platform/carto/GroupElement.h"
#include "platform/carto/MapFrame.h"
#include "platform/carto/Symbols.h"
#include "platform/framework/detail/GeometryJson.h"
#include "platform/geometry/Geometry.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/Transform.h"
#include "platform/system/Fault.h"
#include "platform/system/VariantStream.h"

namespace tess::detail {
namespace {

using json = nlohmann::ordered_json;

constexpr const char* kSource = "MapDocument";
constexpr const char* kMapReference = "map";
// The text form of a one-value variant stream, to carry a custom property.
constexpr const char* kStreamFormat = "tess.VariantStream";
constexpr int kStreamVersion = 1;

[[noreturn]] void Malformed(const std::string& what) { throw Fault(fault::InvalidFileFormat, kSource, what); }

json ColorToJson(const IColor& color) {
    RgbColor rgb;
    rgb.RGB(color.RGB());
    return json::array({rgb.Red(), rgb.Green(), rgb.Blue()});
}

std::shared_ptr<IColor> ColorFromJson(const json& value) {
    if (!value.is_array() || value.size() != 3)
        Malformed("a colour must be written [red, green, blue]");
    return std::make_shared<RgbColor>(value[0].get<std::int32_t>(), value[1].get<std::int32_t>(),
                                      value[2].get<std::int32_t>());
}

json VariantToJson(const Variant& value) {
    MemoryVariantStream stream;
    stream.Write(value);
    return json::parse(stream.ToText()).at("values").at(0);
}

Variant VariantFromJson(const json& value) {
    const json text{{"format", kStreamFormat}, {"version", kStreamVersion}, {"values", json::array({value})}};
    return MemoryVariantStream::FromText(text.dump()).Read();
}

template <class T>
std::shared_ptr<T> SymbolAs(const json& object, const char* what) {
    if (!object.contains("symbol") || object["symbol"].is_null())
        return nullptr;
    auto symbol = std::dynamic_pointer_cast<T>(SymbolFromJson(object["symbol"]));
    if (!symbol)
        Malformed(std::string("the symbol of a ") + what + " element is of the wrong kind");
    return symbol;
}

std::shared_ptr<IElement> MakeElement(const std::string& type) {
    if (type == "Marker")
        return std::make_shared<MarkerElement>();
    if (type == "Line")
        return std::make_shared<LineElement>();
    if (type == "Polygon")
        return std::make_shared<PolygonElement>();
    if (type == "Rectangle")
        return std::make_shared<RectangleElement>();
    if (type == "Ellipse")
        return std::make_shared<EllipseElement>();
    if (type == "Circle")
        return std::make_shared<CircleElement>();
    if (type == "Text")
        return std::make_shared<TextElement>();
    if (type == "Picture")
        return std::make_shared<PictureElement>();
    if (type == "DataGraph")
        return std::make_shared<DataGraphElement>();
    if (type == "Group")
        return std::make_shared<GroupElement>();
    if (type == "MapFrame")
        return std::make_shared<MapFrame>();
    Malformed("unknown element type \"" + type + "\"");
}

} // namespace

const json& ListMember(const json& object, const char* name) {
    static const json empty = json::array();
    auto it = object.find(name);
    if (it == object.end() || it->is_null())
        return empty;
    if (!it->is_array())
        Malformed(std::string("\"") + name + "\" must be a list");
    return *it;
}

const json& ObjectMember(const json& object, const char* name) {
    static const json empty = json::object();
    auto it = object.find(name);
    if (it == object.end() || it->is_null())
        return empty;
    if (!it->is_object())
        Malformed(std::string("\"") + name + "\" must be an object");
    return *it;
}

// Symbols

json SymbolToJson(const ISymbol* symbol) {
    if (auto* marker = dynamic_cast<const SimpleMarkerSymbol*>(symbol)) {
        return json{{"type", "simpleMarker"},   {"color", ColorToJson(*marker->Color())},
                    {"size", marker->Size()},   {"angle", marker->Angle()},
                    {"style", marker->Style()}};
    }
    if (auto* line = dynamic_cast<const SimpleLineSymbol*>(symbol)) {
        return json{{"type", "simpleLine"},
                    {"color", ColorToJson(*line->Color())},
                    {"width", line->Width()},
                    {"style", line->Style()}};
    }
    if (auto* fill = dynamic_cast<const SimpleFillSymbol*>(symbol)) {
        auto outline = fill->Outline();
        return json{{"type", "simpleFill"},
                    {"color", ColorToJson(*fill->Color())},
                    {"style", fill->Style()},
                    {"outline", SymbolToJson(outline.get())}};
    }
    if (auto* text = dynamic_cast<const TextSymbol*>(symbol)) {
        return json{{"type", "text"},
                    {"color", ColorToJson(*text->Color())},
                    {"size", text->Size()},
                    {"font", text->FontName()}};
    }
    return nullptr;
}

std::shared_ptr<ISymbol> SymbolFromJson(const json& value) {
    if (value.is_null())
        return nullptr;
    const std::string type = value.at("type").get<std::string>();
    if (type == "simpleMarker") {
        auto marker = std::make_shared<SimpleMarkerSymbol>();
        marker->Color(ColorFromJson(value.at("color")));
        marker->Size(value.at("size").get<double>());
        marker->Angle(value.value("angle", 0.0));
        marker->Style(static_cast<esriSimpleMarkerStyle>(value.value("style", 0)));
        return marker;
    }
    if (type == "simpleLine") {
        auto line = std::make_shared<SimpleLineSymbol>();
        line->Color(ColorFromJson(value.at("color")));
        line->Width(value.at("width").get<double>());
        line->Style(static_cast<esriSimpleLineStyle>(value.value("style", 0)));
        return line;
    }
    if (type == "simpleFill") {
        auto fill = std::make_shared<SimpleFillSymbol>();
        fill->Color(ColorFromJson(value.at("color")));
        fill->Style(static_cast<esriSimpleFillStyle>(value.value("style", 0)));
        const json outline = value.value("outline", json());
        fill->Outline(std::dynamic_pointer_cast<ILineSymbol>(SymbolFromJson(outline)));
        return fill;
    }
    if (type == "text") {
        auto text = std::make_shared<TextSymbol>();
        text->Color(ColorFromJson(value.at("color")));
        text->Size(value.at("size").get<double>());
        text->FontName(value.value("font", std::string()));
        return text;
    }
    Malformed("unknown symbol type \"" + type + "\"");
}

// Spatial references of shapes

void WriteReference(json& object, const IGeometry& geometry, const ElementContext& context) {
    auto reference = geometry.SpatialReference();
    if (!reference)
        return;
    if (context.mapReference &&
        (reference == context.mapReference || reference->IsEqual(*context.mapReference))) {
        object["spatialReference"] = kMapReference;
        return;
    }
    object["spatialReference"] = reference->ExportToESRI();
}

void ReadReference(const json& object, IGeometry& geometry, ElementContext& context) {
    if (!object.contains("spatialReference") || object["spatialReference"].is_null())
        return;
    const std::string text = object["spatialReference"].get<std::string>();
    if (text == kMapReference) {
        geometry.SpatialReference(context.mapReference);
        return;
    }
    auto& cached = context.references[text];
    if (!cached)
        cached = FromWkt(text);
    geometry.SpatialReference(cached);
}

// Elements

json ElementToJson(const IElement& element, const ElementContext& context) {
    const ElementKind kind = KindOf(element);
    const auto& properties = dynamic_cast<const IElementProperties&>(element);
    json value{{"type", KindWord(kind)}, {"name", properties.Name()}};
    if (element.Locked())
        value["locked"] = true;
    const Variant custom = properties.CustomProperty();
    if (!custom.IsEmpty() && !custom.IsObject())
        value["customProperty"] = VariantToJson(custom);

    if (auto* group = dynamic_cast<const IGroupElement*>(&element)) {
        json members = json::array();
        for (std::int32_t i = 0; i < group->ElementCount(); ++i)
            members.push_back(ElementToJson(*group->Element(i), context));
        value["elements"] = std::move(members);
        return value;
    }

    const auto& base = dynamic_cast<const ElementBase&>(element);
    if (const auto& shape = base.Shape()) {
        json geometry = GeometryToJson(*shape);
        WriteReference(geometry, *shape, context);
        value["geometry"] = std::move(geometry);
    }
    if (auto* marker = dynamic_cast<const IMarkerElement*>(&element))
        value["symbol"] = SymbolToJson(marker->Symbol().get());
    if (auto* line = dynamic_cast<const ILineElement*>(&element))
        value["symbol"] = SymbolToJson(line->Symbol().get());
    if (auto* fill = dynamic_cast<const IFillShapeElement*>(&element))
        value["symbol"] = SymbolToJson(fill->Symbol().get());
    if (auto* text = dynamic_cast<const ITextElement*>(&element)) {
        value["text"] = text->Text();
        value["symbol"] = SymbolToJson(text->Symbol().get());
    }
    if (auto* picture = dynamic_cast<const IPictureElement*>(&element)) {
        value["filename"] = picture->Filename();
        value["maintainAspectRatio"] = picture->MaintainAspectRatio();
    }
    if (auto* graph = dynamic_cast<const IDataGraphElement*>(&element))
        value["title"] = graph->Title();
    if (auto* frame = dynamic_cast<const IMapFrame*>(&element)) {
        const int index = frame->Map() && context.mapIndex ? context.mapIndex(frame->Map().get()) : -1;
        value["map"] = index >= 0 ? json(index) : json();
    }
    return value;
}

std::shared_ptr<IElement> ElementFromJson(const json& value, ElementContext& context) {
    if (!value.is_object())
        Malformed("an element must be an object");
    auto element = MakeElement(value.at("type").get<std::string>());
    auto& properties = dynamic_cast<IElementProperties&>(*element);
    properties.Name(value.value("name", std::string()));
    element->Locked(value.value("locked", false));
    if (value.contains("customProperty"))
        properties.CustomProperty(VariantFromJson(value["customProperty"]));

    if (auto group = std::dynamic_pointer_cast<IGroupElement>(element)) {
        for (const json& member : ListMember(value, "elements"))
            group->AddElement(ElementFromJson(member, context));
        return element;
    }
    if (value.contains("geometry")) {
        auto geometry = GeometryFromJson(value["geometry"]);
        ReadReference(value["geometry"], *geometry, context);
        element->Geometry(geometry);
    }
    // A missing symbol leaves the element's default one.
    if (auto marker = std::dynamic_pointer_cast<IMarkerElement>(element)) {
        if (auto symbol = SymbolAs<IMarkerSymbol>(value, "marker"))
            marker->Symbol(symbol);
    }
    if (auto line = std::dynamic_pointer_cast<ILineElement>(element)) {
        if (auto symbol = SymbolAs<ILineSymbol>(value, "line"))
            line->Symbol(symbol);
    }
    if (auto fill = std::dynamic_pointer_cast<IFillShapeElement>(element)) {
        if (auto symbol = SymbolAs<IFillSymbol>(value, "fill"))
            fill->Symbol(symbol);
    }
    if (auto text = std::dynamic_pointer_cast<ITextElement>(element)) {
        text->Text(value.value("text", std::string()));
        if (auto symbol = SymbolAs<ITextSymbol>(value, "text"))
            text->Symbol(symbol);
    }
    if (auto picture = std::dynamic_pointer_cast<IPictureElement>(element)) {
        picture->ImportPictureFromFile(value.value("filename", std::string()));
        picture->MaintainAspectRatio(value.value("maintainAspectRatio", true));
    }
    if (auto graph = std::dynamic_pointer_cast<IDataGraphElement>(element))
        graph->Title(value.value("title", std::string()));
    if (auto frame = std::dynamic_pointer_cast<IMapFrame>(element)) {
        if (value.contains("map") && !value["map"].is_null()) {
            auto map = context.mapAt ? context.mapAt(value["map"].get<int>()) : nullptr;
            if (!map)
                Malformed("a map frame shows map " + value["map"].dump() + ", which the document does not have");
            frame->Map(map);
        }
    }
    return element;
}

} // namespace tess::detail
