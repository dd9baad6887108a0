#include "platform/ui/UIServices.h"

#include <iostream>

namespace tess {
namespace {

// Used until a host installs its own services: never blocks, never guesses Yes.
class ConsoleFallbackUI final : public IUIServices {
public:
    MsgBoxResult MessageBox(const std::string& text, MsgBoxButtons buttons, MsgBoxIcon,
                            const std::string& title) override {
        std::cerr << title << ' ' << text << '\n';
        switch (buttons) {
        case MsgBoxButtons::OK: return MsgBoxResult::OK;
        case MsgBoxButtons::OKCancel: return MsgBoxResult::Cancel;
        case MsgBoxButtons::YesNo: return MsgBoxResult::No;
        case MsgBoxButtons::YesNoCancel: return MsgBoxResult::Cancel;
        }
        return MsgBoxResult::Cancel;
    }
    void ShowErrorWindow(const std::string& text) override { std::cerr << text << '\n'; }
    void Beep() override {}
    void DoEvents() override {}
    bool OpenDocument(const std::string&) override { return false; }
};

std::shared_ptr<IUIServices>& Current() {
    static std::shared_ptr<IUIServices> current = std::make_shared<ConsoleFallbackUI>();
    return current;
}

} // namespace

IUIServices& UI() { return *Current(); }

std::shared_ptr<IUIServices> SetUI(std::shared_ptr<IUIServices> services) {
    auto previous = Current();
    Current() = services ? std::move(services) : std::make_shared<ConsoleFallbackUI>();
    return previous;
}

} // namespace tess
