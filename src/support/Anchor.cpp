#include "support/Anchor.h"

#include <algorithm>

namespace tess {

double Anchor::Clamp(double value) const {
    return std::clamp(value, static_cast<double>(min_), static_cast<double>(max_));
}

} // namespace tess
