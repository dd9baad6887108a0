#pragma once
// One edge value of a control's anchoring: how the start or the size of a
// control follows its container along one axis when the container resizes.

#include <cstdint>

namespace tess {

//! Behaviour of one axis on a resize. The start is the left or top edge, the end the right or
//! bottom edge.
enum AnchorTypes : std::int32_t {
    enumNone = 0,      //!< start and size follow the container in proportion
    enumStart = 1,     //!< start stays, size follows in proportion
    enumStartSize = 2, //!< start and size stay
    enumStartEnd = 3,  //!< start stays, the end keeps its distance to the container's end (stretch)
    enumSize = 4,      //!< size stays, the centre follows in proportion
    enumSizeEnd = 5,   //!< size stays, the end keeps its distance to the container's end
    enumEnd = 6,       //!< the end keeps its distance, the start follows in proportion
};

class Anchor {
public:
    //! Bounds given at creation: the widest range of a 32-bit integer less one at the bottom.
    static constexpr std::int32_t kDefaultMinValue = -2147483647;
    static constexpr std::int32_t kDefaultMaxValue = 2147483647;

    AnchorTypes AnchorType() const { return type_; }
    void AnchorType(AnchorTypes type) { type_ = type; }
    //! Lower bound of the start or size this anchor yields, in the form's units.
    std::int32_t MinValue() const { return min_; }
    void MinValue(std::int32_t value) { min_ = value; }
    //! Upper bound of the start or size this anchor yields.
    std::int32_t MaxValue() const { return max_; }
    void MaxValue(std::int32_t value) { max_ = value; }
    //! The stored offset (form units) or ratio to the container (no unit).
    float Value() const { return value_; }
    void Value(float value) { value_ = value; }

    //! value limited to [MinValue, MaxValue].
    double Clamp(double value) const;

private:
    AnchorTypes type_ = enumNone;
    std::int32_t min_ = kDefaultMinValue;
    std::int32_t max_ = kDefaultMaxValue;
    float value_ = 0.0F;
};

} // namespace tess
