#pragma once
// Sequential storage of variants, as documents persist a component's settings.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/system/Variant.h"

namespace tess {

class IVariantStream {
public:
    virtual ~IVariantStream() = default;
    //! The next value; a ReadPastEnd Fault when none is left.
    virtual Variant Read() = 0;
    virtual void Write(const Variant& value) = 0;
};

//! A stream in memory. Writes append; reads go forward from the start.
//!
//! Text form (ToText/FromText), a JSON document:
//!   {"format": "tess.VariantStream", "version": 1,
//!    "values": [{"Double": 3.0}, {"String": "C:/data"}, {"Boolean": true}, {"Long": 2}, ...]}
//! Each value is an object with one member named by its kind: Empty, Null, Nothing (null members),
//! Integer, Long (JSON integers), Single, Double, Date (JSON numbers, dates as day numbers; the
//! non-finite doubles as the strings "NaN", "Infinity", "-Infinity"), Boolean, String (UTF-8) and
//! Array (a JSON array of such values). Doubles are written with the shortest text that reads back
//! to the same bits. Object references other than Nothing have no text form.
class MemoryVariantStream final : public IVariantStream {
public:
    Variant Read() override;
    void Write(const Variant& value) override;

    // Typed reads: read one value and convert it as the host converts on assignment; the value is
    // consumed even when the conversion faults (TypeMismatch, Overflow, InvalidUseOfNull).
    double ReadDouble() { return Read().ToDouble(); }
    float ReadSingle() { return Read().ToSingle(); }
    std::int16_t ReadInteger() { return Read().ToInteger(); }
    std::int32_t ReadLong() { return Read().ToLong(); }
    std::string ReadString() { return Read().ToString(); }
    bool ReadBool() { return Read().ToBool(); }
    DateValue ReadDate() { return Read().ToDate(); }

    std::size_t Count() const { return values_.size(); }
    std::size_t Position() const { return position_; }
    //! Reads start again from the first value.
    void Rewind() { position_ = 0; }

    //! The text form above. A TypeMismatch Fault for an object reference; an InvalidCall Fault for
    //! text that is not UTF-8.
    std::string ToText() const;
    //! A stream positioned at its start; an InvalidFileFormat Fault for text that is not of the form above.
    static MemoryVariantStream FromText(const std::string& text);

private:
    std::vector<Variant> values_;
    std::size_t position_ = 0;
};

} // namespace tess
