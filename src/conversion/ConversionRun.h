#pragma once
// The run that every conversion shares: input cursor and count, status bar and
// progress window, the output's own fields and the carried-over ones, the
// output class, the feature loop with its once-a-second display and Stop, and
// the reports of success, stop and failure. A conversion derives from it and
// says what is its own: its words, its fields and output type, and the step
// that turns one input feature into output features.

#include <cstdint>
#include <memory>
#include <optional>
#include <source_location>
#include <string>
#include <vector>

#include "platform/geometry/GeometryTypes.h"
#include "platform/system/Variant.h" // DateValue
#include "support/HostTime.h"

namespace tess {

struct ConversionWords;
class IApplication;
class IEnvelope;
class IFeature;
class IFeatureBuffer;
class IFeatureClass;
class IFeatureCursor;
class IFeatureLayer;
class IGeometry;
class IMxDocument;
class ISpatialReference;
class IStatusBar;
class IVariantArray;
class clsExtension;
class frmOrlProgressPercent;

//! What a command hands its worker: the choices the layer-and-fields dialog left.
struct ConversionRequest {
    std::shared_ptr<IFeatureLayer> layer;
    //! IField objects of the layer's class to carry over, in order; may be null or empty.
    std::shared_ptr<IVariantArray> selectedFields;
    bool doAllRecords = true; //!< false: the layer's selection only
    std::string outputPath;   //!< folder or geodatabase (and feature dataset), then the class name
    std::shared_ptr<IApplication> application;
    std::shared_ptr<clsExtension> extension;
    bool showProgress = false; //!< the progress window, for large runs
    Clock clock;               //!< the present time; empty for the system's clock
};

//! A field that a conversion adds ahead of the carried-over ones.
struct OwnField {
    enum class Kind { Identifier, Measure };
    std::string baseName; //!< made unique against the input's fields: "Uniq_ID", then "Uniq_ID_2"...
    Kind kind = Kind::Measure;
};

class ConversionRun {
public:
    virtual ~ConversionRun();
    ConversionRun(const ConversionRun&) = delete;
    ConversionRun& operator=(const ConversionRun&) = delete;

    //! Carries out the run and answers its report (RTF): the success report, the short report of a
    //! stopped run, or the failure report after a fault (which is also shown as a fault report).
    std::string Execute(const ConversionRequest& request);

    //! Output features written so far.
    std::int32_t OutputCount() const { return outputCounter_; }

protected:
    //! procedureName names the worker in fault reports ("ConvertToVertices").
    ConversionRun(const ConversionWords& words, std::string procedureName);

    // What a conversion declares.
    //! Its own fields, identifier first. The input class is there for runs whose fields follow it.
    virtual std::vector<OwnField> OwnFields(const IFeatureClass& input) const = 0;
    virtual esriGeometryType OutputShapeType(const IFeatureClass& input) const = 0;
    //! True to flush the output as the run goes, false for once after the loop. A flush makes a
    //! shapefile rewrite its whole index, so a run that flushes as it goes does it at the
    //! once-a-second display update, not per feature: the cost stays linear in the features, and
    //! every feature inserted is saved when the run lets go of its cursor anyway.
    virtual bool FlushesWhileRunning() const { return false; }
    //! Whether the success report lists the features skipped for empty shapes.
    virtual bool ReportsSkippedFeatures() const { return true; }
    //! False for a run that never opens the progress window, whatever it is asked (and so cannot
    //! be stopped): the status bar alone shows how far it is.
    virtual bool UsesProgressWindow() const { return true; }

    //! When the carried-over values of the input are read.
    enum class AttributeReading {
        WithShape,       //!< for each feature whose shape is not empty, before its step
        BeforeEmptyTest, //!< for each feature, before its shape is tested
        FirstFeature,    //!< once, from the first feature, whatever its shape: every output takes those
    };
    virtual AttributeReading ReadsAttributes() const { return AttributeReading::WithShape; }

