#pragma once
// Cursors over the rows of a table: search, update and insert. One cursor object
// answers to ICursor and, for feature classes, IFeatureCursor.

#include <cstdint>
#include <memory>
#include <string>

namespace tess {

class IFields;
class IRow;
class IRowBuffer;
class IFeature;
class IFeatureBuffer;

class ICursor {
public:
    virtual ~ICursor() = default;
    virtual std::shared_ptr<IFields> Fields() const = 0;
    virtual std::int32_t FindField(const std::string& name) const = 0;
    //! Null at the end. A recycling cursor hands back the same row object each time, refilled.
    virtual std::shared_ptr<IRow> NextRow() = 0;
    //! Update cursors: writes the row (the one last fetched, or any row of the table).
    virtual void UpdateRow(const IRow& row) = 0;
    //! Update cursors: deletes the row last fetched.
    virtual void DeleteRow() = 0;
    //! Insert cursors: stores the buffer's values as a new row and answers its OID.
    virtual std::int32_t InsertRow(const IRowBuffer& buffer) = 0;
    //! Writes buffered rows out so that searches of the table see them.
    virtual void Flush() = 0;
};

class IFeatureCursor {
public:
    virtual ~IFeatureCursor() = default;
    virtual std::shared_ptr<IFields> Fields() const = 0;
    virtual std::int32_t FindField(const std::string& name) const = 0;
    //! Null at the end.
    virtual std::shared_ptr<IFeature> NextFeature() = 0;
    virtual void UpdateFeature(const IFeature& feature) = 0;
    virtual void DeleteFeature() = 0;
    virtual std::int32_t InsertFeature(const IFeatureBuffer& buffer) = 0;
    virtual void Flush() = 0;
};

} // namespace tess
