#pragma once
// The one error condition of the platform surface: a number, a source and a
// description, as every platform call and every procedure of the extension
// raises and reports it.

#include <cstdint>
#include <stdexcept>
#include <string>

namespace tess {

class Fault : public std::runtime_error {
public:
    Fault(std::int32_t number, std::string source, std::string description)
        : std::runtime_error(description), number_(number), source_(std::move(source)),
          description_(std::move(description)) {}

    std::int32_t Number() const noexcept { return number_; }
    const std::string& Source() const noexcept { return source_; }
    const std::string& Description() const noexcept { return description_; }

private:
    std::int32_t number_;
    std::string source_;
    std::string description_;
};

// Faults by the area that raised them, so that a caller can tell them apart by type where the
// numbers the host shows coincide (an arithmetic fault and a bad argument are both 5).
class ArithmeticFault : public Fault {
public:
    using Fault::Fault;
};
class DataFault : public Fault {
public:
    using Fault::Fault;
};
class GeometryFault : public Fault {
public:
    using Fault::Fault;
};
class ReferenceFault : public Fault {
public:
    using Fault::Fault;
};

// Fault numbers the platform raises. The values follow the host's habits where
// users may have seen them before (runtime errors 5, 6, 9, 11, 13, 91).
namespace fault {
inline constexpr std::int32_t InvalidCall = 5;        //!< invalid procedure call or argument
inline constexpr std::int32_t Overflow = 6;           //!< arithmetic overflow
inline constexpr std::int32_t OutOfRange = 9;         //!< index out of range
inline constexpr std::int32_t DivisionByZero = 11;    //!< division by zero
inline constexpr std::int32_t TypeMismatch = 13;      //!< a value cannot convert to the type asked
inline constexpr std::int32_t ObjectNotSet = 91;      //!< object reference not set
inline constexpr std::int32_t ReadPastEnd = 62;       //!< input past end of stream
inline constexpr std::int32_t InvalidUseOfNull = 94;  //!< Null where a value is needed
inline constexpr std::int32_t InvalidFileFormat = 321; //!< stored text that cannot be read back
inline constexpr std::int32_t DuplicateKey = 457;     //!< a key already in a collection
inline constexpr std::int32_t InvalidOperation = 5;   //!< floating-point invalid operation (NaN)
inline constexpr std::int32_t NotFound = -2147220655; //!< a named dataset, field or item is not there
inline constexpr std::int32_t GeometryFailed = -2147220968; //!< a geometry operation failed
inline constexpr std::int32_t DataFailed = -2147216556;     //!< a data source could not be read or written
inline constexpr std::int32_t SpatialReferenceFailed = -2147216072; //!< an unknown or unusable reference
} // namespace fault

} // namespace tess
