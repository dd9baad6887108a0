#include "platform/carto/Elements.h"

#include <array>
#include <cmath>

#include "platform/carto/Symbols.h"
#include "platform/geometry/Geometries.h"
#include "platform/system/Fault.h"

namespace tess {
namespace {

constexpr const char* kSource = "GraphicElement";

std::shared_ptr<IGeometry> CopyOf(const IGeometry& geometry) {
    auto* clone = dynamic_cast<const IClone*>(&geometry);
    if (!clone)
        throw Fault(fault::InvalidCall, kSource, "The shape cannot be copied: it is not of this platform");
    return std::dynamic_pointer_cast<IGeometry>(clone->Clone());
}

[[noreturn]] void Refuse(const char* element, const char* wanted, const IGeometry& given) {
    throw Fault(fault::InvalidCall, kSource,
                std::string("A ") + element + " element takes " + wanted + ", not a shape of type " +
                    std::to_string(static_cast<int>(given.GeometryType())));
}

template <class T>
std::shared_ptr<T> CopySymbol(const std::shared_ptr<T>& symbol) {
    return std::dynamic_pointer_cast<T>(CloneSymbol(symbol));
}

} // namespace

std::string KindWord(ElementKind kind) {
    switch (kind) {
    case ElementKind::Marker:
        return "Marker";
    case ElementKind::Line:
        return "Line";
    case ElementKind::Polygon:
        return "Polygon";
    case ElementKind::Rectangle:
        return "Rectangle";
    case ElementKind::Ellipse:
        return "Ellipse";
    case ElementKind::Circle:
        return "Circle";
    case ElementKind::Text:
        return "Text";
    case ElementKind::Picture:
        return "Picture";
    case ElementKind::DataGraph:
        return "DataGraph";
    case ElementKind::Group:
        return "Group";
    case ElementKind::MapFrame:
        return "MapFrame";
    }
    return "";
}

ElementKind KindOf(const IElement& element) {
    auto* base = dynamic_cast<const detail::ElementBase*>(&element);
    if (!base)
        throw Fault(fault::InvalidCall, kSource, "The element is not of this platform");
    return base->Kind();
}

namespace detail {

ElementBase::ElementBase(std::shared_ptr<IGeometry> initial) : geometry_(std::move(initial)) {}

ElementBase::ElementBase(const ElementBase& other)
    : IElement(other), IElementProperties(other), ITransform2D(other), IClone(other),
      geometry_(other.geometry_ ? CopyOf(*other.geometry_) : nullptr), name_(other.name_),
      custom_(other.custom_), locked_(other.locked_) {}

std::shared_ptr<IGeometry> ElementBase::Geometry() const { return geometry_ ? CopyOf(*geometry_) : nullptr; }

void ElementBase::Geometry(const std::shared_ptr<IGeometry>& geometry) {
    if (!geometry)
        throw Fault(fault::ObjectNotSet, kSource, "An element needs a shape; nothing was given");
    geometry_ = Accept(*geometry);
}

void ElementBase::QueryBounds(const std::shared_ptr<IDisplay>&, IEnvelope& bounds) const {
    if (!geometry_ || geometry_->IsEmpty()) {
        bounds.SetEmpty();
        return;
    }
    geometry_->QueryEnvelope(bounds);
}

bool ElementBase::HitTest(double x, double y, double tolerance) const {
    if (!geometry_ || geometry_->IsEmpty())
        return false;
    const tess::Point probe(x, y);
    if (auto* box = dynamic_cast<const IEnvelope*>(geometry_.get())) {
        return x >= box->XMin() - tolerance && x <= box->XMax() + tolerance && y >= box->YMin() - tolerance &&
               y <= box->YMax() + tolerance;
    }
    if (auto* point = dynamic_cast<const IPoint*>(geometry_.get()))
        return std::hypot(point->X() - x, point->Y() - y) <= tolerance;
    if (geometry_->GeometryType() == esriGeometryPolygon) {
        if (auto* relation = dynamic_cast<const IRelationalOperator*>(geometry_.get());
            relation && relation->Intersects(probe))
            return true;
    }
    if (auto* curve = dynamic_cast<const ICurve*>(geometry_.get())) {
        tess::Point nearest;
        double along = 0.0;
        double away = 0.0;
        bool right = false;
        curve->QueryPointAndDistance(esriNoExtension, probe, false, nearest, along, away, right);
        return away <= tolerance;
    }
    return false;
}

void ElementBase::Move(double dx, double dy) {
    if (auto* t = dynamic_cast<ITransform2D*>(geometry_.get()))
        t->Move(dx, dy);
}

void ElementBase::Scale(const IPoint& origin, double sx, double sy) {
    if (auto* t = dynamic_cast<ITransform2D*>(geometry_.get()))
        t->Scale(origin, sx, sy);
}

void ElementBase::Rotate(const IPoint& origin, double angle) {
    if (auto* t = dynamic_cast<ITransform2D*>(geometry_.get()))
        t->Rotate(origin, angle);
}

bool ElementBase::SameBase(const ElementBase& other) const {
    if (Kind() != other.Kind() || name_ != other.name_ || locked_ != other.locked_ || !(custom_ == other.custom_))
        return false;
    if (!geometry_ || !other.geometry_)
        return !geometry_ && !other.geometry_;
    auto* mine = dynamic_cast<const IClone*>(geometry_.get());
    auto* theirs = dynamic_cast<const IClone*>(other.geometry_.get());
    return mine && theirs && mine->IsEqual(*theirs);
}

bool SameSymbol(const ISymbol* a, const ISymbol* b) {
    if (!a || !b)
        return !a && !b;
    auto* ca = dynamic_cast<const IClone*>(a);
    auto* cb = dynamic_cast<const IClone*>(b);
    return ca && cb && ca->IsEqual(*cb);
}

// Fill shapes

FillShapeElementBase::FillShapeElementBase()
    : ElementBase(std::make_shared<tess::Polygon>()), symbol_(std::make_shared<SimpleFillSymbol>()) {}

FillShapeElementBase::FillShapeElementBase(const FillShapeElementBase& other)
    : ElementBase(other), IFillShapeElement(other), symbol_(CopySymbol(other.symbol_)) {}

std::shared_ptr<IFillSymbol> FillShapeElementBase::Symbol() const { return CopySymbol(symbol_); }

void FillShapeElementBase::Symbol(const std::shared_ptr<IFillSymbol>& symbol) { symbol_ = CopySymbol(symbol); }

bool FillShapeElementBase::IsEqual(const IClone& other) const {
    auto* o = dynamic_cast<const FillShapeElementBase*>(&other);
    return o && SameBase(*o) && SameSymbol(symbol_.get(), o->symbol_.get());
}

} // namespace detail

// Markers

MarkerElement::MarkerElement()
    : ElementBase(std::make_shared<tess::Point>()), symbol_(std::make_shared<SimpleMarkerSymbol>()) {}

MarkerElement::MarkerElement(const MarkerElement& other)
    : ElementBase(other), IMarkerElement(other), symbol_(CopySymbol(other.symbol_)) {}

std::shared_ptr<IMarkerSymbol> MarkerElement::Symbol() const { return CopySymbol(symbol_); }
void MarkerElement::Symbol(const std::shared_ptr<IMarkerSymbol>& symbol) { symbol_ = CopySymbol(symbol); }
std::shared_ptr<IClone> MarkerElement::Clone() const { return std::make_shared<MarkerElement>(*this); }

bool MarkerElement::IsEqual(const IClone& other) const {
    auto* o = dynamic_cast<const MarkerElement*>(&other);
    return o && SameBase(*o) && detail::SameSymbol(symbol_.get(), o->symbol_.get());
}

std::shared_ptr<IGeometry> MarkerElement::Accept(const IGeometry& geometry) const {
    if (geometry.GeometryType() != esriGeometryPoint)
        Refuse("marker", "a point", geometry);
    return CopyOf(geometry);
}

// Lines

LineElement::LineElement()
    : ElementBase(std::make_shared<tess::Polyline>()), symbol_(std::make_shared<SimpleLineSymbol>()) {}

LineElement::LineElement(const LineElement& other)
    : ElementBase(other), ILineElement(other), symbol_(CopySymbol(other.symbol_)) {}

std::shared_ptr<ILineSymbol> LineElement::Symbol() const { return CopySymbol(symbol_); }
void LineElement::Symbol(const std::shared_ptr<ILineSymbol>& symbol) { symbol_ = CopySymbol(symbol); }
std::shared_ptr<IClone> LineElement::Clone() const { return std::make_shared<LineElement>(*this); }

bool LineElement::IsEqual(const IClone& other) const {
    auto* o = dynamic_cast<const LineElement*>(&other);
    return o && SameBase(*o) && detail::SameSymbol(symbol_.get(), o->symbol_.get());
}

std::shared_ptr<IGeometry> LineElement::Accept(const IGeometry& geometry) const {
    if (geometry.GeometryType() != esriGeometryPolyline)
        Refuse("line", "a polyline", geometry);
    return CopyOf(geometry);
}

// Polygons, rectangles, ellipses, circles

std::shared_ptr<IClone> PolygonElement::Clone() const { return std::make_shared<PolygonElement>(*this); }

std::shared_ptr<IGeometry> PolygonElement::Accept(const IGeometry& geometry) const {
    if (geometry.GeometryType() != esriGeometryPolygon)
        Refuse("polygon", "a polygon", geometry);
    return CopyOf(geometry);
}

std::shared_ptr<IClone> RectangleElement::Clone() const { return std::make_shared<RectangleElement>(*this); }

std::shared_ptr<IGeometry> RectangleElement::Accept(const IGeometry& geometry) const {
    if (auto* box = dynamic_cast<const IEnvelope*>(&geometry))
        return MakeRectanglePolygon(*box);
    if (geometry.GeometryType() != esriGeometryPolygon)
        Refuse("rectangle", "a polygon or an envelope", geometry);
    return CopyOf(geometry);
}

std::shared_ptr<IClone> EllipseElement::Clone() const { return std::make_shared<EllipseElement>(*this); }

std::shared_ptr<IGeometry> EllipseElement::Accept(const IGeometry& geometry) const {
    if (auto* box = dynamic_cast<const IEnvelope*>(&geometry))
        return MakeEllipsePolygon(*box);
    if (geometry.GeometryType() != esriGeometryPolygon)
        Refuse("ellipse", "a polygon or an envelope", geometry);
    return CopyOf(geometry);
}

std::shared_ptr<IClone> CircleElement::Clone() const { return std::make_shared<CircleElement>(*this); }

std::shared_ptr<IGeometry> CircleElement::Accept(const IGeometry& geometry) const {
    if (geometry.GeometryType() != esriGeometryPolygon)
        Refuse("circle", "a polygon", geometry);
    return CopyOf(geometry);
}

// Text

TextElement::TextElement()
    : ElementBase(std::make_shared<tess::Point>()), symbol_(std::make_shared<TextSymbol>()) {}

TextElement::TextElement(const TextElement& other)
    : ElementBase(other), ITextElement(other), text_(other.text_), symbol_(CopySymbol(other.symbol_)) {}

std::shared_ptr<ITextSymbol> TextElement::Symbol() const { return CopySymbol(symbol_); }
void TextElement::Symbol(const std::shared_ptr<ITextSymbol>& symbol) { symbol_ = CopySymbol(symbol); }
std::shared_ptr<IClone> TextElement::Clone() const { return std::make_shared<TextElement>(*this); }

bool TextElement::IsEqual(const IClone& other) const {
    auto* o = dynamic_cast<const TextElement*>(&other);
    return o && SameBase(*o) && o->text_ == text_ && detail::SameSymbol(symbol_.get(), o->symbol_.get());
}

std::shared_ptr<IGeometry> TextElement::Accept(const IGeometry& geometry) const {
    if (geometry.GeometryType() != esriGeometryPoint)
        Refuse("text", "a point", geometry);
    return CopyOf(geometry);
}

// Pictures and data graphs: placed in a rectangle

namespace {
std::shared_ptr<IGeometry> AcceptBox(const char* element, const IGeometry& geometry) {
    if (geometry.GeometryType() == esriGeometryEnvelope)
        return CopyOf(geometry);
    if (geometry.GeometryType() == esriGeometryPolygon)
        return geometry.Envelope();
    Refuse(element, "an envelope or a polygon", geometry);
}
} // namespace

PictureElement::PictureElement() : ElementBase(std::make_shared<tess::Envelope>()) {}
std::shared_ptr<IClone> PictureElement::Clone() const { return std::make_shared<PictureElement>(*this); }

bool PictureElement::IsEqual(const IClone& other) const {
    auto* o = dynamic_cast<const PictureElement*>(&other);
    return o && SameBase(*o) && o->filename_ == filename_ && o->keepAspect_ == keepAspect_;
}

std::shared_ptr<IGeometry> PictureElement::Accept(const IGeometry& geometry) const {
    return AcceptBox("picture", geometry);
}

DataGraphElement::DataGraphElement() : ElementBase(std::make_shared<tess::Envelope>()) {}
std::shared_ptr<IClone> DataGraphElement::Clone() const { return std::make_shared<DataGraphElement>(*this); }

bool DataGraphElement::IsEqual(const IClone& other) const {
    auto* o = dynamic_cast<const DataGraphElement*>(&other);
    return o && SameBase(*o) && o->title_ == title_;
}

std::shared_ptr<IGeometry> DataGraphElement::Accept(const IGeometry& geometry) const {
    return AcceptBox("data graph", geometry);
}

// Shapes of rectangles, circles and ellipses

std::shared_ptr<Polygon> MakeRectanglePolygon(const IEnvelope& envelope) {
    auto polygon = std::make_shared<tess::Polygon>();
    polygon->SpatialReference(envelope.SpatialReference());
    if (envelope.IsEmpty())
        return polygon;
    // Up the left side first: an exterior ring runs clockwise.
    const std::array<WKSPoint, 5> corners{{{envelope.XMin(), envelope.YMin()},
                                          {envelope.XMin(), envelope.YMax()},
                                          {envelope.XMax(), envelope.YMax()},
                                          {envelope.XMax(), envelope.YMin()},
                                          {envelope.XMin(), envelope.YMin()}}};
    auto ring = std::make_shared<Ring>();
    ring->AddWKSPoints(static_cast<std::int32_t>(corners.size()), corners.data());
    polygon->AddPart(ring);
    polygon->SpatialReference(envelope.SpatialReference());
    return polygon;
}

std::shared_ptr<Polygon> MakeCirclePolygon(const IPoint& center, double radius) {
    if (!(radius > 0.0) || !std::isfinite(radius))
        throw Fault(fault::InvalidCall, kSource, "A circle needs a finite radius above 0");
    CircularArc arc;
    arc.ConstructCircle(center, radius, /*isCounterClockwise=*/false);
    auto ring = std::make_shared<Ring>();
    ring->AddSegment(arc);
    auto polygon = std::make_shared<tess::Polygon>();
    polygon->AddPart(ring);
    polygon->SpatialReference(center.SpatialReference());
    return polygon;
}

std::shared_ptr<Polygon> MakeEllipsePolygon(const IEnvelope& envelope) {
    auto polygon = std::make_shared<tess::Polygon>();
    if (envelope.IsEmpty()) {
        polygon->SpatialReference(envelope.SpatialReference());
        return polygon;
    }
    EllipticArc arc;
    arc.ConstructEnvelope(envelope);
    auto ring = std::make_shared<Ring>();
    ring->AddSegment(arc);
    polygon->AddPart(ring);
    polygon->SpatialReference(envelope.SpatialReference());
    return polygon;
}

} // namespace tess
