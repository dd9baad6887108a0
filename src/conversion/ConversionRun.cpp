#include "conversion/ConversionRun.h"

#include <algorithm>

#include "conversion/ConversionWords.h"
#include "frame/ErrorHandling.h"
#include "frame/clsExtension.h"
#include "platform/carto/ActiveView.h"
#include "platform/carto/FeatureLayer.h"
#include "platform/carto/Map.h"
#include "platform/data/Cursor.h"
#include "platform/data/DataNotes.h"
#include "platform/data/Dataset.h"
#include "platform/data/Field.h"
#include "platform/data/Row.h"
#include "platform/data/SelectionSet.h"
#include "platform/data/Table.h"
#include "platform/framework/Application.h"
#include "platform/framework/Document.h"
#include "platform/framework/StatusBar.h"
#include "platform/geometry/Geometry.h"
#include "platform/srs/SpatialReference.h"
#include "platform/system/Arrays.h"
#include "platform/system/Clone.h"
#include "platform/system/DateTime.h"
#include "platform/system/Fault.h"
#include "platform/ui/UIServices.h"
#include "support/DataNotesReport.h"
#include "support/Format.h"
#include "support/ModelessFrame.h"
#include "support/MyGeneralOperations.h"
#include "support/Progress.h"
#include "support/ReportTemplates.h"
#include "support/aml_func_mod.h"
#include "support/frmOrlProgressPercent.h"
#include "platform/system/Text.h"

