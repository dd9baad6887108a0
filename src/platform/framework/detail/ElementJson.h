#pragma once
// Internal: symbols and graphic elements as JSON in the map document (see docs/map-document.md).

#include <functional>
#include <map>
#include <memory>
#include <string>

#include <nlohmann/json_fwd.hpp>

namespace tess {
class IElement;
class IMap;
class ISymbol;
class ISpatialReference;
class IGeometry;
} // namespace tess

namespace tess::detail {

//! What elements refer to outside themselves: the map's reference (written "map" instead of its
//! text) and the maps that frames show, by index in the document.
struct ElementContext {
    std::shared_ptr<ISpatialReference> mapReference;
    std::function<int(const IMap*)> mapIndex;                //!< -1 for a map not in the document
    std::function<std::shared_ptr<IMap>(int)> mapAt;         //!< null for an index out of range
    std::map<std::string, std::shared_ptr<ISpatialReference>> references; //!< read cache, by text
};

//! Null for a symbol of another implementation (it is not saved).
nlohmann::ordered_json SymbolToJson(const ISymbol* symbol);
std::shared_ptr<ISymbol> SymbolFromJson(const nlohmann::ordered_json& value);

//! "spatialReference" member of a shape: absent for none, "map", or the ESRI text ("" unknown).
void WriteReference(nlohmann::ordered_json& object, const IGeometry& geometry, const ElementContext& context);
void ReadReference(const nlohmann::ordered_json& object, IGeometry& geometry, ElementContext& context);

//! A member that must be a list (an object): the member itself, or an empty one when it is
//! absent or null; an InvalidFileFormat Fault when it is of another kind. No copy is made.
const nlohmann::ordered_json& ListMember(const nlohmann::ordered_json& object, const char* name);
const nlohmann::ordered_json& ObjectMember(const nlohmann::ordered_json& object, const char* name);

nlohmann::ordered_json ElementToJson(const IElement& element, const ElementContext& context);
std::shared_ptr<IElement> ElementFromJson(const nlohmann::ordered_json& value, ElementContext& context);

} // namespace tess::detail
