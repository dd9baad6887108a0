#pragma once
// The dialog behind "Graphic Elements to Shapes": it makes an empty feature
// class of a chosen geometry, or turns the graphic elements drawn on the focus
// map into a new feature class, with geodesic lengths, spherical areas and the
// elements' names, and adds it to the map as a layer drawn like the graphics.
// The run behind OK lives in frmGraphicsShapefileRun.cpp.

#include <cstdint>
#include <memory>
#include <string>

#include "platform/ui/Form.h"

namespace tess {

class Collection;
class IApplication;
class IFeatureBuffer;
class IFeatureClass;
class IFeatureCursor;
class IFillSymbol;
class IGeometry;
class ILineSymbol;
class IMarkerSymbol;
class IMxDocument;
class ISpatialReference;
class IStringArray;
class IVariantArray;
class clsExtension;

//! The graphics of one set (all, or the selected ones), read by FillGraphicsArrays. The shape
//! lists hold copies of the elements' shapes; each name list runs in step with its shape list.
struct GraphicsHarvest {
    std::shared_ptr<IVariantArray> Points;
    std::shared_ptr<IVariantArray> Polylines;
    std::shared_ptr<IVariantArray> Polygons;
    std::shared_ptr<IStringArray> PointNames;
    std::shared_ptr<IStringArray> PolylineNames;
    std::shared_ptr<IStringArray> PolygonNames;
    //! True when at least one element of the list has a name.
    bool PointsNamed = false;
    bool PolylinesNamed = false;
    bool PolygonsNamed = false;
    //! The symbol of the first element of each shape; null when there is none.
    std::shared_ptr<IMarkerSymbol> PointSymbol;
    std::shared_ptr<ILineSymbol> LineSymbol;
    std::shared_ptr<IFillSymbol> FillSymbol;
    //! The five lines of the conversion list for this set.
    std::shared_ptr<IStringArray> ListLines;

    //! Fresh, empty lists.
    void Clear();
};

class frmGraphicsShapefile final : public Form {
public:
    frmGraphicsShapefile();
    ~frmGraphicsShapefile() override;

    //! Keeps the application and its document, finds the extension and sets its ShouldContinue false.
    void ArcApplication(const std::shared_ptr<IApplication>& application);
    //! The manual that the Manual button opens.
    void ManualPath(const std::string& path) { manualPath_ = path; }

    //! Reads the graphic elements of the active view into the lists of all and of the selected
    //! graphics (frame elements, text and shapes other than points, polylines and polygons stay out).
    void FillGraphicsArrays();
    //! Fills lbxGraphics with the lines of the selected set when chkSelected is on, else of all.
    void FillGraphicsListBox();

    const GraphicsHarvest& AllGraphics() const { return all_; }
    const GraphicsHarvest& SelectedGraphics() const { return selected_; }
    //! The reference chosen for the output; null while none is.
    const std::shared_ptr<ISpatialReference>& OutputSpatialReference() const { return spatialReference_; }
    // The output as the form keeps it.
    const std::string& OutputDirectory() const { return directory_; }
    const std::string& OutputName() const { return name_; }
    //! 1 shapefile, 2 file geodatabase, 4 personal geodatabase, 8 GeoPackage.
    std::int32_t OutputKind() const { return kind_; }
    bool IsFeatureDataset() const { return isFeatureDataset_; }
    const std::string& FeatDatasetName() const { return datasetName_; }

protected:
    void Form_Load() override;
    void Form_Unload() override;

private:
    // Events.
    void chkSelected_Click();
    void optNew_Click();
    void optConvert_Click();
    void optShape_Click(const char* option);
    void lbxGraphics_Click();
    void cmdSpRef_Click();
    void txtOutput_Change();
    void cmdGetWorkspace_Click();
    void cmdOK_Click();
    void cmdCancel_Click();
    void cmdHelp_Click();

    void CheckEnable();
    void FindExtension();
    void SetDefaultOutput();
    void ShowSpatialReference();
    void Harvest(GraphicsHarvest& target, bool selectedOnly);

    // The run behind OK (frmGraphicsShapefileRun.cpp).
    struct RunState;
    void RunEmpty(RunState& run);
    //! False when the user went back to the dialog (an empty source answered with OK).
    bool RunConversion(RunState& run);
    bool ConfirmSources(RunState& run, std::int32_t option, bool selected);
    void ConvertList(RunState& run, const std::shared_ptr<IVariantArray>& shapes,
                     const std::shared_ptr<IStringArray>& names, bool named);
    void FinishRun(RunState& run);

    std::shared_ptr<IApplication> application_;
    std::shared_ptr<IMxDocument> document_;
    std::shared_ptr<clsExtension> extension_;
    GraphicsHarvest all_;
    GraphicsHarvest selected_;
    // Feature classes rather than tables; nothing here makes tables.
    bool makeFeatureClass_ = true;
    std::shared_ptr<ISpatialReference> spatialReference_;
    std::string directory_;
    std::string name_;
    std::int32_t kind_ = 1;
    bool isFeatureDataset_ = false;
    std::string datasetName_;
    std::string manualPath_;
};

//! What cmdNewShapefile does: creates the dialog, gives it the application, shows it modally.
void ShowGraphicsShapefileDialog(const std::shared_ptr<IApplication>& application, const std::string& manualPath);

} // namespace tess
