#pragma once
// Colours and the simple symbols that graphic elements and renderers draw
// with. Symbols hand out copies of their colours and outlines, as the host
// does: change the copy and put it back.

#include <cstdint>
#include <memory>
#include <string>

#include "platform/system/Clone.h"

namespace tess {

class IColor {
public:
    virtual ~IColor() = default;
    //! The packed value red + 256 * green + 65536 * blue, each 0-255.
    virtual std::int32_t RGB() const = 0;
    virtual void RGB(std::int32_t value) = 0;
};

class IRgbColor : public IColor {
public:
    virtual std::int32_t Red() const = 0;
    virtual void Red(std::int32_t value) = 0;
    virtual std::int32_t Green() const = 0;
    virtual void Green(std::int32_t value) = 0;
    virtual std::int32_t Blue() const = 0;
    virtual void Blue(std::int32_t value) = 0;
};

//! Channels outside 0-255 are an InvalidCall Fault. A new colour is black.
class RgbColor final : public IRgbColor, public IClone {
public:
    RgbColor() = default;
    RgbColor(std::int32_t red, std::int32_t green, std::int32_t blue);

    std::int32_t RGB() const override;
    void RGB(std::int32_t value) override;
    std::int32_t Red() const override { return red_; }
    void Red(std::int32_t value) override;
    std::int32_t Green() const override { return green_; }
    void Green(std::int32_t value) override;
    std::int32_t Blue() const override { return blue_; }
    void Blue(std::int32_t value) override;

