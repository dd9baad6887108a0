#pragma once
// Feature construction: new features of a class made from the topology of
// other shapes. Here, polygons from the regions that line work bounds.

#include <memory>

namespace tess {

class IEnumGeometry;
class IEnvelope;
class IFeatureClass;
class ISelectionSet;
class IStepProgressor;

class IFeatureConstruction {
public:
    virtual ~IFeatureConstruction() = default;
    //! Adds to the polygon class one feature per region that the shapes of the enumeration bound
    //! together (polylines by their paths, polygons by their rings), after the cluster tolerance
    //! has brought them together (see ClusterMethod::SnapVertices). The new features' other
    //! fields stay unset; the class's existing features are not touched and take no part.
    //! Adds nothing when the shapes bound no region.
    //! \param progress not stepped: the construction is one pass of the engine. May be null.
    //! \param processingBounds shapes wholly outside it take no part; null for all.
    //! \param changedShapesOnly must be false: there is no edit history to restrict it to.
    //! \param selection must be null: existing features never take part.
    //! \param clusterTolerance in the class's coordinate units, 0 or more.
    //! Faults: a target that is not a polygon class, a shape that bounds nothing by its kind (a
    //! point), a negative tolerance, changedShapesOnly or a selection.
    virtual void ConstructPolygonsFromGeometries(const std::shared_ptr<IStepProgressor>& progress,
                                                 IFeatureClass& target,
                                                 const std::shared_ptr<IEnvelope>& processingBounds,
                                                 bool changedShapesOnly, IEnumGeometry& geometries,
                                                 const std::shared_ptr<ISelectionSet>& selection,
                                                 double clusterTolerance) = 0;
};

class FeatureConstruction final : public IFeatureConstruction {
public:
    void ConstructPolygonsFromGeometries(const std::shared_ptr<IStepProgressor>& progress, IFeatureClass& target,
                                         const std::shared_ptr<IEnvelope>& processingBounds, bool changedShapesOnly,
                                         IEnumGeometry& geometries, const std::shared_ptr<ISelectionSet>& selection,
                                         double clusterTolerance) override;
};

} // namespace tess
