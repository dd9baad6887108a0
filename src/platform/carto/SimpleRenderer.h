#pragma once
// One symbol for every feature of a layer.

#include <memory>
#include <string>

#include "platform/carto/Layers.h"

namespace tess {

class SimpleRenderer final : public ISimpleRenderer {
public:
    //! Keeps and hands out copies of the symbol.
    std::shared_ptr<ISymbol> Symbol() const override;
    void Symbol(const std::shared_ptr<ISymbol>& symbol) override;
    std::string Label() const override { return label_; }
    void Label(const std::string& label) override { label_ = label; }

private:
    std::shared_ptr<ISymbol> symbol_;
    std::string label_;
};

} // namespace tess
