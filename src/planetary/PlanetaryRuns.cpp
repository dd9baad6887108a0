#include "planetary/PlanetaryRuns.h"

#include <functional>

#include "frame/ErrorHandling.h"
#include "frame/clsExtension.h"
#include "planetary/PlanetaryArguments.h"
#include "planetary/PlanetaryLatitude.h"
#include "planetary/WrapToBoundary.h"
#include "platform/carto/FeatureLayer.h"
#include "platform/carto/Layers.h"
#include "platform/carto/Map.h"
#include "platform/data/Cursor.h"
#include "platform/data/DataNotes.h"
#include "platform/data/Dataset.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"
#include "platform/framework/Application.h"
#include "platform/framework/Document.h"
#include "platform/framework/StatusBar.h"
#include "platform/geometry/Geometry.h"
#include "platform/srs/SpatialReference.h"
#include "platform/system/Arrays.h"
#include "platform/system/DateTime.h"
#include "platform/system/Fault.h"
#include "platform/system/Variant.h"
#include "platform/ui/UIServices.h"
#include "spheroids/frmSpheroidOptions.h" // SpheroidAxisText
#include "support/DataNotesReport.h"
#include "support/Format.h"
#include "support/GeneralHelpers.h"
#include "support/ModelessFrame.h"
#include "support/MyGeneralOperations.h"
#include "support/Progress.h"
#include "support/ReportTemplates.h"
#include "support/frmOrlProgressMeter.h"

namespace tess {

namespace geo = MyGeometricOperations;

namespace {

constexpr const char* kSource = "MyGeometricOperations";
constexpr std::int64_t kUpdateSeconds = 1;  // the display changes at most once a second
constexpr double kTimingFontSize = 8.0;     // points, of the report's timing block
constexpr int kChecked = 1;
constexpr const char* kStampFormat = "ttttt,  ddddd";
constexpr const char* kClockFormat = "ttttt";
constexpr const char* kLogRule = "-------------------------------------------";
constexpr const char* kTaskText = "Converting Features...";
constexpr const char* kWorkingText = "Performing Calculations...";
constexpr const char* kMeterCaption = " Current Status:";
constexpr const char* kPartialMark = "  [Partial]";

// The standard ranges of the wrap options, degrees.
constexpr double kRange180West = -180.0;
constexpr double kRange180East = 180.0;
constexpr double kRange360West = 0.0;
constexpr double kRange360East = 360.0;
constexpr double kSouthPole = -90.0;
constexpr double kNorthPole = 90.0;

std::string CrLf() { return std::string(kReportLineBreak); }

[[noreturn]] void ObjectNotSet() {
    throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
}

std::string DoubledBackslashes(const std::string& text) { return Replace(text, "\\", "\\\\"); }

std::string TimeStampLine(DateValue now) { return "          [time stamp " + Format(now, kStampFormat) + "]"; }

std::string Line(const std::string& text) { return text + R"(\par)" + CrLf(); }

std::string WrapOptionText(std::int32_t option, const char* otherwise) {
    if (option == wrap_option::Range180)
        return "Wrap to Range -180 to 180 Degrees";
    if (option == wrap_option::Range360)
        return "Wrap to Range 0 to 360 Degrees";
    return otherwise;
}

//! The box of a standard wrap option; false for any other option.
bool StandardBox(std::int32_t option, double& west, double& east, double& south, double& north) {
    if (option != wrap_option::Range180 && option != wrap_option::Range360)
        return false;
    west = option == wrap_option::Range180 ? kRange180West : kRange360West;
    east = option == wrap_option::Range180 ? kRange180East : kRange360East;
    south = kSouthPole;
    north = kNorthPole;
    return true;
}

std::string ReportHead(const std::string& title) {
    return std::string(kReportHeader) + CrLf() +
           R"({\*\generator Msftedit 5.41.15.1507;}\viewkind4\uc1\pard\qc\b\f0\fs16 )" + Line(title) +
           Line(R"(\pard ---------------------------------------------)") + Line(R"(Input Parameters:\b0)");
}

std::string SectionHead(const std::string& name) {
    return Line(R"(\b ---------------------------------------------)") + Line(name + R"(\b0)");
}

std::string OutputSection() {
    return SectionHead("Output:") + Line("  ** Feature Class:  zzzFilename") + Line("  ** Workspace:  zzzFileWorkspace") +
           Line("  ** zzzNumRecs") + Line(R"(\b ---------------------------------------------\b0)");
}

std::string FailureText() {
    return std::string(kReportHeader) + CrLf() +
           R"({\*\generator Msftedit 5.41.15.1507;}\viewkind4\uc1\pard\qc\b\f0\fs16 )" +
           Line("'CreateGeneralFeatureClass' Function failed unexpectedly...") + "}";
}

//! What a run does to one non-empty shape; null or empty answers are the run's to judge.
using ShapeStep = std::function<std::shared_ptr<IGeometry>(const std::shared_ptr<IGeometry>& shape,
                                                           std::string& problems, std::int32_t oid)>;

struct RunSetup {
    std::string reportTemplate;              //!< head and parameter sections, zzzFClass for the layer
    std::shared_ptr<IFeatureLayer> layer;
    std::shared_ptr<IVariantArray> output;   //!< output_description
    ShapeStep step;
};

class PlanetaryRun {
public:
    PlanetaryRun(const std::shared_ptr<IApplication>& application, const std::shared_ptr<IMxDocument>& document,
                 const std::shared_ptr<clsExtension>& extension, bool showProgress, const Clock& clock)
        : application_(application), document_(document), extension_(extension), showProgress_(showProgress),
          clock_(clock ? clock : SystemClock()) {}

