#include "support/AnchorObject.h"

#include "frame/ErrorHandling.h"
#include "platform/system/Fault.h"
#include "platform/ui/Form.h"

namespace tess {
namespace {

constexpr const char* kSource = "AnchorObject";
constexpr double kHalf = 0.5;

struct Recorded {
    float start = 0.0F;
    float end = 0.0F;
    float half = 0.0F;
};

double Ratio(double value, double container) {
    if (container == 0.0)
        throw Fault(fault::DivisionByZero, kSource, "Division by zero");
    return value / container;
}

// What the start and end anchors keep of one axis: L the start, W the size, C the container.
Recorded Record(AnchorTypes type, double L, double W, double C) {
    Recorded r;
    switch (type) {
    case enumNone:
        r.start = static_cast<float>(Ratio(L, C));
        r.end = static_cast<float>(Ratio(W, C));
        break;
    case enumStart:
        r.start = static_cast<float>(L);
        r.end = static_cast<float>(Ratio(W, C));
        break;
    case enumStartSize:
        r.start = static_cast<float>(L);
        r.end = static_cast<float>(W);
        break;
    case enumStartEnd:
        r.start = static_cast<float>(L);
        r.end = static_cast<float>(C - W); // the total margin
        break;
    case enumSize:
        r.start = static_cast<float>(Ratio(L + W * kHalf, C));
        r.end = static_cast<float>(W);
        r.half = static_cast<float>(W * kHalf);
        break;
    case enumSizeEnd:
        r.start = static_cast<float>(C - L);
        r.end = static_cast<float>(W);
        break;
    case enumEnd:
        r.end = static_cast<float>(C - (L + W));
        r.start = static_cast<float>(Ratio(L, C));
        break;
    }
    return r;
}

// The reverse of Record: the new start and size for a container of size C.
void Place(const Anchor& start, const Anchor& end, double half, double C, double& L, double& W) {
    const double a = start.Value();
    const double b = end.Value();
    switch (start.AnchorType()) {
    case enumNone:
        L = a * C;
        W = b * C;
        break;
    case enumStart:
        L = a;
        W = b * C;
        break;
    case enumStartSize:
        L = a;
        W = b;
        break;
    case enumStartEnd:
        L = a;
        W = C - b;
        break;
    case enumSize:
        W = b;
        L = a * C - half;
        break;
    case enumSizeEnd:
        W = b;
        L = C - a;
        break;
    case enumEnd:
        L = a * C;
        W = C - b - L;
        break;
    }
    L = start.Clamp(L);
    W = end.Clamp(W);
}

} // namespace

AnchorObject::AnchorObject(tess::Control& control, const tess::Form& container)
    : control_(&control), containerForm_(&container) {}

AnchorObject::AnchorObject(tess::Control& control, const tess::Control& container)
    : control_(&control), containerControl_(&container) {}

double AnchorObject::ContainerWidth() const { return containerForm_ ? containerForm_->Width : containerControl_->Width; }

double AnchorObject::ContainerHeight() const {
    return containerForm_ ? containerForm_->Height : containerControl_->Height;
}

void AnchorObject::SetAnchors(AnchorTypes xType, AnchorTypes yType) {
    TrappedVoid("AnchorObject.SetAnchors ", [&] {
        const tess::Control& c = *control_;
        const Recorded x = Record(xType, c.Left, c.Width, ContainerWidth());
        const Recorded y = Record(yType, c.Top, c.Height, ContainerHeight());
        x_.AnchorType(xType);
        x2_.AnchorType(xType);
        y_.AnchorType(yType);
        y2_.AnchorType(yType);
        x_.Value(x.start);
        x2_.Value(x.end);
        halfWidth_ = x.half;
        y_.Value(y.start);
        y2_.Value(y.end);
        halfHeight_ = y.half;
    });
}

void AnchorObject::DoAnchors() {
    double left = 0.0, width = 0.0, top = 0.0, height = 0.0;
    Place(x_, x2_, halfWidth_, ContainerWidth(), left, width);
    Place(y_, y2_, halfHeight_, ContainerHeight(), top, height);
    if (width < 0.0 || height < 0.0)
        return; // the control refuses the size; a resize must never fail
    control_->Left = left;
    control_->Top = top;
    control_->Width = width;
    control_->Height = height;
}

} // namespace tess
