#pragma once
// The extension object: created once per application, it carries every setting
// and hand-over between the commands, their dialogs and the workers, and keeps the
// user's persistent settings in the map document.

#include "platform/framework/HostContracts.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tess {

class IVariantArray;
class IFeatureClass;
class IFeatureLayer;

// One member per property; accessors are plain reads and writes, nothing is
// validated on the way in. Object properties hold shared references and are
// released by assigning nullptr.
#define TESS_EXT_PROPERTY(Type, Name)                                                                     \
public:                                                                                                   \
    const Type& Name() const { return m_##Name; }                                                         \
    void Name(Type value) { m_##Name = std::move(value); }                                                \
                                                                                                          \
private:                                                                                                  \
    Type m_##Name{};

class clsExtension final : public IExtension, public IPersistVariant {
public:
    static constexpr const char* ProgID = "Tessarine.clsExtension";
    //! The stream version this build writes.
    static constexpr double StreamVersion = 3.0;

    clsExtension();
    ~clsExtension() override;

    // IExtension
    std::string Name() const override { return "Tessarine Suite"; }
    void Startup(const std::shared_ptr<IApplication>& application) override;
    void Shutdown() override;

    // IPersistVariant
    std::string ID() const override { return ProgID; }
    void Load(IVariantStream& stream) override;
    void Save(IVariantStream& stream) override;

    //! True when the host is 9.2 or later; set by Startup.
    bool IsVersion92() const { return m_IsVersion92; }
    //! The stream version read by the last Load; nothing looks at it.
    double LoadedStreamVersion() const { return m_StreamVersion; }

    TESS_EXT_PROPERTY(std::shared_ptr<IVariantArray>, frmLayerFieldsReturn)
    TESS_EXT_PROPERTY(std::shared_ptr<IVariantArray>, frmBoundaryWrapReturn)
    TESS_EXT_PROPERTY(double, CustomBoundaryWest)
    TESS_EXT_PROPERTY(double, CustomBoundaryNorth)
    TESS_EXT_PROPERTY(double, CustomBoundaryEast)
    TESS_EXT_PROPERTY(double, CustomBoundarySouth)
    TESS_EXT_PROPERTY(double, LongitudeShift)
    TESS_EXT_PROPERTY(std::int32_t, LongitudeWrapOption)
    TESS_EXT_PROPERTY(std::string, CurrentSpheroidName)
    TESS_EXT_PROPERTY(double, CurrentSpheroidMajorAxis)
    TESS_EXT_PROPERTY(double, CurrentSpheroidMinorAxis)
    TESS_EXT_PROPERTY(bool, CurrentSpheroidCanceled)
    TESS_EXT_PROPERTY(bool, CurrentSpheroidGeocentric)
    TESS_EXT_PROPERTY(std::string, FeatDatasetName)
    TESS_EXT_PROPERTY(bool, IsFeatureDataset)
    TESS_EXT_PROPERTY(std::string, DirectoryType)
    TESS_EXT_PROPERTY(std::shared_ptr<IVariantArray>, frmGeoCentricReturn)
    TESS_EXT_PROPERTY(double, BuildClusterTolerance)
    TESS_EXT_PROPERTY(bool, BuildShouldTransferLabels)
    TESS_EXT_PROPERTY(bool, BuildUseAllLabelPoints)
    TESS_EXT_PROPERTY(bool, BuildUseFirstLabelPoint)
    TESS_EXT_PROPERTY(std::int32_t, AnalysisRecordCount)
    TESS_EXT_PROPERTY(bool, ProgressDialogAutoClose)
    TESS_EXT_PROPERTY(bool, ProgressDialogSetExpanded)
    TESS_EXT_PROPERTY(std::shared_ptr<IVariantArray>, GeometryOptions)
    TESS_EXT_PROPERTY(std::string, NewShapefileLocation)
    TESS_EXT_PROPERTY(bool, DoAllRecords)
    TESS_EXT_PROPERTY(std::shared_ptr<IVariantArray>, SelectedFields)
    TESS_EXT_PROPERTY(std::shared_ptr<IFeatureClass>, SelectedFeatureClass)
    TESS_EXT_PROPERTY(std::string, ReportOfAnalysis)
    TESS_EXT_PROPERTY(std::shared_ptr<IFeatureLayer>, SelectedPointLayer)
    TESS_EXT_PROPERTY(std::shared_ptr<IFeatureLayer>, SelectedLayer)
    TESS_EXT_PROPERTY(std::string, DirectoryPath)
    TESS_EXT_PROPERTY(std::string, FieldName)
    TESS_EXT_PROPERTY(std::string, AttributeFieldName)
    TESS_EXT_PROPERTY(bool, ShouldContinue)

private:
    bool m_IsVersion92 = false;
    double m_StreamVersion = 0.0;
    std::shared_ptr<IExtension> m_OtherExtension; // kept from Startup to Shutdown, never read
};

#undef TESS_EXT_PROPERTY

//! The host version text from the registry, or "Unable to determine ArcGIS Version!".
std::string ReturnArcGISVersion();
//! "Software\" + company + "\" + product, and "\" + version when one is given.
std::string SubKey(const std::string& company, const std::string& product, const std::string& version);
//! Whether a version text such as "9.3.1" or "10.0" means 9.2 or later.
bool IsVersion92OrLater(const std::string& versionText);

//! The extension of this application, found as every caller finds it; nullptr when absent.
std::shared_ptr<clsExtension> FindTessExtension(IApplication& application);

} // namespace tess
