#pragma once
// The graphic elements that hold one shape: markers, lines, polygons,
// rectangles, ellipses, circles, text, pictures and data graphs. Groups and
// map frames have their own headers.
//
// Shapes by kind (what Geometry answers, and what it takes):
//   Marker, Text           a point
//   Line                   a polyline
//   Polygon                a polygon
//   Rectangle              a polygon of four lines; an envelope is turned into one
//   Ellipse                a polygon of one ring made of one full elliptic arc; an envelope
//                          gives the ellipse inscribed in it
//   Circle                 a polygon of one ring made of one full circular arc
//   Picture, DataGraph     an envelope; a polygon gives its envelope
// Rectangles, ellipses and circles keep their true curves; nothing is densified here.

#include <memory>
#include <string>

#include "platform/carto/GraphicElements.h"
#include "platform/geometry/Geometry.h" // ITransform2D
#include "platform/system/Clone.h"

namespace tess {

class IPoint;
class Polygon;
class ISymbol;

namespace detail {

//! What every element of this platform shares: shape, name, custom value, lock.
class ElementBase : public IElement, public IElementProperties, public ITransform2D, public IClone {
public:
    std::shared_ptr<IGeometry> Geometry() const override;
    void Geometry(const std::shared_ptr<IGeometry>& geometry) override;
    void QueryBounds(const std::shared_ptr<IDisplay>& display, IEnvelope& bounds) const override;
    bool HitTest(double x, double y, double tolerance) const override;
    bool Locked() const override { return locked_; }
    void Locked(bool locked) override { locked_ = locked; }

    std::string Name() const override { return name_; }
    void Name(const std::string& name) override { name_ = name; }
    std::string Type() const override { return KindWord(Kind()); }
    Variant CustomProperty() const override { return custom_; }
    void CustomProperty(const Variant& value) override { custom_ = value; }

    // ITransform2D: moves the shape (true curves move with it).
    void Move(double dx, double dy) override;
    void Scale(const IPoint& origin, double sx, double sy) override;
    void Rotate(const IPoint& origin, double angle) override;

    virtual ElementKind Kind() const = 0;
    //! The live shape, for code of the platform that only reads it (drawing, saving).
    const std::shared_ptr<IGeometry>& Shape() const { return geometry_; }

protected:
    explicit ElementBase(std::shared_ptr<IGeometry> initial);
    ElementBase(const ElementBase& other);
    ElementBase& operator=(const ElementBase&) = delete;
    //! The shape to keep for the given one (a copy, converted where the kind converts), or an
    //! InvalidCall Fault.
    virtual std::shared_ptr<IGeometry> Accept(const IGeometry& geometry) const = 0;
    bool SameBase(const ElementBase& other) const;

