#pragma once
// Shared pieces of the conversion tests: temporary folders and datasets made by
// code, shapes from coordinates, and an application with the extension running
// under a scripted UI.

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "DataTestSupport.h"
#include "conversion/ConversionRun.h"
#include "frame/clsExtension.h"
#include "platform/carto/FeatureLayer.h"
#include "platform/carto/Map.h"
#include "platform/data/Cursor.h"
#include "platform/data/Dataset.h"
#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/framework/Application.h"
#include "platform/framework/Document.h"
#include "platform/geometry/Multipoint.h"
#include "platform/geometry/Path.h"
#include "platform/geometry/Point.h"
#include "platform/geometry/Polygon.h"
#include "platform/geometry/Polyline.h"
#include "platform/geometry/Ring.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"
#include "platform/system/Arrays.h"
#include "platform/system/DateTime.h"
#include "support/HostTime.h"
#include "platform/ui/ScriptedUI.h"
#include "platform/ui/Form.h"

namespace tess::test {

inline std::shared_ptr<IFeatureWorkspace> ShapefileFolder(const std::string& path) {
    return std::dynamic_pointer_cast<IFeatureWorkspace>(ShapefileWorkspaceFactory().OpenFromFile(path, 0));
}

using Parts = Rings;

inline std::shared_ptr<IGeometry> MakeMultipoint(const std::vector<WKSPoint>& points) {
    auto multipoint = std::make_shared<Multipoint>();
    multipoint->AddWKSPoints(static_cast<std::int32_t>(points.size()), points.data());
    return multipoint;
}

//! Stores one feature with a shape and values by field name.
inline void AddFeature(IFeatureClass& featureClass, const std::shared_ptr<IGeometry>& shape,
                       const std::vector<std::pair<std::string, Variant>>& values = {}) {
    auto feature = featureClass.CreateFeature();
    feature->Shape(shape);
    for (const auto& [name, value] : values)
        feature->Value(featureClass.FindField(name), value);
    feature->Store();
}

//! Every vertex of a stored shape, in its own order.
inline std::vector<WKSPoint> VerticesOf(const IGeometry& shape) {
    const auto& points = dynamic_cast<const IPointCollection&>(shape);
    std::vector<WKSPoint> v(static_cast<std::size_t>(points.PointCount()));
    if (!v.empty())
        points.QueryWKSPoints(0, points.PointCount(), v.data());
    return v;
}

inline std::shared_ptr<ISpatialReference> Utm33N() {
    constexpr std::int32_t kUtm33N = 32633; // WGS 84 / UTM zone 33N
    return SpatialReferenceEnvironment().CreateProjectedCoordinateSystem(kUtm33N);
}

//! An application with the extension running, a scripted UI, and a temporary folder.
class HostTest : public ::testing::Test {
protected:
    void SetUp() override {
        previous_ = SetUI(ui_);
        app_ = Application::Create();
        app_->RegisterExtension(clsExtension::ProgID, "", [] { return std::make_shared<clsExtension>(); });
        app_->Startup();
        extension_ = FindTessExtension(*app_);
        ASSERT_TRUE(extension_);
    }
    void TearDown() override {
        app_->Shutdown();
        SetUI(previous_);
    }

    std::shared_ptr<IMxDocument> Document() const {
        return std::dynamic_pointer_cast<IMxDocument>(app_->Document());
    }
    std::shared_ptr<IMap> FocusMap() const { return Document()->FocusMap(); }

    //! A layer of the class, added to the focus map (on top).
    std::shared_ptr<FeatureLayer> AddLayer(const std::shared_ptr<IFeatureClass>& featureClass,
                                           const std::string& name) {
        auto layer = std::make_shared<FeatureLayer>();
        layer->FeatureClass(featureClass);
        layer->Name(name);
        FocusMap()->AddLayer(layer);
        return layer;
    }

    std::shared_ptr<ScriptedUI> ui_ = std::make_shared<ScriptedUI>();
    std::shared_ptr<Application> app_;
    std::shared_ptr<clsExtension> extension_;
    TempDir dir_;

private:
    std::shared_ptr<IUIServices> previous_;
};

//! A clock that moves one second on every reading, so that every record passes the
//! once-a-second test of the feature loop.
inline Clock SteppingClock() {
    auto now = std::make_shared<DateValue>(DateFromCalendar(CalendarTime{2024, 3, 5, 10, 0, 0.0}));
    return [now] {
        *now = DateAddSeconds(*now, 1);
        return *now;
    };
}

//! The scripted UI, plus the progress window as a person sees it: shown modeless, and Stop
//! pressed at a chosen turn of the event pump.
class ProgressUI final : public IUIServices {
public:
    explicit ProgressUI(std::shared_ptr<ScriptedUI> inner) : inner_(std::move(inner)) {}

    std::function<bool()> stopWhen; //!< pressed Stop at the first pump where this holds
    Form* window = nullptr;        //!< the last form shown modeless
    int pumps = 0;

