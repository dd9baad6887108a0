#include "platform/srs/Spheroid.h"

#include "platform/system/Fault.h"

namespace tess {

Spheroid::Spheroid(std::string name, double semiMajor, double semiMinor, std::int32_t code)
    : name_(std::move(name)), semiMajor_(semiMajor), semiMinor_(semiMinor), code_(code) {
    if (!(semiMinor > 0.0 && semiMajor >= semiMinor))
        throw ReferenceFault(fault::InvalidCall, "tess.Spheroid",
                    "Invalid procedure call or argument: axes of spheroid \"" + name_ + "\"");
}

bool Spheroid::IsEqual(const IClone& other) const {
    const auto* s = dynamic_cast<const ISpheroid*>(&other);
    return s && s->SemiMajorAxis() == semiMajor_ && s->SemiMinorAxis() == semiMinor_;
}

} // namespace tess
