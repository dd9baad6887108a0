#pragma once
// The geometry calculator's run: checks that the layer's own table may be
// rewritten, makes the target fields, walks every record (or the selected
// ones) with an update cursor, writes the chosen measures into each row and
// answers the report (RTF). Empty shapes get -9999 in the measures' fields.
//
// Rows are written through the update cursor one by one; the data layer saves
// them when the cursor is let go, also after a stop or a fault, so that the
// table keeps what was written. A killed process leaves every row old or new.

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "platform/geometry/GeometryTypes.h"
#include "support/HostTime.h"

namespace tess {

class IApplication;
class IFeature;
class IGeometry;
class IPoint;
class IPointCollection;
class IPolygon;
class IPolyline;
class IVariantArray;
class Variant;

//! Field name (any case) to its index in the layer's class, built by the run.
class FieldIndexes {
public:
    bool Exists(const std::string& name) const;
    void Add(const std::string& name, std::int32_t index);
    //! The index of the name; an InvalidCall Fault for a name that is not a key.
    std::int32_t Item(const std::string& name) const;
    std::size_t Count() const { return indexes_.size(); }

private:
    std::map<std::string, std::int32_t> indexes_; // by lower-case name
};

//! The run of the command clsConvertGeometry over its dialog's options (see MeasureCatalogue.h
//! for the layout). The two flags are passed true and false by the command and change nothing.
std::string CalcGeometry(const std::shared_ptr<IVariantArray>& Options,
                         const std::shared_ptr<IApplication>& Application, bool reserved1 = true,
                         bool reserved2 = false, const Clock& clock = SystemClock());

// The record loops, one per shape kind. Each answers its problem report (empty shapes, a stop),
// empty when there is nothing to report, and the number of records it was to do. A fault ends
// the loop: it is reported under the routine's name and the rows written so far stay.
std::string CalcGeometryPoint(const std::shared_ptr<IVariantArray>& Options,
                              const std::shared_ptr<IApplication>& Application, const FieldIndexes& indexes,
                              std::int32_t& recordCount, bool showProgress, const Clock& clock = SystemClock());
std::string CalcGeometryMultipoint(const std::shared_ptr<IVariantArray>& Options,
                                   const std::shared_ptr<IApplication>& Application, const FieldIndexes& indexes,
                                   std::int32_t& recordCount, bool showProgress, const Clock& clock = SystemClock());
std::string CalcGeometryPolyline(const std::shared_ptr<IVariantArray>& Options,
                                 const std::shared_ptr<IApplication>& Application, const FieldIndexes& indexes,
                                 std::int32_t& recordCount, bool showProgress, const Clock& clock = SystemClock());
std::string CalcGeometryPolygon(const std::shared_ptr<IVariantArray>& Options,
                                const std::shared_ptr<IApplication>& Application, const FieldIndexes& indexes,
                                std::int32_t& recordCount, bool showProgress, const Clock& clock = SystemClock());

//! Writes -9999 (a 16-bit integer) into the fields of each option that the catalogue marks for
//! an empty shape; options above 8 are skipped. Stores nothing. A refused write is reported and
//! ends the walk for this record.
void WriteNullValues(const std::shared_ptr<IVariantArray>& OptionList, esriGeometryType ShapeKind,
                     std::int32_t SpatialKind, IFeature& Feature, const FieldIndexes& indexes);

//! True when rows of the class may be written outside an edit session and it is not versioned.
bool CanEditWOEditSession(const std::shared_ptr<class IFeatureClass>& featureClass);

//! The geodesy the measures call. The run goes through this table so that the work done for a
//! record can be counted by tests; it holds the geodesy module's own routines.
struct CalculatorGeodesy {
    double (*SphericalPolygonArea2)(IPolygon&, bool, double&, double&, double, double);
    std::shared_ptr<IPoint> (*SpheroidalPolylineMidpoint2)(const IPolyline&, double&, bool, double&, double,
                                                           double);
    double (*DistanceVincentyPoints2)(const IPoint&, const IPoint&, double&, double&, double, double);
    double (*SpheroidalPolylineLength2)(const IPolyline&, double, double);
    std::shared_ptr<IPoint> (*MultipointCentroidSpheroid)(const IPointCollection&, double, double, double);
    std::shared_ptr<IGeometry> (*FeaturePlanetOCentricToPlanetOGraphic)(const IGeometry&, double&, double&, double);
    std::shared_ptr<IGeometry> (*FeaturePlanetOGraphicToPlanetOCentric)(const IGeometry&, double&, double&, double);
};
CalculatorGeodesy& CalcGeodesy();
//! The table as built, for putting it back.
CalculatorGeodesy DefaultCalcGeodesy();

} // namespace tess
