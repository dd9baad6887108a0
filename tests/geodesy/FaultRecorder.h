#pragma once
// Installs the scripted UI for one test so that fault reports can be read back.

#include "platform/ui/ScriptedUI.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace tess::testing {

class FaultRecorder {
public:
    FaultRecorder() : ui_(std::make_shared<ScriptedUI>()), previous_(SetUI(ui_)) {}
    ~FaultRecorder() { SetUI(previous_); }
    FaultRecorder(const FaultRecorder&) = delete;
    FaultRecorder& operator=(const FaultRecorder&) = delete;

    std::size_t Count() const { return ui_->Errors().size(); }
    std::string Last() const { return ui_->Errors().empty() ? std::string() : ui_->Errors().back(); }
    ScriptedUI& UI() { return *ui_; }
    //! True when the last report names the procedure (with its trailing blank) as the top line.
    bool LastNames(const std::string& procedure) const {
        return Last().find("\r\n\r\n\t" + procedure) != std::string::npos;
    }

private:
    std::shared_ptr<ScriptedUI> ui_;
    std::shared_ptr<IUIServices> previous_;
};

} // namespace tess::testing
