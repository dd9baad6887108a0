#include "support/frmOrlProgressMeter.h"

namespace tess {

frmOrlProgressMeter::frmOrlProgressMeter(Clock clock) : ProgressForm("frmOrlProgressMeter", std::move(clock)) {
    Load();
}

void frmOrlProgressMeter::cmdStop_Click() {
    if (Ctl("cmdStop").Caption == "Stop")
        ShouldContinue(false);
    else
        Unload();
}

} // namespace tess
