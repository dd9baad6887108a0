#pragma once
// Interfaces of graphic elements: shapes drawn by hand on a map or on the page
// layout. Each concrete element (Elements.h, GroupElement.h, MapFrame.h)
// implements IElement, IElementProperties and the interfaces of its kind; a
// type test is a std::dynamic_pointer_cast to the kind's interface.

#include <cstdint>
#include <memory>
#include <string>

#include "platform/system/Variant.h"

namespace tess {

class IGeometry;
class IEnvelope;
class IDisplay;
class IMarkerSymbol;
class ILineSymbol;
class IFillSymbol;
class ITextSymbol;
class IMap;
class IEnumElement;

class IElement {
public:
    virtual ~IElement() = default;
    //! A copy of the element's shape; change it and put it back to move the element.
    virtual std::shared_ptr<IGeometry> Geometry() const = 0;
    //! Keeps a copy. A shape of a kind the element cannot take is an InvalidCall Fault; some kinds
    //! convert (an envelope becomes the polygon of a rectangle element, ...), see each class.
    virtual void Geometry(const std::shared_ptr<IGeometry>& geometry) = 0;
    //! The box the element covers on the display, in the view's units. Markers and text have no
    //! extent of their own here: their bounds are their point.
    virtual void QueryBounds(const std::shared_ptr<IDisplay>& display, IEnvelope& bounds) const = 0;
    //! Whether the point (x, y) lies on or inside the element, within tolerance (view units).
    virtual bool HitTest(double x, double y, double tolerance) const = 0;
    virtual bool Locked() const = 0;
    virtual void Locked(bool locked) = 0;
};

//! The kinds of element, by the word that IElementProperties.Type answers.
enum class ElementKind : std::int32_t {
    Marker,    //!< "Marker"
    Line,      //!< "Line"
    Polygon,   //!< "Polygon"
    Rectangle, //!< "Rectangle"
    Ellipse,   //!< "Ellipse"
    Circle,    //!< "Circle"
    Text,      //!< "Text"
    Picture,   //!< "Picture"
    DataGraph, //!< "DataGraph"
    Group,     //!< "Group"
    MapFrame,  //!< "MapFrame"
};

class IElementProperties {
public:
    virtual ~IElementProperties() = default;
    //! Empty for a new element.
    virtual std::string Name() const = 0;
    virtual void Name(const std::string& name) = 0;
    //! The kind word, see ElementKind.
    virtual std::string Type() const = 0;
    //! A value the host or an extension attaches; Empty for a new element.
    virtual Variant CustomProperty() const = 0;
    virtual void CustomProperty(const Variant& value) = 0;
};

//! A point drawn with a marker symbol; its shape is a point.
class IMarkerElement {
public:
    virtual ~IMarkerElement() = default;
    //! A copy of the symbol.
    virtual std::shared_ptr<IMarkerSymbol> Symbol() const = 0;
    virtual void Symbol(const std::shared_ptr<IMarkerSymbol>& symbol) = 0;
};

//! A polyline drawn with a line symbol.
class ILineElement {
public:
    virtual ~ILineElement() = default;
    virtual std::shared_ptr<ILineSymbol> Symbol() const = 0;
    virtual void Symbol(const std::shared_ptr<ILineSymbol>& symbol) = 0;
};

//! Elements whose area is filled: polygons, rectangles, ellipses and circles.
class IFillShapeElement {
public:
    virtual ~IFillShapeElement() = default;
    virtual std::shared_ptr<IFillSymbol> Symbol() const = 0;
    virtual void Symbol(const std::shared_ptr<IFillSymbol>& symbol) = 0;
};

// The kind tests. Rectangles, ellipses and circles answer only to their own
// interface, not to IPolygonElement, though their shape is a polygon.
class IPolygonElement {
public:
    virtual ~IPolygonElement() = default;
};
class IRectangleElement {
public:
    virtual ~IRectangleElement() = default;
};
class IEllipseElement {
public:
    virtual ~IEllipseElement() = default;
};
class ICircleElement {
public:
    virtual ~ICircleElement() = default;
};

//! Text placed at a point. Its shape is a point, yet it is no marker element.
class ITextElement {
public:
    virtual ~ITextElement() = default;
    virtual std::string Text() const = 0;
    virtual void Text(const std::string& text) = 0;
    virtual std::shared_ptr<ITextSymbol> Symbol() const = 0;
    virtual void Symbol(const std::shared_ptr<ITextSymbol>& symbol) = 0;
};

//! A picture from an image file, placed in a rectangle (its shape is an envelope).
class IPictureElement {
public:
    virtual ~IPictureElement() = default;
    //! Remembers the file; the platform does not read the image.
    virtual void ImportPictureFromFile(const std::string& path) = 0;
    virtual std::string Filename() const = 0;
    virtual bool MaintainAspectRatio() const = 0;
    virtual void MaintainAspectRatio(bool keep) = 0;
};

//! A chart of data placed in a rectangle (its shape is an envelope).
class IDataGraphElement {
public:
    virtual ~IDataGraphElement() = default;
    virtual std::string Title() const = 0;
    virtual void Title(const std::string& title) = 0;
};

//! Elements held together. The shape of a group is the envelope of its members.
class IGroupElement {
public:
    virtual ~IGroupElement() = default;
    virtual std::int32_t ElementCount() const = 0;
    //! The member itself (live). OutOfRange Fault outside 0..ElementCount-1.
    virtual std::shared_ptr<IElement> Element(std::int32_t index) const = 0;
    virtual void AddElement(const std::shared_ptr<IElement>& element) = 0;
    //! Removes one member; nothing happens when it is not a member.
    virtual void DeleteElement(const std::shared_ptr<IElement>& element) = 0;
    virtual void ClearElements() = 0;
    //! A walk over the members, in order.
    virtual std::shared_ptr<IEnumElement> Elements() const = 0;
};

//! A frame on the page layout that shows another object.
class IFrameElement {
public:
    virtual ~IFrameElement() = default;
    //! Whether the frame has something to show.
    virtual bool IsEmpty() const = 0;
};

//! The frame of a map on the page layout. Its shape is the polygon of a rectangle, in page units.
class IMapFrame : public IFrameElement {
public:
    virtual std::shared_ptr<IMap> Map() const = 0;
    virtual void Map(const std::shared_ptr<IMap>& map) = 0;
};

//! The kind of any element of this platform; InvalidCall Fault for a foreign element.
ElementKind KindOf(const IElement& element);
//! The word of a kind ("Marker", "Line", ...).
std::string KindWord(ElementKind kind);

} // namespace tess