namespace tess {
namespace {

constexpr const char* kSource = "modCreateVertices";
constexpr std::string_view kCrLf = kReportLineBreak;

// Own fields: a 32-bit identifier, and doubles of 16 digits with 8 behind the point.
constexpr std::int32_t kIdentifierLength = 8;
constexpr std::int32_t kIdentifierPrecision = 0;
constexpr std::int32_t kMeasurePrecision = 16;
constexpr std::int32_t kMeasureScale = 8;

constexpr std::int64_t kUpdateSeconds = 1;   // the display changes at most once a second
constexpr double kTimingFontSize = 8.0;      // points, of the report's timing block
constexpr int kChecked = 1;

constexpr std::string_view kConversionReportHeader =
    R"({\rtf1\ansi\ansicpg1252\deff0\deflang1033{\fonttbl{\f0\fswiss\fcharset0 Arial;}})";
constexpr std::string_view kGeneratorLead = R"({\*\generator Msftedit 5.41.15.1507;}\viewkind4\uc1\pard\qc\b\f0\fs16 )";
constexpr std::string_view kRule = R"(\b ---------------------------------------------\b0\par)";
constexpr std::string_view kNoFields = R"(       <-- No Fields Selected -->\par)";
constexpr const char* kProgressCaption = " Current Status:";
constexpr const char* kLogRule = "-------------------------------------------";
constexpr const char* kStampFormat = "ttttt,  ddddd";
constexpr const char* kClockFormat = "ttttt";
constexpr const char* kWorkingText = "Performing Calculations...";

std::string TimeStampLine(DateValue now) {
    return "          [time stamp " + Format(now, kStampFormat) + "]";
}

std::shared_ptr<IField> MakeOwnField(const std::string& name, OwnField::Kind kind) {
    auto field = std::make_shared<Field>();
    if (kind == OwnField::Kind::Identifier) {
        field->Length(kIdentifierLength);
        field->Name(name);
        field->Type(esriFieldTypeInteger);
        field->Precision(kIdentifierPrecision);
    } else {
        field->Name(name);
        field->Type(esriFieldTypeDouble);
        field->Precision(kMeasurePrecision);
        field->Scale(kMeasureScale);
    }
    return field;
}

} // namespace

ConversionRun::ConversionRun(const ConversionWords& words, std::string procedureName)
    : words_(words), procedureName_(std::move(procedureName)) {}

ConversionRun::~ConversionRun() = default;

std::string ConversionRun::Execute(const ConversionRequest& request) {
    request_ = request;
    clock_ = request.clock ? request.clock : SystemClock();
    // The engine's warnings of this run are the ones its report lists.
    ClearDataNotes();
    try {
        MarkLine();
        OpenInput();
        MarkLine();
        start_ = clock_();
        lastUpdate_ = start_;
        StartStatusBar();
        if (request_.showProgress && UsesProgressWindow())
            StartProgressWindow(start_);

        MarkLine();
        directory_ = ReturnDir(request_.outputPath);
        name_ = ReturnFilename(request_.outputPath);
        if (auto geo = std::dynamic_pointer_cast<IGeoDataset>(input_))
            inputReference_ = geo->SpatialReference();
        // A refusal leaves the status bar and any progress window as they are, for the user to see
        // where the run stood.
        if (std::optional<std::string> refusal = Prepare(inputReference_))
            return *refusal;
        BuildOutputFields();
        MarkLine();
        CreateOutput();
        PrepareTransfer();

        MarkLine();
        if (!RunFeatureLoop()) {
            FlushOutput();
            ReleaseCursors();
            if (statusBar_)
                statusBar_->HideProgressBar();
            return StopReport();
        }
        MarkLine();
        FinishFeatures();
        MarkLine();
        Finish();
        EndProgressWindow();
        MarkLine();
        if (auto view = document_->ActiveView())
            view->PartialRefresh(esriViewGeography, Variant::Nothing(), nullptr);
        return SuccessReport();
    } catch (const std::exception& caught) {
        const auto* f = dynamic_cast<const Fault*>(&caught);
        const std::int32_t number = f ? f->Number() : fault::InvalidCall;
        const std::string description = f ? f->Description() : std::string(caught.what());
        const std::string source = f ? f->Source() : std::string(kSource);
        const std::string report = FailureReport(number, description);
        try {
            // What was written stays; the output is released so that it reaches the disk.
            ReleaseCursors();
            if (statusBar_)
                statusBar_->HideProgressBar();
        } catch (const std::exception&) {
        }
        HandleError(true, ProcedureLine(procedureName_ + " ", kSource, line_), number, source, description);
        return report;
    }
}

void ConversionRun::OpenInput() {
    if (!request_.layer || !request_.application || !request_.extension)
        throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
    document_ = std::dynamic_pointer_cast<IMxDocument>(request_.application->Document());
    input_ = request_.layer->FeatureClass();
    if (!document_ || !input_)
        throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
    inputShapeType_ = input_->ShapeType();
    if (request_.doAllRecords) {
        inputCursor_ = input_->Search(nullptr, true);
        count_ = input_->FeatureCount(nullptr);
    } else {
        auto owner = std::dynamic_pointer_cast<IFeatureSelection>(request_.layer);
        std::shared_ptr<ISelectionSet> selection = owner ? owner->SelectionSet() : nullptr;
        if (!selection)
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
        inputCursor_ = std::dynamic_pointer_cast<IFeatureCursor>(selection->Search(nullptr, true));
        if (!inputCursor_)
            throw Fault(fault::TypeMismatch, kSource, "Type mismatch");
        count_ = selection->Count();
    }
}

void ConversionRun::StartStatusBar() {
    statusBar_ = request_.application->StatusBar();
    statusText_ = std::string(words_.statusLeadIn) + request_.layer->Name();
    if (!statusBar_)
        return;
    statusBar_->ProgressBar()->Position(1);
    statusBar_->ShowProgressBar(statusText_, 1, count_, 1, true);
}

void ConversionRun::StartProgressWindow(DateValue now) {
    progress_ = std::make_shared<frmOrlProgressPercent>(clock_);
    frmOrlProgressPercent& form = *progress_;
    form.SetExpanded(true);
    form.SetAutoClose(request_.extension->ProgressDialogAutoClose());
    form.ShouldContinue(true);
    form.ProgBeginTime(now);
    form.ProgRecCount(count_);
    const std::string stamp = Format(now, kStampFormat);
    form.Ctl("lblCurrentTime").Caption = Format(now, kClockFormat);
    form.Ctl("lblBeginTime").Caption = "Began Job: " + stamp;
    form.Ctl("txtDetails").Text = "Began Job: " + std::string(kCrLf) + std::string(words_.actionText) + stamp +
                                  std::string(kCrLf) + kLogRule + std::string(kCrLf);
    form.Ctl("chkClose").Value = form.SetAutoClose() ? kChecked : 0;
    form.ExpandProgress();
    for (const auto& control : form.Controls())
        if (control->Kind() == ControlKind::Frame || control->Kind() == ControlKind::CommandButton)
            control->Visible = true;
    form.Frame().Caption(kProgressCaption);
    form.Frame().Visible(true);
}

void ConversionRun::BuildOutputFields() {
    ownFields_ = OwnFields(*input_);
    ownNames_.clear();
    for (const OwnField& own : ownFields_) {
        // Against the input class only: a selected field of the same name is renamed later.
        std::string candidate = own.baseName;
        for (int number = 1; input_->FindField(candidate) != -1;)
            candidate = own.baseName + "_" + std::to_string(++number);
        ownNames_.push_back(candidate);
    }

    outputFields_ = std::make_shared<VarArray>();
    for (std::size_t i = 0; i < ownFields_.size(); ++i)
        outputFields_->Add(MakeOwnField(ownNames_[i], ownFields_[i].kind));

    nameMap_.clear();
    if (!request_.selectedFields)
        return;
    for (std::int32_t i = 0; i < request_.selectedFields->Count(); ++i) {
        auto field = request_.selectedFields->Element(i).As<IField>();
        if (!field)
            throw Fault(fault::TypeMismatch, kSource, "Type mismatch");
        auto clone = CloneAs<IFieldEdit>(*field);
        if (!clone)
            throw Fault(fault::TypeMismatch, kSource, "Type mismatch");
        // Every kind of output gets names that a dBASE table would take.
        const std::string outputName = ReturnDBASEFieldName(field->Name(), Variant(outputFields_));
        clone->Name(outputName);
        nameMap_.emplace_back(field->Name(), outputName);
        // A name that changed on the way is said, so that nobody looks for it in vain.
        if (outputName != field->Name())
            AddDataNote(request_.outputPath, "the field '" + field->Name() + "' is written as '" + outputName +
                                                 "' (a dBASE name: at most 10 letters a-z, digits or '_')");
        outputFields_->Add(std::shared_ptr<IField>(clone));
    }
}

void ConversionRun::CreateOutput() {
    clsExtension& extension = *request_.extension;
    const std::int32_t kind = OutputKindOfDirectoryType(extension.DirectoryType());
    bool isFeatureDataset = extension.IsFeatureDataset();
    std::string datasetName = extension.FeatDatasetName();
    std::shared_ptr<IEnvelope> extent;
    std::shared_ptr<ISpatialReference> reference = inputReference_;
    if (auto geo = std::dynamic_pointer_cast<IGeoDataset>(input_))
        extent = geo->Extent();
    OutputGeoreference(reference, extent);
    if (isFeatureDataset && kind != output_kind::Shapefile) {
        // The path names the dataset between the geodatabase and the class; the geodatabase is
        // the workspace to open.
        const std::string folder = StripTrailingSeparator(directory_);
        if (ReturnFilename(folder) == datasetName)
            directory_ = StripTrailingSeparator(ReturnDir(folder));
    }
    esriGeometryType shapeType = OutputShapeType(*input_);
    output_ = CreateGeneralFeatureClass(shapeType, reference, directory_, name_, kind, outputFields_,
                                        std::string(words_.namePrompt), isFeatureDataset, datasetName, false, extent);
    if (!output_)
        throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
    buffer_ = output_->CreateFeatureBuffer();
    insertCursor_ = output_->Insert(true);
}

void ConversionRun::PrepareTransfer() {
    transferNames_.clear();
    inputIndexes_.clear();
    outputIndexes_.clear();
    fieldReport_.clear();
    std::int32_t ordinal = 0;
    for (const auto& [inputName, outputName] : nameMap_) {
        transferNames_.push_back(inputName);
        inputIndexes_.push_back(input_->FindField(inputName));
        outputIndexes_.push_back(output_->FindField(outputName));
        fieldReport_ +=
            "       " + std::to_string(++ordinal) + "] " + RtfText(inputName) + R"(\par)" + std::string(kCrLf);
    }
    if (nameMap_.empty())
        fieldReport_ = std::string(kNoFields) + std::string(kCrLf);
    values_.assign(transferNames_.size(), Variant::Null());

    ownIndexes_.clear();
    for (const std::string& name : ownNames_)
        ownIndexes_.push_back(output_->FindField(name));
}

bool ConversionRun::RunFeatureLoop() {
    inputCounter_ = 0;
    outputCounter_ = 0;
    const AttributeReading reading = ReadsAttributes();
    for (std::shared_ptr<IFeature> feature = inputCursor_->NextFeature(); feature;
         feature = inputCursor_->NextFeature()) {
        ++inputCounter_;
        const DateValue now = clock_();
        if (inputCounter_ == count_ || DateDiffSeconds(lastUpdate_, now) >= kUpdateSeconds) {
            bool stop = false;
            UpdateDisplay(now, stop);
            if (stop)
                return false;
        }
        if (statusBar_)
            statusBar_->StepProgressBar();

        MarkLine();
        if (reading == AttributeReading::BeforeEmptyTest ||
            (reading == AttributeReading::FirstFeature && inputCounter_ == 1))
            LoadAttributes(*feature);
        std::shared_ptr<IGeometry> shape = feature->Shape();
        if (!shape)
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
        if (shape->IsEmpty()) {
            skippedList_ += "  ** OID Value = " + std::to_string(feature->OID()) + R"(\par)" + std::string(kCrLf);
            skipped_ = true;
            continue;
        }
        if (reading == AttributeReading::WithShape)
            LoadAttributes(*feature);
        ProcessFeature(*feature, *shape);
    }
    return true;
}

void ConversionRun::UpdateDisplay(DateValue now, bool& stop) {
    MarkLine();
    if (FlushesWhileRunning())
        FlushOutput();
    if (statusBar_)
        statusBar_->Message(0, CalcTimeLeft(statusText_, start_, inputCounter_, count_, clock_));
    lastUpdate_ = now;
    if (!progress_)
        return;
    UI().DoEvents();
    const std::string line =
        "Working on Feature " + std::to_string(inputCounter_) + " of " + std::to_string(count_) + "...";
    progress_->AppendDetails(" --> " + line + std::string(kCrLf) + TimeStampLine(now) + std::string(kCrLf));
    progress_->Est_Time_Left(inputCounter_, std::string(words_.loopActionText), kWorkingText);
    progress_->Ctl("lblCurrentTime").Caption = Format(now, kClockFormat);
    stop = BailOutOfProgress(progress_, request_.application);
}

void ConversionRun::LoadAttributes(const IFeature& feature) {
    for (std::size_t k = 0; k < inputIndexes_.size(); ++k)
        values_[k] = feature.Value(inputIndexes_[k]);
}

void ConversionRun::CopyAttributes() {
    for (std::size_t k = 0; k < outputIndexes_.size(); ++k)
        buffer_->Value(outputIndexes_[k], values_[k]);
}

void ConversionRun::InsertBuffer() { insertCursor_->InsertFeature(*buffer_); }

void ConversionRun::FlushOutput() {
    if (insertCursor_)
        insertCursor_->Flush();
}

void ConversionRun::ReleaseCursors() {
    inputCursor_.reset();
    insertCursor_.reset();
    buffer_.reset();
}

void ConversionRun::Finish() {
    FlushOutput();
    // Releasing the insert cursor puts the new features on disk before anyone reads them.
    ReleaseCursors();
    auto layer = std::make_shared<FeatureLayer>();
    layer->FeatureClass(output_);
    layer->Name(name_);
    document_->FocusMap()->AddLayer(layer);
    document_->UpdateContents();
    if (statusBar_) {
        statusBar_->ProgressBar()->Position(1);
        statusBar_->HideProgressBar();
    }
}

void ConversionRun::EndProgressWindow() {
    if (!progress_)
        return;
    if (progress_->Ctl("chkClose").Value == kChecked) {
        progress_->Frame().Visible(false);
        progress_.reset();
        return;
    }
    // The window stays for the user to read; its frame keeps it alive until closed.
    const DateValue now = clock_();
    progress_->AppendDetails(" --> Calculations Complete..." + std::string(kCrLf) + TimeStampLine(now) +
                             std::string(kCrLf) + ReturnTimeElapsed(progress_->ProgBeginTime(), now));
    progress_.reset();
}

std::string ConversionRun::SkippedBlock() const {
    std::string block = std::string(words_.skippedHeading) + std::string(kCrLf) + "zzzRunningProblems" +
                        std::string(kCrLf) + std::string(kRule) + std::string(kCrLf);
    return Replace(block, kReportRunningProblems, skippedList_);
}

std::string ConversionRun::SuccessReport() {
    const std::string crlf(kCrLf);
    std::string report;
    report += std::string(kConversionReportHeader) + crlf;
    report += std::string(kGeneratorLead) + std::string(words_.titleWord) + R"( Successful:\par)" + crlf;
    report += R"(\pard ---------------------------------------------\par)" + crlf;
    report += R"(Input Parameters:\b0\par)" + crlf;
    report += std::string(kReportInputLayerLine) + crlf;
    report += std::string(kReportDoAllLine) + crlf;
    report += R"(  ** Fields to Include:\par)" + crlf;
    report += std::string(kReportFieldReport) + crlf;
    report += R"(\b ---------------------------------------------\par)" + crlf;
    report += R"(Output:\b0\par)" + crlf;
    report += std::string(kReportFilenameLine) + crlf;
    report += std::string(kReportSpRefLine) + crlf;
    report += std::string(kReportNumRecsLine) + crlf;
    report += std::string(kRule) + crlf;
    if (ReportsSkippedFeatures())
        report += std::string(kReportProbReport) + crlf;
    report += DataNotesRtf(DataNotes());
    report += R"(\pard\qc TimeSpentString\par)" + crlf;
    report += "}";

    // The vertex run keeps its list of skipped features but never shows it.
    const std::string problems = skipped_ ? SkippedBlock() : std::string();
    std::string reference = "Unknown";
    if (auto geo = std::dynamic_pointer_cast<IGeoDataset>(input_))
        if (auto sr = geo->SpatialReference())
            reference = sr->Name();
    std::string outputPath = request_.outputPath;
    if (auto dataset = std::dynamic_pointer_cast<IDataset>(output_))
        outputPath = dataset->FullName();
    const std::string doAll = std::string(request_.doAllRecords ? words_.allRecordsLabel : words_.selectedLabel) +
                              std::to_string(count_) + ")";

    report = Replace(report, kReportProbReport, problems);
    report = Replace(report, kReportFieldReport, fieldReport_);
    report = Replace(report, "zzzFClass", RtfText(request_.layer->Name()));
    report = Replace(report, "zzzSpRef", "Spatial Reference:  " + RtfText(reference));
    report = Replace(report, "zzzDoAll", doAll);
    report = Replace(report, "zzzFilename", RtfText(outputPath));
    report = Replace(report, "zzzNumRecs",
                     "Contains " + std::to_string(output_->FeatureCount(nullptr)) + std::string(words_.countNoun));
    report = Replace(report, "TimeSpentString", ReturnTimeElapsedRTF(start_, clock_(), kTimingFontSize));
    return report;
}

std::string ConversionRun::StopReport() const {
    const std::string crlf(kCrLf);
    std::string report = std::string(kConversionReportHeader) + crlf + std::string(kGeneratorLead) +
                         "Exited Function Prematurely at Record " + std::to_string(inputCounter_) + R"(\par)" + crlf +
                         "Partial output saved to " + RtfText(request_.outputPath) + R"(\par)" + crlf;
    if (skipped_)
        report += SkippedBlock();
    report += DataNotesRtf(DataNotes());
    report += "}";
    return report;
}

std::string ConversionRun::FailureReport(std::int32_t number, const std::string& description) const {
    const std::string crlf(kCrLf);
    return std::string(kConversionReportHeader) + crlf + std::string(kGeneratorLead) + "!!!  " + std::string(words_.titleWord) +
           R"( Failed  !!!\par)" + crlf + R"(\pard ---------------------------------------------\b0\par)" + crlf +
           "Module = " + RtfText(kSource) + R"(\par)" + crlf + "Function = " + RtfText(procedureName_) +
           R"(\par)" + crlf + "Line Number = " + std::to_string(line_) + R"(\par)" + crlf + "Error " +
           std::to_string(number) + ":  " + RtfText(description) + R"(\par)" + crlf +
           R"(----------------------------------------------------------\par)" + crlf + "Analyzing Record #" +
           std::to_string(inputCounter_) + R"(\par)" + crlf + DataNotesRtf(DataNotes()) + "}";
}

} // namespace tess
