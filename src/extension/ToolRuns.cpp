#include "extension/ToolRuns.h"

namespace tess {

ToolRuns BuiltInRuns() {
    ToolRuns runs;
    // Tools join the table here as their layers land, one assignment each, e.g.
    //   runs.ConvertToVertices = &ConvertToVertices;
    // Until then the commands report that the tool is not available yet.
    return runs;
}

ToolRuns& Runs() {
    static ToolRuns runs = BuiltInRuns();
    return runs;
}

} // namespace tess