    std::string Execute(RunSetup& setup) {
        ClearDataNotes();
        const DateValue start = clock_();
        if (!setup.layer || !setup.output || !document_)
            ObjectNotSet();
        auto input = setup.layer->FeatureClass();
        if (!input)
            ObjectNotSet();
        const std::int32_t count = input->FeatureCount(nullptr);

        std::shared_ptr<IStatusBar> statusBar = application_ ? application_->StatusBar() : nullptr;
        const std::string prefix = "Converting Features on " + setup.layer->Name();
        if (statusBar) {
            statusBar->ShowProgressBar(prefix, 1, count, 1, true);
            statusBar->ProgressBar()->Position(1);
        }
        std::shared_ptr<frmOrlProgressMeter> meter;
        if (showProgress_)
            meter = OpenMeter(start, count);

        const IVariantArray& out = *setup.output;
        std::string directory = out.Element(output_description::Directory).ToString();
        std::string name = out.Element(output_description::Name).ToString();
        const std::int32_t kind = static_cast<std::int32_t>(out.Element(output_description::Kind).ToDouble());
        auto fields = out.Element(output_description::Fields).As<IVariantArray>();
        auto fieldMap = out.Element(output_description::FieldMap).As<IVariantArray>();
        bool isFeatureDataset = out.Element(output_description::IsFeatureDataset).ToBool();
        std::string datasetName = out.Element(output_description::DatasetName).ToString();

        esriGeometryType shapeType = input->ShapeType();
        std::shared_ptr<ISpatialReference> reference;
        std::shared_ptr<IEnvelope> extent;
        if (auto geoDataset = std::dynamic_pointer_cast<IGeoDataset>(input)) {
            reference = geoDataset->SpatialReference();
            extent = geoDataset->Extent();
        }
        auto output = CreateGeneralFeatureClass(shapeType, reference, directory, name, kind, fields,
                                                "Save Feature Class As:", isFeatureDataset, datasetName, false,
                                                extent, count);
        if (!output) {
            if (statusBar)
                statusBar->HideProgressBar();
            if (meter)
                meter->Frame().Visible(false);
            UI().MessageBox("No Feature Class Created:\r\nBailing out...", MsgBoxButtons::OK, MsgBoxIcon::None, "");
            return FailureText();
        }

        // Input index, output index, per mapped field.
        std::vector<std::pair<std::int32_t, std::int32_t>> transfer;
        if (fieldMap && fieldMap->Count() > 0) {
            auto rows = MakeFieldNameVarArray(input, output, fieldMap, true);
            for (std::int32_t i = 0; rows && i < rows->Count(); ++i) {
                auto row = rows->Element(i).As<IVariantArray>();
                if (!row)
                    continue;
                transfer.emplace_back(static_cast<std::int32_t>(row->Element(1).ToDouble()),
                                      static_cast<std::int32_t>(row->Element(3).ToDouble()));
            }
        }
        auto cursor = input->Search(nullptr, false);
        auto insert = output->Insert(true);
        auto buffer = output->CreateFeatureBuffer();

        std::string problems;
        std::int32_t counter = 0;
        bool stopped = false;
        DateValue lastUpdate = start;
        for (auto feature = cursor->NextFeature(); feature; feature = cursor->NextFeature()) {
            ++counter;
            const DateValue now = clock_();
            if (DateDiffSeconds(lastUpdate, now) >= kUpdateSeconds || counter == count) {
                lastUpdate = now;
                if (statusBar)
                    statusBar->Message(0, CalcTimeLeft(prefix, start, counter, count, clock_));
                if (meter) {
                    UI().DoEvents();
                    meter->AppendDetails(" --> Working on Feature " + std::to_string(counter) + " of " +
                                         std::to_string(count) + "..." + CrLf() + TimeStampLine(now) + CrLf());
                    meter->Est_Time_Left(counter, kTaskText, kWorkingText);
                    meter->Ctl("lblCurrentTime").Caption = Format(now, kClockFormat);
                    if (BailOutOfProgress(meter, application_)) {
                        stopped = true;
                        break;
                    }
                }
            }

            std::shared_ptr<IGeometry> shape = feature->ShapeCopy();
            if (!shape)
                ObjectNotSet();
            const std::int32_t oid = feature->OID();
            if (shape->IsEmpty()) {
                problems += Line("  --> Feature at OID #" + std::to_string(oid) + " is empty...");
                buffer->Shape(shape);
            } else {
                buffer->Shape(setup.step(shape, problems, oid));
            }
            for (const auto& [from, to] : transfer)
                buffer->Value(to, feature->Value(from));
            insert->InsertFeature(*buffer);
            if (statusBar)
                statusBar->StepProgressBar();
        }

        insert->Flush();
        // Letting go of the cursors puts the features on disk before the layer reads them.
        insert.reset();
        cursor.reset();
        buffer.reset();
        if (statusBar)
            statusBar->HideProgressBar();

        std::string report = setup.reportTemplate + OutputSection();
        if (!problems.empty())
            report += Line(R"(\b NOTE:  The following problems were found in the dataset:\b0)") + problems;
        if (stopped)
            report += Line("NOTE:  Exited Function Prematurely at Record " + std::to_string(counter));
        report += DataNotesRtf(DataNotes());
        report += Line(R"(\pard\qc TimeSpentString)") + "}";

        auto layer = std::make_shared<FeatureLayer>();
        layer->FeatureClass(output);
        layer->Name(output->AliasName() + (stopped ? kPartialMark : ""));
        layer->Visible(true);
        document_->AddLayer(layer);
        document_->UpdateContents();

        if (meter) {
            if (stopped)
                meter->Ctl("cmdStop").Caption = "Close";
            else
                CloseMeter(*meter);
        }

        std::string workspace = directory;
        if (auto dataset = std::dynamic_pointer_cast<IDataset>(output))
            if (auto ws = dataset->Workspace())
                workspace = ws->PathName();
        report = Replace(report, "zzzFClass", setup.layer->Name());
        report = Replace(report, "zzzFilename", DoubledBackslashes(name));
        report = Replace(report, kReportFileWorkspace, DoubledBackslashes(workspace));
        report = Replace(report, "zzzNumRecs", "Contains " + std::to_string(output->FeatureCount(nullptr)) + " Features");
        report = Replace(report, "TimeSpentString", ReturnTimeElapsedRTF(start, clock_(), kTimingFontSize));
        return report;
    }

private:
    std::shared_ptr<frmOrlProgressMeter> OpenMeter(DateValue start, std::int32_t count) {
        auto meter = std::make_shared<frmOrlProgressMeter>(clock_);
        meter->SetExpanded(extension_ ? extension_->ProgressDialogSetExpanded() : false);
        meter->SetAutoClose(extension_ ? extension_->ProgressDialogAutoClose() : false);
        meter->ShouldContinue(true);
        meter->ProgBeginTime(start);
        meter->ProgRecCount(count);
        const std::string stamp = Format(start, kStampFormat);
        meter->Ctl("lblCurrentTime").Caption = Format(start, kClockFormat);
        meter->Ctl("lblBeginTime").Caption = "Began Job: " + stamp;
        meter->Ctl("txtDetails").Text =
            std::string(kTaskText) + CrLf() + "Began Job: " + stamp + CrLf() + kLogRule + CrLf();
        meter->Ctl("chkClose").Value = meter->SetAutoClose() ? kChecked : 0;
        meter->ExpandProgress();
        meter->Frame().Caption(kMeterCaption);
        meter->Frame().Visible(true);
        return meter;
    }

