#pragma once
// Polyline: a multi-path line. Parts are live Path objects; Part(i) reaches
// them without a cast.

#include "platform/geometry/detail/Operators.h"
#include "platform/geometry/detail/PolycurveBase.h"

namespace tess {

class Polyline final : public detail::PolycurveBase<IPolyline, Path>,
                       public detail::TopologicalOperatorImpl,
                       public detail::RelationalOperatorImpl {
public:
    Polyline() = default;
    Polyline(const Polyline& other) : PolycurveBase(other) {}

    esriGeometryType GeometryType() const override { return esriGeometryPolyline; }
    std::shared_ptr<IClone> Clone() const override;

    // IPolyline
    void SimplifyNetwork() override;

    // ITopologicalOperator: repeated vertices and zero-length segments removed, parts without
    // length removed; no planarizing.
    bool IsKnownSimple() const override { return KnownSimpleState(); }
    bool IsSimple() const override;
    void Simplify() override;

protected:
    IGeometry& OperatorSelf() override { return *this; }
    const IGeometry& OperatorSelf() const override { return *this; }
    void AssignResult(const IGeometry& result) override;
    const IGeometry& RelationalSelf() const override { return *this; }
};

} // namespace tess
