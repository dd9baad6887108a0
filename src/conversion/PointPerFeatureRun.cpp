#include "conversion/PointPerFeatureRun.h"

#include "platform/data/Row.h"
#include "platform/geometry/Geometry.h"
#include "platform/system/Fault.h"
#include "platform/system/Variant.h"

namespace tess {
namespace {

// Own fields of a point run, in output order.
constexpr std::size_t kIdField = 0;
constexpr std::size_t kXField = 1;
constexpr std::size_t kYField = 2;

} // namespace

std::vector<OwnField> PointPerFeatureRun::OwnFields(const IFeatureClass&) const {
    return {{"Uniq_ID", OwnField::Kind::Identifier},
            {"X_Coord", OwnField::Kind::Measure},
            {"Y_Coord", OwnField::Kind::Measure}};
}

void PointPerFeatureRun::WritePoint(const std::shared_ptr<IPoint>& point) {
    MarkLine();
    if (!point)
        throw Fault(fault::ObjectNotSet, "modCreateVertices", "Object variable or With block variable not set");
    IFeatureBuffer& buffer = Buffer();
    const std::int32_t number = NextOutputNumber();
    buffer.Shape(point);
    buffer.Value(OwnFieldIndex(kXField), Variant(point->X()));
    buffer.Value(OwnFieldIndex(kYField), Variant(point->Y()));
    buffer.Value(OwnFieldIndex(kIdField), Variant(number));
    CopyAttributes();
    InsertBuffer();
}

} // namespace tess
