#pragma once
// The host's modeless frame: a non-modal window over the host that carries a
// form, with a caption and visibility. Progress windows live in one.
//
// A window on the screen keeps its form alive, as the host keeps a shown form
// loaded: a worker may let go of a progress form whose window the user is still
// reading. Give the frame a weak owner for that; it holds the owner strongly
// while visible, and lets go (later, never inside the call) once hidden.

#include <memory>
#include <string>

namespace tess {

class Form;

class ModelessFrame {
public:
    //! A hidden frame that carries `form`.
    explicit ModelessFrame(Form& form) : form_(&form) {}
    ~ModelessFrame();
    ModelessFrame(const ModelessFrame&) = delete;
    ModelessFrame& operator=(const ModelessFrame&) = delete;

    Form& Child() const { return *form_; }
    //! The window's caption; the carried form shows it as its own.
    const std::string& Caption() const;
    void Caption(const std::string& caption);
    //! Showing and hiding go to the host's UI services.
    bool Visible() const { return visible_; }
    void Visible(bool visible);
    //! The object that owns the form, held alive while the frame is visible.
    void KeepAlive(std::weak_ptr<void> owner) { owner_ = std::move(owner); }

private:
    Form* form_;
    bool visible_ = false;
    std::weak_ptr<void> owner_;
    std::shared_ptr<void> held_;
};

} // namespace tess
