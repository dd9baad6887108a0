#include "platform/carto/SimpleRenderer.h"

#include "platform/carto/Symbols.h"

namespace tess {

std::shared_ptr<ISymbol> SimpleRenderer::Symbol() const { return CloneSymbol(symbol_); }

void SimpleRenderer::Symbol(const std::shared_ptr<ISymbol>& symbol) { symbol_ = CloneSymbol(symbol); }

} // namespace tess
