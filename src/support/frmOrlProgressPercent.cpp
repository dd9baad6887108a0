#include "support/frmOrlProgressPercent.h"

namespace tess {

frmOrlProgressPercent::frmOrlProgressPercent(Clock clock)
    : ProgressForm("frmOrlProgressPercent", std::move(clock)) {
    Load();
}

void frmOrlProgressPercent::cmdStop_Click() { ShouldContinue(false); }

} // namespace tess
