#include "platform/geometry/Path.h"

namespace tess {

std::shared_ptr<IClone> Path::Clone() const { return std::make_shared<Path>(*this); }

} // namespace tess
