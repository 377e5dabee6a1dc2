#include "plugin/exporter/walk_bounds.h"

#include <string>
#include <vector>

#include "plugin/exporter/exporter_host.h"

namespace {

[[noreturn]] void FailExport(const std::string& text) {
  AddError(A_Err_STRUCT, text.c_str());
  throw A_Err(A_Err_STRUCT);
}

std::string LayerName(AEGP_LayerH layer) {
  std::string name, source;
  LayerNames(layer, &name, &source);
  return name.empty() ? source : name;
}

// The composition on top of the stack, by the source name of the layer that entered it.
std::string TopCompName(const AEToOry& exporter) {
  std::string name, source;
  LayerNames(exporter.TopLayer(), &name, &source);
  return source;
}

// How many parents stand above `layer`, at most kMaxNesting + 1; remembered in the exporter,
// so that the layers of one long chain are measured in a time linear in its length.
uint32_t ParentDepth(AEToOry& exporter, AEGP_LayerH layer) {
  const auto known = exporter.parentDepths.find(layer);
  if (known != exporter.parentDepths.end()) return known->second;
  // Up the chain to the top or to a layer whose depth is known, then down again.
  std::vector<AEGP_LayerH> chain;
  uint32_t above = 0;  // parents above the last layer of `chain`
  for (AEGP_LayerH at = layer;;) {
    chain.push_back(at);
    if (chain.size() > kMaxNesting + 1) return kMaxNesting + 1;
    AEGP_LayerH parent = nullptr;
    LayerSuite13()->AEGP_GetLayerParent(at, &parent);
    if (!parent) break;
    const auto parentKnown = exporter.parentDepths.find(parent);
    if (parentKnown != exporter.parentDepths.end()) {
      above = parentKnown->second + 1;
      break;
    }
    at = parent;
  }
  for (auto up = chain.rbegin(); up != chain.rend(); ++up) {
    exporter.parentDepths[*up] = above <= kMaxNesting ? above : kMaxNesting + 1;
    ++above;
  }
  return exporter.parentDepths[layer];
}

}  // namespace

void CheckWalkBounds(AEToOry& exporter, AEGP_LayerH layer) {
  if (++exporter.layerUses > kMaxLayerUses) {
    FailExport("Export failed, the composition uses more than " + std::to_string(kMaxLayerUses) +
               " layers, counting the layers of a precomposition again at each use.");
  }
  const std::size_t nesting = exporter.compStack.size() - 1;
  if (nesting > kMaxNesting) {
    FailExport("Export failed, composition \"" + TopCompName(exporter) + "\" lies " + std::to_string(nesting) +
               " precompositions deep; the export follows at most " + std::to_string(kMaxNesting) + ".");
  }
  const uint32_t parents = ParentDepth(exporter, layer);
  if (parents > kMaxNesting) {
    FailExport("Export failed, layer \"" + LayerName(layer) + "\" has more than " + std::to_string(kMaxNesting) +
               " parents above it; the export follows at most " + std::to_string(kMaxNesting) + ".");
  }
}
