#include "platform/data/QueryFilter.h"

namespace tess {

void QueryFilter::AddField(const std::string& name) {
    if (subFields_.empty() || subFields_ == "*")
        subFields_ = name;
    else
        subFields_ += "," + name;
}

} // namespace tess
