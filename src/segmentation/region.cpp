// Records of regions, created and destroyed.

#include "segmentation/region.h"

#include <algorithm>
#include <new>
#include <utility>

#include "core/buffer.h"

namespace nuv {

Node* new_node(const Chain& chain, Region box, int32_t area, int32_t perimeter) {
  Buffer<uint8_t> codes = allocate<uint8_t>(chain.n);
  auto* node = codes ? new (std::nothrow) Node{} : nullptr;
  if (node == nullptr) return nullptr;
  std::copy_n(chain.codes, chain.n, codes.get());
  node->x0 = chain.start.x;
  node->y0 = chain.start.y;
  node->N = chain.n;
  node->pChainCode = codes.release();
  node->area = area;
  node->perimeter = perimeter;
  node->sameLevelParentID = kNone;
  node->parentID = kNone;
  node->curArea = area;
  node->box = box;
  return node;
}

void delete_chain(Node& node) {
  delete[] std::exchange(node.pChainCode, nullptr);
}

void destroy(Node* node) {
  delete_chain(*node);
  delete node;
}

}  // namespace nuv
