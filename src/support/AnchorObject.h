#pragma once
// A control and its four anchors: X and Y for the start, X2 and Y2 for the end
// or size. SetAnchors records the control's geometry relative to its container;
// DoAnchors places the control again after the container changed size.

#include "support/Anchor.h"

namespace tess {

class Control;
class Form;

class AnchorObject {
public:
    //! A control whose container is the form itself.
    AnchorObject(tess::Control& control, const tess::Form& container);
    //! A control inside another control (a frame, a picture box).
    AnchorObject(tess::Control& control, const tess::Control& container);

    tess::Control& Control() const { return *control_; }
    Anchor& X() { return x_; }
    Anchor& Y() { return y_; }
    Anchor& X2() { return x2_; }
    Anchor& Y2() { return y2_; }

    //! Records the control's present geometry for these behaviours. A ratio against a container
    //! of no size is a division by zero, reported as a fault; the anchors then stay as they were.
    void SetAnchors(AnchorTypes xType, AnchorTypes yType);
    //! Moves and sizes the control from the container's present size, in one step. A control
    //! that would get a negative size refuses the move and stays where it is; nothing is reported.
    void DoAnchors();

private:
    double ContainerWidth() const;
    double ContainerHeight() const;

    tess::Control* control_;
    const tess::Form* containerForm_ = nullptr;
    const tess::Control* containerControl_ = nullptr;
    Anchor x_, y_, x2_, y2_;
    // Half the size, kept beside the size for the centred behaviour.
    float halfWidth_ = 0.0F;
    float halfHeight_ = 0.0F;
};

} // namespace tess