    std::shared_ptr<IGeometry> geometry_;

private:
    std::string name_;
    Variant custom_;
    bool locked_ = false;
};

//! True when both symbols are null, or equal by IClone.
bool SameSymbol(const ISymbol* a, const ISymbol* b);

} // namespace detail

//! A new marker element has an empty point and a default marker symbol.
class MarkerElement final : public detail::ElementBase, public IMarkerElement {
public:
    MarkerElement();
    MarkerElement(const MarkerElement& other);
    std::shared_ptr<IMarkerSymbol> Symbol() const override;
    void Symbol(const std::shared_ptr<IMarkerSymbol>& symbol) override;
    ElementKind Kind() const override { return ElementKind::Marker; }
    std::shared_ptr<IClone> Clone() const override;
    bool IsEqual(const IClone& other) const override;

protected:
    std::shared_ptr<IGeometry> Accept(const IGeometry& geometry) const override;

private:
    std::shared_ptr<IMarkerSymbol> symbol_;
};

class LineElement final : public detail::ElementBase, public ILineElement {
public:
    LineElement();
    LineElement(const LineElement& other);
    std::shared_ptr<ILineSymbol> Symbol() const override;
    void Symbol(const std::shared_ptr<ILineSymbol>& symbol) override;
    ElementKind Kind() const override { return ElementKind::Line; }
    std::shared_ptr<IClone> Clone() const override;
    bool IsEqual(const IClone& other) const override;

protected:
    std::shared_ptr<IGeometry> Accept(const IGeometry& geometry) const override;

private:
    std::shared_ptr<ILineSymbol> symbol_;
};

namespace detail {
//! Polygon, rectangle, ellipse and circle elements: a polygon shape and a fill symbol.
class FillShapeElementBase : public ElementBase, public IFillShapeElement {
public:
    std::shared_ptr<IFillSymbol> Symbol() const override;
    void Symbol(const std::shared_ptr<IFillSymbol>& symbol) override;
    bool IsEqual(const IClone& other) const override;

protected:
    FillShapeElementBase();
    FillShapeElementBase(const FillShapeElementBase& other);

private:
    std::shared_ptr<IFillSymbol> symbol_;
};
} // namespace detail

class PolygonElement final : public detail::FillShapeElementBase, public IPolygonElement {
public:
    PolygonElement() = default;
    ElementKind Kind() const override { return ElementKind::Polygon; }
    std::shared_ptr<IClone> Clone() const override;

protected:
    std::shared_ptr<IGeometry> Accept(const IGeometry& geometry) const override;
};

class RectangleElement final : public detail::FillShapeElementBase, public IRectangleElement {
public:
    RectangleElement() = default;
    ElementKind Kind() const override { return ElementKind::Rectangle; }
    std::shared_ptr<IClone> Clone() const override;

protected:
    std::shared_ptr<IGeometry> Accept(const IGeometry& geometry) const override;
};

class EllipseElement final : public detail::FillShapeElementBase, public IEllipseElement {
public:
    EllipseElement() = default;
    ElementKind Kind() const override { return ElementKind::Ellipse; }
    std::shared_ptr<IClone> Clone() const override;

protected:
    std::shared_ptr<IGeometry> Accept(const IGeometry& geometry) const override;
};

class CircleElement final : public detail::FillShapeElementBase, public ICircleElement {
public:
    CircleElement() = default;
    ElementKind Kind() const override { return ElementKind::Circle; }
    std::shared_ptr<IClone> Clone() const override;

protected:
    std::shared_ptr<IGeometry> Accept(const IGeometry& geometry) const override;
};

class TextElement final : public detail::ElementBase, public ITextElement {
public:
    TextElement();
    TextElement(const TextElement& other);
    std::string Text() const override { return text_; }
    void Text(const std::string& text) override { text_ = text; }
    std::shared_ptr<ITextSymbol> Symbol() const override;
    void Symbol(const std::shared_ptr<ITextSymbol>& symbol) override;
    ElementKind Kind() const override { return ElementKind::Text; }
    std::shared_ptr<IClone> Clone() const override;
    bool IsEqual(const IClone& other) const override;

protected:
    std::shared_ptr<IGeometry> Accept(const IGeometry& geometry) const override;

private:
    std::string text_;
    std::shared_ptr<ITextSymbol> symbol_;
};

class PictureElement final : public detail::ElementBase, public IPictureElement {
public:
    PictureElement();
    void ImportPictureFromFile(const std::string& path) override { filename_ = path; }
    std::string Filename() const override { return filename_; }
    bool MaintainAspectRatio() const override { return keepAspect_; }
    void MaintainAspectRatio(bool keep) override { keepAspect_ = keep; }
    ElementKind Kind() const override { return ElementKind::Picture; }
    std::shared_ptr<IClone> Clone() const override;
    bool IsEqual(const IClone& other) const override;

protected:
    std::shared_ptr<IGeometry> Accept(const IGeometry& geometry) const override;

private:
    std::string filename_;
    bool keepAspect_ = true;
};

class DataGraphElement final : public detail::ElementBase, public IDataGraphElement {
public:
    DataGraphElement();
    std::string Title() const override { return title_; }
    void Title(const std::string& title) override { title_ = title; }
    ElementKind Kind() const override { return ElementKind::DataGraph; }
    std::shared_ptr<IClone> Clone() const override;
    bool IsEqual(const IClone& other) const override;

protected:
    std::shared_ptr<IGeometry> Accept(const IGeometry& geometry) const override;

private:
    std::string title_;
};

//! The clockwise polygon of four lines around the envelope, with its spatial reference.
//! An empty envelope gives an empty polygon.
std::shared_ptr<Polygon> MakeRectanglePolygon(const IEnvelope& envelope);
//! A clockwise polygon of one ring made of one full circular arc; radius > 0 (InvalidCall Fault).
std::shared_ptr<Polygon> MakeCirclePolygon(const IPoint& center, double radius);
//! A clockwise polygon of one ring made of the full ellipse inscribed in the envelope.
std::shared_ptr<Polygon> MakeEllipsePolygon(const IEnvelope& envelope);

} // namespace tess