    std::shared_ptr<IClone> Clone() const override;
    bool IsEqual(const IClone& other) const override;

private:
    std::int32_t red_ = 0;
    std::int32_t green_ = 0;
    std::int32_t blue_ = 0;
};

//! Root of all symbols (type tests go through the derived interfaces).
class ISymbol {
public:
    virtual ~ISymbol() = default;
};

enum esriSimpleMarkerStyle : std::int32_t {
    esriSMSCircle = 0,
    esriSMSSquare = 1,
    esriSMSCross = 2,
    esriSMSX = 3,
    esriSMSDiamond = 4,
};

enum esriSimpleLineStyle : std::int32_t {
    esriSLSSolid = 0,
    esriSLSDash = 1,
    esriSLSDot = 2,
    esriSLSDashDot = 3,
    esriSLSDashDotDot = 4,
    esriSLSNull = 5,
    esriSLSInsideFrame = 6,
};

enum esriSimpleFillStyle : std::int32_t {
    esriSFSSolid = 0,
    esriSFSNull = 1,
    esriSFSHollow = 1,
    esriSFSHorizontal = 2,
    esriSFSVertical = 3,
    esriSFSForwardDiagonal = 4,
    esriSFSBackwardDiagonal = 5,
    esriSFSCross = 6,
    esriSFSDiagonalCross = 7,
};

//! Sizes and widths are in points (1/72 inch).
class IMarkerSymbol : public ISymbol {
public:
    //! A copy of the colour.
    virtual std::shared_ptr<IColor> Color() const = 0;
    virtual void Color(const std::shared_ptr<IColor>& color) = 0;
    virtual double Size() const = 0;
    virtual void Size(double points) = 0;
    //! Rotation in degrees, counter-clockwise.
    virtual double Angle() const = 0;
    virtual void Angle(double degrees) = 0;
};

class ISimpleMarkerSymbol : public IMarkerSymbol {
public:
    virtual esriSimpleMarkerStyle Style() const = 0;
    virtual void Style(esriSimpleMarkerStyle style) = 0;
};

class ILineSymbol : public ISymbol {
public:
    virtual std::shared_ptr<IColor> Color() const = 0;
    virtual void Color(const std::shared_ptr<IColor>& color) = 0;
    virtual double Width() const = 0;
    virtual void Width(double points) = 0;
};

class ISimpleLineSymbol : public ILineSymbol {
public:
    virtual esriSimpleLineStyle Style() const = 0;
    virtual void Style(esriSimpleLineStyle style) = 0;
};

class IFillSymbol : public ISymbol {
public:
    virtual std::shared_ptr<IColor> Color() const = 0;
    virtual void Color(const std::shared_ptr<IColor>& color) = 0;
    //! A copy of the outline; null means no outline.
    virtual std::shared_ptr<ILineSymbol> Outline() const = 0;
    virtual void Outline(const std::shared_ptr<ILineSymbol>& outline) = 0;
};

class ISimpleFillSymbol : public IFillSymbol {
public:
    virtual esriSimpleFillStyle Style() const = 0;
    virtual void Style(esriSimpleFillStyle style) = 0;
};

class ITextSymbol : public ISymbol {
public:
    virtual std::shared_ptr<IColor> Color() const = 0;
    virtual void Color(const std::shared_ptr<IColor>& color) = 0;
    virtual double Size() const = 0;
    virtual void Size(double points) = 0;
    //! Name of the font family, e.g. "Arial".
    virtual std::string FontName() const = 0;
    virtual void FontName(const std::string& name) = 0;
};

//! A new marker is a black circle of 8 points.
class SimpleMarkerSymbol final : public ISimpleMarkerSymbol, public IClone {
public:
    SimpleMarkerSymbol();
    std::shared_ptr<IColor> Color() const override;
    void Color(const std::shared_ptr<IColor>& color) override;
    double Size() const override { return size_; }
    void Size(double points) override;
    double Angle() const override { return angle_; }
    void Angle(double degrees) override { angle_ = degrees; }
    esriSimpleMarkerStyle Style() const override { return style_; }
    void Style(esriSimpleMarkerStyle style) override { style_ = style; }
    std::shared_ptr<IClone> Clone() const override;
    bool IsEqual(const IClone& other) const override;

private:
    RgbColor color_;
    double size_;
    double angle_ = 0.0;
    esriSimpleMarkerStyle style_ = esriSMSCircle;
};

//! A new line is solid black, 1 point wide.
class SimpleLineSymbol final : public ISimpleLineSymbol, public IClone {
public:
    SimpleLineSymbol();
    std::shared_ptr<IColor> Color() const override;
    void Color(const std::shared_ptr<IColor>& color) override;
    double Width() const override { return width_; }
    void Width(double points) override;
    esriSimpleLineStyle Style() const override { return style_; }
    void Style(esriSimpleLineStyle style) override { style_ = style; }
    std::shared_ptr<IClone> Clone() const override;
    bool IsEqual(const IClone& other) const override;

private:
    RgbColor color_;
    double width_;
    esriSimpleLineStyle style_ = esriSLSSolid;
};

//! A new fill is solid grey with a black outline of 1 point.
class SimpleFillSymbol final : public ISimpleFillSymbol, public IClone {
public:
    SimpleFillSymbol();
    std::shared_ptr<IColor> Color() const override;
    void Color(const std::shared_ptr<IColor>& color) override;
    std::shared_ptr<ILineSymbol> Outline() const override;
    void Outline(const std::shared_ptr<ILineSymbol>& outline) override;
    esriSimpleFillStyle Style() const override { return style_; }
    void Style(esriSimpleFillStyle style) override { style_ = style; }
    std::shared_ptr<IClone> Clone() const override;
    bool IsEqual(const IClone& other) const override;

private:
    RgbColor color_;
    std::shared_ptr<ILineSymbol> outline_;
    esriSimpleFillStyle style_ = esriSFSSolid;
};

//! A new text symbol is black, 10 points, in the family "Arial".
class TextSymbol final : public ITextSymbol, public IClone {
public:
    TextSymbol();
    std::shared_ptr<IColor> Color() const override;
    void Color(const std::shared_ptr<IColor>& color) override;
    double Size() const override { return size_; }
    void Size(double points) override;
    std::string FontName() const override { return font_; }
    void FontName(const std::string& name) override { font_ = name; }
    std::shared_ptr<IClone> Clone() const override;
    bool IsEqual(const IClone& other) const override;

private:
    RgbColor color_;
    double size_;
    std::string font_;
};

//! A deep copy of any symbol of this library; null for null. Fault for a foreign symbol.
std::shared_ptr<ISymbol> CloneSymbol(const std::shared_ptr<ISymbol>& symbol);

} // namespace tess
