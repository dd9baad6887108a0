#pragma once
// Internal: how fields of the host's kinds are stored by each kind of storage,
// and how stored fields read back. Shapefiles keep numbers as dBASE text of a
// width and a count of decimals; the host's type follows from those:
//   no decimals: width up to 5 small integer, up to 10 integer, wider double;
//   decimals:    width up to 6 single, wider double.
// Defaults for a precision of 0: small integer 5, integer 10, single 13.11 and
// double 19.11 (so a single of default precision reads back as a double, as
// the host's shapefiles do), text 50 characters, dates 8.

#include <cstdint>
#include <string>
#include <vector>

#include "platform/data/DataTypes.h"
#include "platform/data/detail/OgrAccess.h"
#include "platform/system/Variant.h"

namespace tess {
class IField;
}

namespace tess::data {

//! The host's view of a stored field.
struct HostField {
    esriFieldType type = esriFieldTypeString;
    std::int32_t length = 0;
    std::int32_t precision = 0;
    std::int32_t scale = 0;
};

//! The field as the storage will keep it (name as given). An InvalidCall Fault for field types the
//! storage cannot hold (blobs and rasters in shapefiles).
OgrFieldSpec StorageSpec(const IField& field, OgrDriver driver);
HostField HostFieldOf(const OgrFieldSpec& spec, OgrDriver driver);

//! A legal dBASE field name: at most 10 characters of letters, digits and "_" (others become "_"),
//! not equal (in any case) to a taken name: a clash ends in "_1", "_2"... within the 10 characters.
std::string DbaseFieldName(const std::string& name, const std::vector<std::string>& taken);

//! A stored value as a value of the host's field type (numbers narrowed or widened, Null kept).
Variant ToFieldType(Variant value, esriFieldType type);

//! Bytes the host reports as Length of fields that are not text.
std::int32_t HostLengthOf(esriFieldType type);

} // namespace tess::data
