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
//! One setting of the shared tool state: read as Name(), written as Name(value). A member of its
//! own kind, so that declaring one leaves the access of the members after it as it was.
template <class T>
class ExtensionProperty {
public:
    const T& operator()() const { return value_; }
    void operator()(T value) { value_ = std::move(value); }

private:
    T value_{};
};

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

    ExtensionProperty<std::shared_ptr<IVariantArray>> frmLayerFieldsReturn;
    ExtensionProperty<std::shared_ptr<IVariantArray>> frmBoundaryWrapReturn;
    ExtensionProperty<double> CustomBoundaryWest;
    ExtensionProperty<double> CustomBoundaryNorth;
    ExtensionProperty<double> CustomBoundaryEast;
    ExtensionProperty<double> CustomBoundarySouth;
    ExtensionProperty<double> LongitudeShift;
    ExtensionProperty<std::int32_t> LongitudeWrapOption;
    ExtensionProperty<std::string> CurrentSpheroidName;
    ExtensionProperty<double> CurrentSpheroidMajorAxis;
    ExtensionProperty<double> CurrentSpheroidMinorAxis;
    ExtensionProperty<bool> CurrentSpheroidCanceled;
    ExtensionProperty<bool> CurrentSpheroidGeocentric;
    ExtensionProperty<std::string> FeatDatasetName;
    ExtensionProperty<bool> IsFeatureDataset;
    ExtensionProperty<std::string> DirectoryType;
    ExtensionProperty<std::shared_ptr<IVariantArray>> frmGeoCentricReturn;
    ExtensionProperty<double> BuildClusterTolerance;
    ExtensionProperty<bool> BuildShouldTransferLabels;
    ExtensionProperty<bool> BuildUseAllLabelPoints;
    ExtensionProperty<bool> BuildUseFirstLabelPoint;
    ExtensionProperty<std::int32_t> AnalysisRecordCount;
    ExtensionProperty<bool> ProgressDialogAutoClose;
    ExtensionProperty<bool> ProgressDialogSetExpanded;
    ExtensionProperty<std::shared_ptr<IVariantArray>> GeometryOptions;
    ExtensionProperty<std::string> NewShapefileLocation;
    ExtensionProperty<bool> DoAllRecords;
    ExtensionProperty<std::shared_ptr<IVariantArray>> SelectedFields;
    ExtensionProperty<std::shared_ptr<IFeatureClass>> SelectedFeatureClass;
    ExtensionProperty<std::string> ReportOfAnalysis;
    ExtensionProperty<std::shared_ptr<IFeatureLayer>> SelectedPointLayer;
    ExtensionProperty<std::shared_ptr<IFeatureLayer>> SelectedLayer;
    ExtensionProperty<std::string> DirectoryPath;
    ExtensionProperty<std::string> FieldName;
    ExtensionProperty<std::string> AttributeFieldName;
    ExtensionProperty<bool> ShouldContinue;

private:
    bool m_IsVersion92 = false;
    double m_StreamVersion = 0.0;
    std::shared_ptr<IExtension> m_OtherExtension; // kept from Startup to Shutdown, never read
};

//! The host version text from the registry, or "Unable to determine ArcGIS Version!".
std::string ReturnArcGISVersion();
//! "Software\" + company + "\" + product, and "\" + version when one is given.
std::string SubKey(const std::string& company, const std::string& product, const std::string& version);
//! Whether a version text such as "9.3.1" or "10.0" means 9.2 or later.
bool IsVersion92OrLater(const std::string& versionText);

//! The extension of this application, found as every caller finds it; nullptr when absent.
std::shared_ptr<clsExtension> FindTessExtension(IApplication& application);

} // namespace tess
