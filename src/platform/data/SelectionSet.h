#pragma once
// Selection sets: a set of object IDs over one table or feature class.

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/data/DataTypes.h"

namespace tess {

class ITable;
class ICursor;
class IQueryFilter;
class IWorkspace;

//! Walks object IDs in ascending order.
class IEnumIDs {
public:
    virtual ~IEnumIDs() = default;
    virtual void Reset() = 0;
    //! -1 at the end.
    virtual std::int32_t Next() = 0;
};

class ISelectionSet {
public:
    virtual ~ISelectionSet() = default;
    virtual std::int32_t Count() const = 0;
    virtual std::shared_ptr<ITable> Target() const = 0;
    virtual std::shared_ptr<IEnumIDs> IDs() const = 0;
    //! Adds one OID (an OID already there is not added twice).
    virtual void Add(std::int32_t oid) = 0;
    virtual void AddList(const std::vector<std::int32_t>& oids) = 0;
    virtual void RemoveList(const std::vector<std::int32_t>& oids) = 0;
    //! The selected rows passing the filter, in OID order. For a feature class the cursor also
    //! answers to IFeatureCursor. Rows deleted since the selection was made are skipped.
    virtual std::shared_ptr<ICursor> Search(const std::shared_ptr<IQueryFilter>& filter, bool recycling) = 0;
    //! The selected rows passing the filter, as a new selection set.
    virtual std::shared_ptr<ISelectionSet> Select(const std::shared_ptr<IQueryFilter>& filter,
                                                  esriSelectionType type, esriSelectionOption option,
                                                  const std::shared_ptr<IWorkspace>& selectionContainer) = 0;
    //! A new set combining this one with another over the same table.
    virtual void Combine(const std::shared_ptr<ISelectionSet>& other, esriSetOperation operation,
                         std::shared_ptr<ISelectionSet>& result) const = 0;
};

class ISelectionSet2 : public ISelectionSet {
public:
    //! An update cursor over the selected rows passing the filter, in OID order.
    virtual std::shared_ptr<ICursor> Update(const std::shared_ptr<IQueryFilter>& filter, bool recycling) = 0;
};

//! A new, empty selection set over the table (for layers that start with no selection).
std::shared_ptr<ISelectionSet2> MakeSelectionSet(const std::shared_ptr<ITable>& table);

} // namespace tess
