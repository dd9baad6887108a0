#pragma once
// The anchored controls of one form, keyed by control. A dialog fills it in
// Form_Load (Item(control).SetAnchors(x, y) per control) and calls DoAnchors
// from Form_Resize.

#include <cstdint>
#include <memory>
#include <vector>

#include "support/AnchorObject.h"

namespace tess {

class Control;
class Form;

class AnchorObjectList {
public:
    //! The list of the form whose controls it anchors; the form is the default container.
    explicit AnchorObjectList(tess::Form& form) : form_(&form) {}

    tess::Form& Form() const { return *form_; }
    std::int32_t Count() const { return static_cast<std::int32_t>(items_.size()); }
    //! The entry of the control, created on first use with the form as its container.
    AnchorObject& Item(tess::Control& control);
    //! The entry of a control that sits inside another control; `container` applies when the
    //! entry is created.
    AnchorObject& Item(tess::Control& control, const tess::Control& container);
    //! Position of the control's entry from 0, or -1.
    std::int32_t IndexOf(const tess::Control& control) const;
    //! Drops the control's entry; an unknown control changes nothing.
    void Remove(const tess::Control& control);
    //! Records every entry's geometry again with its own anchor types.
    void SetAnchors();
    //! Places every entry for the present size of its container.
    void DoAnchors();

private:
    tess::Form* form_;
    std::vector<std::unique_ptr<AnchorObject>> items_;
};

} // namespace tess
