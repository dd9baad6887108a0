#pragma once
// The drawing surface of a view. Nothing is drawn by the platform itself; a
// host draws what the views hold. Elements measure their bounds against it.

#include <cstdint>

namespace tess {

class IDisplay {
public:
    virtual ~IDisplay() = default;
    //! Device context stand-in; always 0 here.
    virtual std::int32_t hDC() const = 0;
};

class IScreenDisplay : public IDisplay {
public:
    //! Window handle stand-in; always 0 here.
    virtual std::int32_t hWnd() const = 0;
};

class ScreenDisplay final : public IScreenDisplay {
public:
    std::int32_t hDC() const override { return 0; }
    std::int32_t hWnd() const override { return 0; }
};

} // namespace tess
