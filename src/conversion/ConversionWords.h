#pragma once
// The words of the eight conversion runs: what each shows on the status bar
// and in its progress window, the prompt of its output name, and the words of
// its report.

#include <string_view>

namespace tess {

struct ConversionWords {
    std::string_view statusLeadIn;      //!< the status bar's text ahead of the layer name
    std::string_view actionText;        //!< opens the progress log
    std::string_view loopActionText;    //!< repeated by the progress window during the loop
    std::string_view skippedHeading;    //!< heads the list of features with empty shapes
    std::string_view namePrompt;        //!< title of the browse dialog when the output needs a name
    std::string_view titleWord;         //!< "<title> Successful:", "!!!  <title> Failed  !!!"
    std::string_view allRecordsLabel;   //!< "... (n = " ahead of the count, all records
    std::string_view selectedLabel;     //!< the same for a selection
    std::string_view countNoun;         //!< behind the output's record count
};

extern const ConversionWords kVerticesWords;
extern const ConversionWords kLabelPointsWords;
extern const ConversionWords kCentroidsWords;
extern const ConversionWords kSphericalCentroidsWords;
extern const ConversionWords kPolylinesToPolygonsWords;
extern const ConversionWords kPolygonsToPolylinesWords;
extern const ConversionWords kSplitMultipartWords;
extern const ConversionWords kJoinFeaturesWords;

} // namespace tess
