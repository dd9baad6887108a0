#include "platform/carto/Symbols.h"

#include <cmath>

#include "platform/system/Fault.h"

namespace tess {
namespace {

constexpr std::int32_t kChannelMax = 255;
constexpr std::int32_t kGreenFactor = 256;        // packed RGB: green is the second byte
constexpr std::int32_t kBlueFactor = 256 * 256;   // and blue the third
constexpr std::int32_t kPackedMax = 0xFFFFFF;

constexpr double kDefaultMarkerSize = 8.0; // points
constexpr double kDefaultLineWidth = 1.0;  // points
constexpr double kDefaultTextSize = 10.0;  // points
constexpr std::int32_t kDefaultFillGrey = 190;
constexpr const char* kDefaultFont = "Arial";

std::int32_t CheckedChannel(std::int32_t value) {
    if (value < 0 || value > kChannelMax)
        throw Fault(fault::InvalidCall, "RgbColor",
                    "A colour channel must lie between 0 and 255, not " + std::to_string(value));
    return value;
}

double CheckedSize(double value, const char* source) {
    if (!(value >= 0.0) || !std::isfinite(value))
        throw Fault(fault::InvalidCall, source, "A symbol size must be a finite number of points, 0 or more");
    return value;
}

RgbColor ColorFrom(const std::shared_ptr<IColor>& color) {
    RgbColor result;
    if (color)
        result.RGB(color->RGB());
    return result;
}

bool SameColor(const IColor& a, const IColor& b) { return a.RGB() == b.RGB(); }

} // namespace

RgbColor::RgbColor(std::int32_t red, std::int32_t green, std::int32_t blue)
    : red_(CheckedChannel(red)), green_(CheckedChannel(green)), blue_(CheckedChannel(blue)) {}

std::int32_t RgbColor::RGB() const { return red_ + kGreenFactor * green_ + kBlueFactor * blue_; }

void RgbColor::RGB(std::int32_t value) {
    if (value < 0 || value > kPackedMax)
        throw Fault(fault::InvalidCall, "RgbColor", "A packed colour must lie between 0 and 16777215");
    red_ = value % kGreenFactor;
    green_ = (value / kGreenFactor) % kGreenFactor;
    blue_ = value / kBlueFactor;
}

void RgbColor::Red(std::int32_t value) { red_ = CheckedChannel(value); }
void RgbColor::Green(std::int32_t value) { green_ = CheckedChannel(value); }
void RgbColor::Blue(std::int32_t value) { blue_ = CheckedChannel(value); }

std::shared_ptr<IClone> RgbColor::Clone() const { return std::make_shared<RgbColor>(*this); }

bool RgbColor::IsEqual(const IClone& other) const {
    auto* o = dynamic_cast<const RgbColor*>(&other);
    return o && o->RGB() == RGB();
}

// Markers

SimpleMarkerSymbol::SimpleMarkerSymbol() : size_(kDefaultMarkerSize) {}

std::shared_ptr<IColor> SimpleMarkerSymbol::Color() const { return std::make_shared<RgbColor>(color_); }
void SimpleMarkerSymbol::Color(const std::shared_ptr<IColor>& color) { color_ = ColorFrom(color); }
void SimpleMarkerSymbol::Size(double points) { size_ = CheckedSize(points, "SimpleMarkerSymbol"); }

std::shared_ptr<IClone> SimpleMarkerSymbol::Clone() const { return std::make_shared<SimpleMarkerSymbol>(*this); }

bool SimpleMarkerSymbol::IsEqual(const IClone& other) const {
    auto* o = dynamic_cast<const SimpleMarkerSymbol*>(&other);
    return o && SameColor(o->color_, color_) && o->size_ == size_ && o->angle_ == angle_ && o->style_ == style_;
}

// Lines

SimpleLineSymbol::SimpleLineSymbol() : width_(kDefaultLineWidth) {}

std::shared_ptr<IColor> SimpleLineSymbol::Color() const { return std::make_shared<RgbColor>(color_); }
void SimpleLineSymbol::Color(const std::shared_ptr<IColor>& color) { color_ = ColorFrom(color); }
void SimpleLineSymbol::Width(double points) { width_ = CheckedSize(points, "SimpleLineSymbol"); }

std::shared_ptr<IClone> SimpleLineSymbol::Clone() const { return std::make_shared<SimpleLineSymbol>(*this); }

bool SimpleLineSymbol::IsEqual(const IClone& other) const {
    auto* o = dynamic_cast<const SimpleLineSymbol*>(&other);
    return o && SameColor(o->color_, color_) && o->width_ == width_ && o->style_ == style_;
}

// Fills

SimpleFillSymbol::SimpleFillSymbol()
    : color_(kDefaultFillGrey, kDefaultFillGrey, kDefaultFillGrey), outline_(std::make_shared<SimpleLineSymbol>()) {}

std::shared_ptr<IColor> SimpleFillSymbol::Color() const { return std::make_shared<RgbColor>(color_); }
void SimpleFillSymbol::Color(const std::shared_ptr<IColor>& color) { color_ = ColorFrom(color); }

std::shared_ptr<ILineSymbol> SimpleFillSymbol::Outline() const {
    return std::dynamic_pointer_cast<ILineSymbol>(CloneSymbol(outline_));
}

void SimpleFillSymbol::Outline(const std::shared_ptr<ILineSymbol>& outline) {
    outline_ = std::dynamic_pointer_cast<ILineSymbol>(CloneSymbol(outline));
}

std::shared_ptr<IClone> SimpleFillSymbol::Clone() const {
    auto copy = std::make_shared<SimpleFillSymbol>(*this);
    copy->outline_ = Outline();
    return copy;
}

bool SimpleFillSymbol::IsEqual(const IClone& other) const {
    auto* o = dynamic_cast<const SimpleFillSymbol*>(&other);
    if (!o || !SameColor(o->color_, color_) || o->style_ != style_)
        return false;
    if (!outline_ || !o->outline_)
        return !outline_ && !o->outline_;
    auto* mine = dynamic_cast<const IClone*>(outline_.get());
    return mine && mine->IsEqual(dynamic_cast<const IClone&>(*o->outline_));
}

// Text

TextSymbol::TextSymbol() : size_(kDefaultTextSize), font_(kDefaultFont) {}

std::shared_ptr<IColor> TextSymbol::Color() const { return std::make_shared<RgbColor>(color_); }
void TextSymbol::Color(const std::shared_ptr<IColor>& color) { color_ = ColorFrom(color); }
void TextSymbol::Size(double points) { size_ = CheckedSize(points, "TextSymbol"); }

std::shared_ptr<IClone> TextSymbol::Clone() const { return std::make_shared<TextSymbol>(*this); }

bool TextSymbol::IsEqual(const IClone& other) const {
    auto* o = dynamic_cast<const TextSymbol*>(&other);
    return o && SameColor(o->color_, color_) && o->size_ == size_ && o->font_ == font_;
}

std::shared_ptr<ISymbol> CloneSymbol(const std::shared_ptr<ISymbol>& symbol) {
    if (!symbol)
        return nullptr;
    auto* clone = dynamic_cast<const IClone*>(symbol.get());
    if (!clone)
        throw Fault(fault::InvalidCall, "CloneSymbol", "The symbol cannot be copied: it is not of this platform");
    return std::dynamic_pointer_cast<ISymbol>(clone->Clone());
}

} // namespace tess
