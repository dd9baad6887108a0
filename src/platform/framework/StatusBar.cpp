#include "platform/framework/StatusBar.h"

namespace tess {

using Kind = StatusBarEvent::Kind;

namespace {
StatusBarEvent Event(Kind kind) {
    StatusBarEvent event;
    event.kind = kind;
    return event;
}
StatusBarEvent ValueEvent(Kind kind, std::int32_t value) {
    StatusBarEvent event = Event(kind);
    event.value = value;
    return event;
}
StatusBarEvent RangeEvent(Kind kind, std::int32_t min, std::int32_t max) {
    StatusBarEvent event = Event(kind);
    event.min = min;
    event.max = max;
    return event;
}
StatusBarEvent TextEvent(Kind kind, std::int32_t panel, const std::string& text) {
    StatusBarEvent event = Event(kind);
    event.panel = panel;
    event.text = text;
    return event;
}
} // namespace

//! The bar's progressor. It reports to its status bar while that lives; a progressor kept
//! beyond it goes on counting silently.
class StatusBar::Progressor final : public IStepProgressor {
public:
    explicit Progressor(StatusBar* owner) : owner_(owner) {}
    void Detach() { owner_ = nullptr; }

    std::int32_t MinRange() const override { return min_; }
    void MinRange(std::int32_t value) override {
        min_ = value;
        Report(RangeEvent(Kind::Range, min_, max_));
    }
    std::int32_t MaxRange() const override { return max_; }
    void MaxRange(std::int32_t value) override {
        max_ = value;
        Report(RangeEvent(Kind::Range, min_, max_));
    }
    std::int32_t StepValue() const override { return step_; }
    void StepValue(std::int32_t value) override {
        step_ = value;
        Report(ValueEvent(Kind::StepValue, value));
    }
    std::int32_t Position() const override { return position_; }
    void Position(std::int32_t value) override {
        position_ = value;
        Report(ValueEvent(Kind::Position, value));
    }
    void Step() override {
        Advance();
        Report(ValueEvent(Kind::ProgressorStep, position_));
    }
    void Show() override { Report(Event(Kind::ProgressorShow)); }
    void Hide() override { Report(Event(Kind::ProgressorHide)); }
    std::string Message() const override { return message_; }
    void Message(const std::string& text) override {
        message_ = text;
        Report(TextEvent(Kind::ProgressorMessage, 0, text));
    }

    void Setup(std::int32_t min, std::int32_t max, std::int32_t step, const std::string& message) {
        min_ = min;
        max_ = max;
        step_ = step;
        position_ = min;
        message_ = message;
    }
    //! The bar stops at its maximum, as a drawn bar does.
    void Advance() {
        const std::int64_t next = static_cast<std::int64_t>(position_) + step_;
        position_ = static_cast<std::int32_t>(next > max_ ? max_ : next);
    }

private:
    void Report(StatusBarEvent event) {
        if (owner_)
            owner_->Record(std::move(event));
    }

    StatusBar* owner_;
    std::int32_t min_ = 0;
    std::int32_t max_ = 100;
    std::int32_t step_ = 1;
    std::int32_t position_ = 0;
    std::string message_;
};

class StatusBar::Animation final : public IAnimationProgressor {
public:
    explicit Animation(StatusBar* owner) : owner_(owner) {}
    void Detach() { owner_ = nullptr; }

    void Show() override {
        if (!owner_)
            return;
        owner_->animationVisible_ = true;
        owner_->Record(Event(Kind::AnimationShow));
    }
    void Hide() override {
        if (!owner_)
            return;
        owner_->animationVisible_ = false;
        owner_->Record(Event(Kind::AnimationHide));
    }
    void Play(std::int32_t startFrame, std::int32_t endFrame, std::int32_t repeat) override {
        if (!owner_)
            return;
        owner_->animationPlaying_ = true;
        StatusBarEvent event = RangeEvent(Kind::AnimationPlay, startFrame, endFrame);
        event.value = repeat;
        owner_->Record(std::move(event));
    }
    void Stop() override {
        if (!owner_)
            return;
        owner_->animationPlaying_ = false;
        owner_->Record(Event(Kind::AnimationStop));
    }

private:
    StatusBar* owner_;
};

StatusBar::StatusBar()
    : progressor_(std::make_shared<Progressor>(this)), animation_(std::make_shared<Animation>(this)) {}

StatusBar::~StatusBar() {
    progressor_->Detach();
    animation_->Detach();
}

std::string StatusBar::Message(std::int32_t index) const {
    auto it = panels_.find(index);
    return it == panels_.end() ? std::string() : it->second;
}

void StatusBar::Message(std::int32_t index, const std::string& text) {
    panels_[index] = text;
    Record(TextEvent(Kind::Message, index, text));
}

std::shared_ptr<IAnimationProgressor> StatusBar::ProgressAnimation() const { return animation_; }

std::shared_ptr<IStepProgressor> StatusBar::ProgressBar() const { return progressor_; }

void StatusBar::ShowProgressBar(const std::string& message, std::int32_t min, std::int32_t max, std::int32_t step,
                                bool onePanel) {
    progressor_->Setup(min, max, step, message);
    barVisible_ = true;
    StatusBarEvent event = RangeEvent(Kind::ShowProgressBar, min, max);
    event.text = message;
    event.step = step;
    event.onePanel = onePanel;
    Record(std::move(event));
}

void StatusBar::StepProgressBar() {
    progressor_->Advance();
    Record(ValueEvent(Kind::StepProgressBar, progressor_->Position()));
}

void StatusBar::HideProgressBar() {
    barVisible_ = false;
    Record(Event(Kind::HideProgressBar));
}

void StatusBar::ClearEvents() {
    events_.clear();
    dropped_ = 0;
}

void StatusBar::Record(StatusBarEvent event) {
    const bool folds = event.kind == Kind::StepProgressBar || event.kind == Kind::ProgressorStep;
    if (folds && !events_.empty() && events_.back().kind == event.kind) {
        // A run of steps is one event with a count, so long runs do not fill the record.
        events_.back().count += 1;
        events_.back().value = event.value;
    } else {
        events_.push_back(std::move(event));
        if (events_.size() > kMaxEvents) {
            events_.pop_front();
            ++dropped_;
        }
    }
    if (listener_)
        listener_(events_.back());
}

} // namespace tess
