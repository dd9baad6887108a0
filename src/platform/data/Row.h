#pragma once
// Rows and features: stored ones (IRow, IFeature) and buffers of values not
// yet stored (IRowBuffer, IFeatureBuffer). One object answers to all the
// interfaces its kind has; move between them with std::dynamic_pointer_cast.

#include <cstdint>
#include <memory>

#include "platform/system/Variant.h"

namespace tess {

class IFields;
class ITable;
class IGeometry;
class IEnvelope;

//! Values by field index. The shape field's value is the shape as an object reference;
//! an unset value is Null.
class IRowBuffer {
public:
    virtual ~IRowBuffer() = default;
    virtual std::shared_ptr<IFields> Fields() const = 0;
    //! OutOfRange Fault for an index outside the fields.
    virtual Variant Value(std::int32_t index) const = 0;
    //! Converts to the field's type as the host would (TypeMismatch or Overflow Fault when it
    //! cannot); Empty and Null store Null. Writing the object ID is an InvalidCall Fault.
    virtual void Value(std::int32_t index, const Variant& value) = 0;
};

class IRow : public virtual IRowBuffer {
public:
    //! The object ID: 0-based FID for shapefiles, from 1 for geodatabases and GeoPackages.
    virtual std::int32_t OID() const = 0;
    virtual bool HasOID() const = 0;
    //! Writes the row's values to its table (a new row gets its OID here).
    virtual void Store() = 0;
    virtual void Delete() = 0;
    virtual std::shared_ptr<ITable> Table() const = 0;
};

class IFeatureBuffer : public virtual IRowBuffer {
public:
    //! The shape itself (shared): changing it changes the buffer. An empty shape of the class's
    //! type for a feature stored without one.
    virtual std::shared_ptr<IGeometry> Shape() const = 0;
    //! Keeps the object given (not a copy), as the host does.
    virtual void Shape(std::shared_ptr<IGeometry> shape) = 0;
};

class IFeature : public virtual IRow, public virtual IFeatureBuffer {
public:
    //! A private copy of the shape.
    virtual std::shared_ptr<IGeometry> ShapeCopy() const = 0;
    //! The shape's envelope.
    virtual std::shared_ptr<IEnvelope> Extent() const = 0;
};

} // namespace tess