    //! Called once the input and its reference are at hand, before any field or output is made:
    //! the run fixes the values it needs from them. A report here ends the run at once, with
    //! nothing created, and is the run's answer.
    virtual std::optional<std::string> Prepare(const std::shared_ptr<ISpatialReference>& /*reference*/) {
        return std::nullopt;
    }
    //! The reference and extent that the output is created with; the input's unless changed here.
    virtual void OutputGeoreference(std::shared_ptr<ISpatialReference>& /*reference*/,
                                    std::shared_ptr<IEnvelope>& /*extent*/) const {}
    //! Writes the output features of one input feature whose shape is not empty.
    virtual void ProcessFeature(IFeature& feature, IGeometry& shape) = 0;
    //! After the last input feature (not after a stop): writes what the run gathered on the way.
    virtual void FinishFeatures() {}

    // What the steps read.
    //! The input class's shape type, read once before the first feature.
    esriGeometryType InputShapeType() const { return inputShapeType_; }
    //! The input's spatial reference: the one that the run's new shapes take. May be null.
    const std::shared_ptr<ISpatialReference>& InputReference() const { return inputReference_; }

    // What ProcessFeature writes through.
    //! The one output buffer, refilled for every output feature.
    IFeatureBuffer& Buffer() const { return *buffer_; }
    //! Index in the output class of own field i (in the order of OwnFields).
    std::int32_t OwnFieldIndex(std::size_t i) const { return ownIndexes_[i]; }
    //! Counts one more output feature and answers its number, from 1 across the run.
    std::int32_t NextOutputNumber() { return ++outputCounter_; }
    //! Puts the current input feature's carried-over values into the buffer (null stays null).
    void CopyAttributes();
    //! Stores the buffer as a new output feature.
    void InsertBuffer();
    //! Notes where the run is, for the line of a failure report.
    void MarkLine(std::source_location where = std::source_location::current()) {
        line_ = static_cast<std::int32_t>(where.line());
    }

private:
    void OpenInput();
    void StartStatusBar();
    void StartProgressWindow(DateValue now);
    void BuildOutputFields();
    void CreateOutput();
    void PrepareTransfer();
    bool RunFeatureLoop();           //!< false when the user stopped the run
    void UpdateDisplay(DateValue now, bool& stop);
    void LoadAttributes(const IFeature& feature);
    void Finish();
    void EndProgressWindow();
    void FlushOutput();
    void ReleaseCursors();
    std::string SkippedBlock() const;
    std::string SuccessReport();
    std::string StopReport() const;
    std::string FailureReport(std::int32_t number, const std::string& description) const;

    const ConversionWords& words_;
    std::string procedureName_;
    ConversionRequest request_;
    Clock clock_;

    std::shared_ptr<IMxDocument> document_;
    std::shared_ptr<IFeatureClass> input_;
    std::shared_ptr<IFeatureCursor> inputCursor_;
    std::shared_ptr<ISpatialReference> inputReference_;
    esriGeometryType inputShapeType_ = esriGeometryNull;
    std::int32_t count_ = 0;
    std::shared_ptr<IStatusBar> statusBar_;
    std::string statusText_;
    std::shared_ptr<frmOrlProgressPercent> progress_;
    DateValue start_{};
    DateValue lastUpdate_{};

    std::vector<OwnField> ownFields_;
    std::vector<std::string> ownNames_;
    std::shared_ptr<IVariantArray> outputFields_;
    std::vector<std::pair<std::string, std::string>> nameMap_; // input name, output name
    std::string directory_;
    std::string name_;
    std::shared_ptr<IFeatureClass> output_;
    std::shared_ptr<IFeatureBuffer> buffer_;
    std::shared_ptr<IFeatureCursor> insertCursor_;
    std::vector<std::int32_t> ownIndexes_;
    // Carried-over fields, in selection order: input index, output index, and the current
    // feature's values, read once per feature however many outputs it gives.
    std::vector<std::string> transferNames_;
    std::vector<std::int32_t> inputIndexes_;
    std::vector<std::int32_t> outputIndexes_;
    std::vector<Variant> values_;
    std::string fieldReport_;

    std::int32_t inputCounter_ = 0;
    std::int32_t outputCounter_ = 0;
    std::string skippedList_;
    bool skipped_ = false;
    std::int32_t line_ = 0;
};

} // namespace tess