    MsgBoxResult MessageBox(const std::string& t, MsgBoxButtons b, MsgBoxIcon i, const std::string& title) override {
        return inner_->MessageBox(t, b, i, title);
    }
    void ShowErrorWindow(const std::string& text) override { inner_->ShowErrorWindow(text); }
    void Beep() override { inner_->Beep(); }
    void DoEvents() override {
        ++pumps;
        if (window && stopWhen && stopWhen()) {
            window->Fire("cmdStop", FormEvent::Click);
            stopWhen = nullptr;
        }
    }
    bool OpenDocument(const std::string& path) override { return inner_->OpenDocument(path); }
    void ShowModal(Form& form) override { inner_->ShowModal(form); }
    void ShowModeless(Form& form) override {
        window = &form;
        inner_->ShowModeless(form);
    }
    void HideModeless(Form& form) override { inner_->HideModeless(form); }
    std::optional<BrowseResult> Browse(const BrowseRequest& request) override { return inner_->Browse(request); }
    std::shared_ptr<ISpatialReference> ChooseSpatialReference(const std::shared_ptr<ISpatialReference>& s) override {
        return inner_->ChooseSpatialReference(s);
    }
    void SetMousePointer(MousePointer pointer) override { inner_->SetMousePointer(pointer); }
    double ScreenWidth() const override { return inner_->ScreenWidth(); }
    double ScreenHeight() const override { return inner_->ScreenHeight(); }
    void CopyToClipboard(const std::string& r, const std::string& h, const std::string& t) override {
        inner_->CopyToClipboard(r, h, t);
    }
    bool PrintReport(const std::string& rtf, const std::string& title) override {
        return inner_->PrintReport(rtf, title);
    }

private:
    std::shared_ptr<ScriptedUI> inner_;
};

//! The common ground of the conversion runs: an input folder of shapefiles, an output folder, the
//! choices the dialog would leave, and a run of any worker.
class ConversionTest : public HostTest {
protected:
    using Worker = std::string (*)(const ConversionRequest&);

    void SetUp() override {
        HostTest::SetUp();
        std::filesystem::create_directories(dir_ / "in");
        std::filesystem::create_directories(dir_ / "out");
        input_ = ShapefileFolder(dir_ / "in");
    }

    std::shared_ptr<IVariantArray> SelectFields(const IFeatureClass& featureClass,
                                                const std::vector<std::string>& names) {
        auto fields = std::make_shared<VarArray>();
        for (const auto& name : names)
            fields->Add(featureClass.Fields()->Field(featureClass.FindField(name)));
        return fields;
    }

    //! What the dialog leaves for the worker about the kind of output.
    void OutputKind(const std::string& directoryType, bool inDataset = false, const std::string& dataset = "") {
        extension_->DirectoryType(directoryType);
        extension_->IsFeatureDataset(inDataset);
        extension_->FeatDatasetName(dataset);
    }

    std::string Run(Worker worker, const std::shared_ptr<IFeatureLayer>& layer,
                    const std::shared_ptr<IVariantArray>& fields, bool doAll, const std::string& outputPath,
                    bool showProgress = false, Clock clock = {}) {
        ConversionRequest request;
        request.layer = layer;
        request.selectedFields = fields;
        request.doAllRecords = doAll;
        request.outputPath = outputPath;
        request.application = app_;
        request.extension = extension_;
        request.showProgress = showProgress;
        request.clock = std::move(clock);
        return worker(request);
    }

    std::shared_ptr<IFeatureWorkspace> input_;
};

//! One kind of output, with a place for a class of it.
struct OutputPlace {
    const char* label;
    const char* directoryType; //!< as the dialog names the kind
    std::string folder;        //!< the workspace: a folder, a geodatabase, a package
    std::string Path(const std::string& name) const {
        return folder + "/" + (std::string(directoryType) == "Shapefile" ? name + ".shp" : name);
    }
    std::shared_ptr<IFeatureClass> Open(const std::string& name) const {
        auto ws = std::dynamic_pointer_cast<IFeatureWorkspace>(WorkspaceFactoryForPath(folder)->OpenFromFile(folder, 0));
        return ws ? ws->OpenFeatureClass(name) : nullptr;
    }
};

//! A shapefile folder, a file geodatabase and a GeoPackage in the test's folder, made empty.
inline std::vector<OutputPlace> MakeOutputPlaces(const TempDir& dir) {
    std::filesystem::create_directories(dir / "out");
    FileGDBWorkspaceFactory().Create(dir.Path(), "out.gdb");
    GeoPackageWorkspaceFactory().Create(dir.Path(), "out.gpkg");
    return {{"shapefile", "Shapefile", dir / "out"},
            {"file geodatabase", "File Geodatabase", dir / "out.gdb"},
            {"GeoPackage", "GeoPackage", dir / "out.gpkg"}};
}

//! The features of a class in storage order.
inline std::vector<std::shared_ptr<IFeature>> FeaturesOf(IFeatureClass& featureClass) {
    std::vector<std::shared_ptr<IFeature>> features;
    auto cursor = featureClass.Search(nullptr, false);
    for (auto f = cursor->NextFeature(); f; f = cursor->NextFeature())
        features.push_back(f);
    return features;
}

} // namespace tess::test
