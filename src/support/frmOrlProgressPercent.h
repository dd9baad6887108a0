#pragma once
// The progress window of the conversion tools. Stop only asks the worker to stop.

#include "support/ProgressForm.h"

namespace tess {

class frmOrlProgressPercent final : public ProgressForm {
public:
    explicit frmOrlProgressPercent(Clock clock = SystemClock());

protected:
    void cmdStop_Click() override;
};

} // namespace tess