    void CloseMeter(frmOrlProgressMeter& meter) {
        if (meter.Ctl("chkClose").Value == kChecked) {
            meter.Frame().Visible(false);
            return;
        }
        // The meter stays for the user to read and close.
        const DateValue now = clock_();
        meter.Ctl("cmdStop").Caption = "Close";
        meter.AppendDetails(" --> Calculations Complete..." + CrLf() + TimeStampLine(now) + CrLf() +
                            ReturnTimeElapsed(meter.ProgBeginTime(), now));
    }

    std::shared_ptr<IApplication> application_;
    std::shared_ptr<IMxDocument> document_;
    std::shared_ptr<clsExtension> extension_;
    bool showProgress_;
    Clock clock_;
};

std::shared_ptr<IMxDocument> DocumentOf(const std::shared_ptr<IMxDocument>& document,
                                        const std::shared_ptr<IApplication>& application) {
    if (document)
        return document;
    return application ? std::dynamic_pointer_cast<IMxDocument>(application->Document()) : nullptr;
}

using FeatureConversion = std::shared_ptr<IGeometry> (*)(const IGeometry&, double&, double&, double);

std::string LatitudeRun(const char* procedure, const char* conversionType, FeatureConversion convert,
                        const std::shared_ptr<IApplication>& Application, const std::shared_ptr<IMxDocument>& Document,
                        const std::shared_ptr<clsExtension>& Extension, const std::shared_ptr<IVariantArray>& Arguments,
                        bool ShowProgress, const Clock& clock) {
    return Trapped(procedure, std::string(), [&] {
        if (!Arguments)
            ObjectNotSet();
        const IVariantArray& args = *Arguments;
        RunSetup setup;
        setup.layer = args.Element(geocentric_argument::Layer).As<IFeatureLayer>();
        setup.output = args.Element(geocentric_argument::Output).As<IVariantArray>();
        const std::string spheroidName = args.Element(geocentric_argument::SpheroidName).ToString();
        double semiMajor = args.Element(geocentric_argument::SemiMajor).ToDouble();
        double semiMinor = args.Element(geocentric_argument::SemiMinor).ToDouble();
        const double shift = args.Element(geocentric_argument::Shift).ToDouble();
        const auto option = static_cast<std::int32_t>(args.Element(geocentric_argument::WrapOption).ToDouble());

        setup.reportTemplate =
            ReportHead("OCentric to OGraphic Conversion Complete:") +
            Line(std::string("  ** Conversion Type: ") + conversionType) + Line("  ** Input Feature Layer: zzzFClass") +
            SectionHead("Spheroid Parameters:") + Line("  ** Spheroid Name:  " + spheroidName) +
            Line("  ** Spheroid Semi-Major (Equatorial) Radius:  " + SpheroidAxisText(semiMajor) + " meters") +
            Line("  ** Spheroid Semi-Minor (Polar) Radius:  " + SpheroidAxisText(semiMinor) + " meters") +
            Line("  ** Longitudinal Shift:  " + SpheroidAxisText(shift) + " decimal degrees") +
            Line("  ** Wrap Option:  " + WrapOptionText(option, "No Wrap Option"));

        double west = 0, east = 0, south = 0, north = 0;
        const bool wrap = StandardBox(option, west, east, south, north);
        // The axes are the caller's variables for the whole loop: 0 asks once for the data's own.
        setup.step = [&, wrap](const std::shared_ptr<IGeometry>& shape, std::string&,
                               std::int32_t) -> std::shared_ptr<IGeometry> {
            auto converted = convert(*shape, semiMajor, semiMinor, shift);
            // The wrap comes last, so that the latitudes it tiles are -90 to 90.
            if (wrap && converted)
                converted = geo::WrapToBoundary(*converted, west, east, south, north, nullptr);
            return converted;
        };
        PlanetaryRun run(Application, DocumentOf(Document, Application), Extension, ShowProgress, clock);
        return run.Execute(setup);
    });
}

} // namespace

std::string WrapToBoundaries(const std::shared_ptr<IApplication>& Application,
                             const std::shared_ptr<IMxDocument>& Document,
                             const std::shared_ptr<clsExtension>& Extension,
                             const std::shared_ptr<IVariantArray>& Arguments, bool ShowProgress, const Clock& clock) {
    return Trapped("WrapToBoundaries ", std::string(), [&] {
        if (!Arguments)
            ObjectNotSet();
        const IVariantArray& args = *Arguments;
        RunSetup setup;
        setup.layer = args.Element(wrap_argument::Layer).As<IFeatureLayer>();
        setup.output = args.Element(wrap_argument::Output).As<IVariantArray>();
        const double west = args.Element(wrap_argument::West).ToDouble();
        const double north = args.Element(wrap_argument::North).ToDouble();
        const double east = args.Element(wrap_argument::East).ToDouble();
        const double south = args.Element(wrap_argument::South).ToDouble();
        const auto option = static_cast<std::int32_t>(args.Element(wrap_argument::Option).ToDouble());
        const double shift = args.Element(wrap_argument::Shift).ToDouble();
        auto number = [](double value) { return TrimZerosAndDecimals(value, false); };

        // Only the last four values carry their unit.
        setup.reportTemplate =
            ReportHead("Wrap to Boundary Conversion Complete:") + Line("  ** Conversion Type: Wrap to Boundary") +
            Line("  ** Input Feature Layer: zzzFClass") + SectionHead("Boundary Parameters:") +
            Line("  ** Option:  " + WrapOptionText(option, "Custom Wrap Boundaries")) +
            Line("  ** Western Boundary:  " + number(west)) +
            Line("  ** Northern Boundary:  " + number(north) + " decimal degrees") +
            Line("  ** Eastern Boundary:  " + number(east) + " decimal degrees") +
            Line("  ** Southern Boundary:  " + number(south) + " decimal degrees") +
            Line("  ** Longitudinal Shift:  " + number(shift) + " decimal degrees");

        setup.step = [&](const std::shared_ptr<IGeometry>& shape, std::string& problems,
                         std::int32_t oid) -> std::shared_ptr<IGeometry> {
            std::shared_ptr<IGeometry> current = shape;
            if (shift != 0.0)
                current = geo::FeatureLongitudeShift(*shape, shift);
            auto wrapped = current ? geo::WrapToBoundary(*current, west, east, south, north, nullptr) : nullptr;
            if (!wrapped) {
                // The shape as it stands goes out, after the shift if that worked.
                problems += Line("  --> Failed to wrap feature at OID #" + std::to_string(oid) +
                                 ".  Wrap function apparently crashed...");
                return current ? current : shape;
            }
            if (wrapped->IsEmpty())
                problems += Line("  --> Wrapped Feature at OID #" + std::to_string(oid) + " is empty...");
            return wrapped;
        };
        PlanetaryRun run(Application, DocumentOf(Document, Application), Extension, ShowProgress, clock);
        return run.Execute(setup);
    });
}

std::string CalcPlanetoCentricToPlanetoGraphic(const std::shared_ptr<IApplication>& Application,
                                               const std::shared_ptr<IMxDocument>& Document,
                                               const std::shared_ptr<clsExtension>& Extension,
                                               const std::shared_ptr<IVariantArray>& Arguments, bool ShowProgress,
                                               const Clock& clock) {
    return LatitudeRun("CalcPlanetoCentricToPlanetoGraphic ", "OCentric to OGraphic",
                       &geo::FeaturePlanetOCentricToPlanetOGraphic, Application, Document, Extension, Arguments,
                       ShowProgress, clock);
}

std::string CalcPlanetoGraphicToPlanetoCentric(const std::shared_ptr<IApplication>& Application,
                                               const std::shared_ptr<IMxDocument>& Document,
                                               const std::shared_ptr<clsExtension>& Extension,
                                               const std::shared_ptr<IVariantArray>& Arguments, bool ShowProgress,
                                               const Clock& clock) {
    return LatitudeRun("CalcPlanetoGraphicToPlanetoCentric ", "OGraphic to OCentric",
                       &geo::FeaturePlanetOGraphicToPlanetOCentric, Application, Document, Extension, Arguments,
                       ShowProgress, clock);
}

} // namespace tess
