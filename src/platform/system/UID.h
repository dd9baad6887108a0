#pragma once
// Names a class by ProgID ("Tessarine.clsExtension") or by class identifier
// text ("{BD6262BC-D9D4-4B93-87E0-E442702D93E6}").

#include <cstdint>
#include <string>

namespace tess {

class IUID {
public:
    virtual ~IUID() = default;
    //! The ProgID or the "{GUID}" text; empty until set.
    virtual std::string Value() const = 0;
    //! Takes a ProgID or a "{GUID}"; a GUID is kept in upper case. Text that is neither, and a
    //! malformed GUID, is an InvalidCall Fault.
    virtual void Value(const std::string& value) = 0;
    virtual std::int32_t SubType() const = 0;
    virtual void SubType(std::int32_t subType) = 0;
    //! Same value (GUIDs and ProgIDs compare without regard to case) and same subtype.
    virtual bool Compare(const IUID& other) const = 0;
};

class UID final : public IUID {
public:
    UID() = default;
    explicit UID(const std::string& value) { Value(value); }

    std::string Value() const override { return value_; }
    void Value(const std::string& value) override;
    std::int32_t SubType() const override { return subType_; }
    void SubType(std::int32_t subType) override { subType_ = subType; }
    bool Compare(const IUID& other) const override;

    //! True when the value is a "{GUID}" rather than a ProgID.
    bool IsGuid() const;

private:
    std::string value_;
    std::int32_t subType_ = 0;
};

} // namespace tess
