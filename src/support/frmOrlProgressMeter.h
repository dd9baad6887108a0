#pragma once
// The progress window of the geometry calculator and the wrap and planetary
// tools. Stop asks the worker to stop; once a worker has renamed the button at
// the end of its run, the same button closes the window.

#include "support/ProgressForm.h"

namespace tess {

class frmOrlProgressMeter final : public ProgressForm {
public:
    explicit frmOrlProgressMeter(Clock clock = SystemClock());

protected:
    void cmdStop_Click() override;
};

} // namespace tess
