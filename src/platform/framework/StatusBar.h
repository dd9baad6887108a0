#pragma once
// The host's status bar: message panels, a step progress bar and a progress
// animation. Nothing is drawn here; every call is recorded, so that a host
// can show it and tests can see it.

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace tess {

class IStepProgressor {
public:
    virtual ~IStepProgressor() = default;
    virtual std::int32_t MinRange() const = 0;
    virtual void MinRange(std::int32_t value) = 0;
    virtual std::int32_t MaxRange() const = 0;
    virtual void MaxRange(std::int32_t value) = 0;
    virtual std::int32_t StepValue() const = 0;
    virtual void StepValue(std::int32_t value) = 0;
    virtual std::int32_t Position() const = 0;
    virtual void Position(std::int32_t value) = 0;
    //! Adds StepValue to Position.
    virtual void Step() = 0;
    virtual void Show() = 0;
    virtual void Hide() = 0;
    virtual std::string Message() const = 0;
    virtual void Message(const std::string& text) = 0;
};

class IAnimationProgressor {
public:
    virtual ~IAnimationProgressor() = default;
    virtual void Show() = 0;
    virtual void Hide() = 0;
    //! Frames from startFrame to endFrame (-1: the last); repeat -1 loops until Stop.
    virtual void Play(std::int32_t startFrame, std::int32_t endFrame, std::int32_t repeat) = 0;
    virtual void Stop() = 0;
};

class IStatusBar {
public:
    virtual ~IStatusBar() = default;
    //! The text of a panel (0 is the main one); empty for a panel never written.
    virtual std::string Message(std::int32_t index) const = 0;
    virtual void Message(std::int32_t index, const std::string& text) = 0;
    virtual std::shared_ptr<IAnimationProgressor> ProgressAnimation() const = 0;
    virtual std::shared_ptr<IStepProgressor> ProgressBar() const = 0;
    //! Shows the bar with a text, a range and a step; onePanel puts the text and bar in one panel.
    virtual void ShowProgressBar(const std::string& message, std::int32_t min, std::int32_t max,
                                 std::int32_t step, bool onePanel) = 0;
    virtual void StepProgressBar() = 0;
    virtual void HideProgressBar() = 0;
};

//! One recorded call.
struct StatusBarEvent {
    enum class Kind {
        Message,          //!< panel, text
        ShowProgressBar,  //!< text, min, max, step, onePanel
        StepProgressBar,  //!< count: consecutive steps are folded into one event
        HideProgressBar,
        Position,         //!< value
        Range,            //!< min, max
        StepValue,        //!< value
        ProgressorStep,   //!< count, as StepProgressBar
        ProgressorShow,
        ProgressorHide,
        ProgressorMessage, //!< text
        AnimationShow,
        AnimationPlay,    //!< min = start frame, max = end frame, value = repeat
        AnimationStop,
        AnimationHide,
    };
    Kind kind = Kind::Message;
    std::int32_t panel = 0;
    std::string text;
    std::int32_t value = 0;
    std::int32_t min = 0;
    std::int32_t max = 0;
    std::int32_t step = 0;
    bool onePanel = false;
    std::int64_t count = 1;
};

//! The status bar of the application. The record keeps the latest kMaxEvents events.
class StatusBar final : public IStatusBar {
public:
    static constexpr std::size_t kMaxEvents = 10000;

    StatusBar();
    ~StatusBar() override;

    std::string Message(std::int32_t index) const override;
    void Message(std::int32_t index, const std::string& text) override;
    std::shared_ptr<IAnimationProgressor> ProgressAnimation() const override;
    std::shared_ptr<IStepProgressor> ProgressBar() const override;
    void ShowProgressBar(const std::string& message, std::int32_t min, std::int32_t max, std::int32_t step,
                         bool onePanel) override;
    void StepProgressBar() override;
    void HideProgressBar() override;

    //! What is shown now.
    bool ProgressBarVisible() const { return barVisible_; }
    bool AnimationPlaying() const { return animationPlaying_; }
    bool AnimationVisible() const { return animationVisible_; }

    const std::deque<StatusBarEvent>& Events() const { return events_; }
    //! Events dropped from the front of the record since it was last cleared.
    std::size_t DroppedEvents() const { return dropped_; }
    void ClearEvents();
    //! Called after each recorded event (a folded step calls it again); empty to remove.
    void Listener(std::function<void(const StatusBarEvent&)> listener) { listener_ = std::move(listener); }

private:
    class Progressor;
    class Animation;
    friend class Progressor;
    friend class Animation;
    void Record(StatusBarEvent event);

    std::map<std::int32_t, std::string> panels_;
    std::shared_ptr<Progressor> progressor_;
    std::shared_ptr<Animation> animation_;
    bool barVisible_ = false;
    bool animationPlaying_ = false;
    bool animationVisible_ = false;
    std::deque<StatusBarEvent> events_;
    std::size_t dropped_ = 0;
    std::function<void(const StatusBarEvent&)> listener_;
};

} // namespace tess
