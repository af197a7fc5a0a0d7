// Regions that enter the tree, and regions that their parts replace.

#include "segmentation/region_tree.h"

#include <utility>

#include "segmentation/region.h"
#include "segmentation/region_list.h"

namespace nuv {
namespace {

// The smallest region of the level around another one.
Node* container_of(Level& level, const Node& node) {
  return level.by_box.first_around(node.x0, node.y0, node.area,
                                   [&](Node& r) { return &r != &node && r.holds_start_of(node); });
}

// Creates a copy of a region of the level for the tree. Null if allocation fails.
Node* copy_for_tree(Level& level, const Node& r) {
  Node* node = new_node({{r.x0, r.y0}, r.pChainCode, r.N}, r.box, r.area, r.perimeter);
  if (node == nullptr) return nullptr;
  node->gry = r.gry;
  node->ID = r.ID;
  node->serial = r.serial;
  node->component = r.component;
  node->hole_pixels = r.hole_pixels;
  node->parent = r.parent;
  node->container = container_of(level, r);
  node->sameLevelParentID = id_of(node->container);
  return node;
}

// Inserts a region into the tree.
void NuvInsertRegionInTree(Tree& tree, Node* node, Census& census) {
  node->parent = tree.by_box.first_around(node->x0, node->y0, node->area,
                                          [=](Node& r) { return r.holds_start_of(*node); });
  // Smaller regions inside it become its children, unless they have a nearer parent.
  tree.by_start.for_each_in(node->box, [=](Node& r) {
    if (r.area >= node->area || !node->holds_start_of(r)) return;
    Node* const parent = r.parent_in_tree();
    const bool parent_is_nearer =
        parent != nullptr && node->area > parent->area && node->holds_start_of(*parent);
    if (!parent_is_nearer) r.parent = node;
  });
  node->serial = census.next_serial++;
  tree.file(*node);
  tree.list.push_front(node);
}

// The regions of a level by their parents in the tree.
struct Families {
  Node* parents = nullptr;     // list of the regions that have children
  Node* parentless = nullptr;  // list of the regions of the level that have no parent
};

// Finds the parent of each region of a level in the tree.
Families families_of(Tree& tree, const Level& level) {
  Families families;
  for (Node* c = level.list.head(); c != nullptr; c = c->next_node()) {
    if (!c->knows_parent()) {
      Node* const known = c->parent_known_from == INT32_MAX ? nullptr : c->parent;
      c->parent = tree.by_box.first_around(
          c->x0, c->y0, c->area, [=](Node& p) { return p.starts_with(*c) || p.holds_start_of(*c); },
          c->parent_known_from, known);
      c->parent_is_current = true;
      c->parent_known_from = INT32_MAX;
    }
    Node* const p = c->parent;
    Node*& siblings = p != nullptr ? p->first_child : families.parentless;
    c->next_child = std::exchange(siblings, c);
    if (p == nullptr) continue;
    if (p->children == 0) p->next_parent = std::exchange(families.parents, p);
    ++p->children;
    p->children_area += c->area;
  }
  return families;
}

// Makes a region that has entered the tree the parent of the regions of the level to which it is nearer than
// their parent so far.
void offer_parent(Level& level, Node& parent) {
  level.by_start.for_each_in(parent.box, [&](Node& c) {
    if (!c.knows_parent() || parent.area < c.area) return;
    if (c.parent != nullptr && !parent.precedes(*c.parent)) return;
    if (parent.starts_with(c) || parent.holds_start_of(c)) c.parent = &parent;
  });
}

// Copies the regions of a level that may enter the tree, and sorts them: those without a parent, and those
// that are not the only child of their parent.
void copy_candidates(Level& level, const Families& families, RegionList& candidates) {
  const auto copy = [&](const Node* siblings) {
    for (const Node* c = siblings; c != nullptr; c = c->next_child) {
      Node* node = copy_for_tree(level, *c);
      if (node != nullptr) candidates.push_front(node);
    }
  };
  copy(families.parentless);
  for (const Node* p = families.parents; p != nullptr; p = p->next_parent) {
    if (p->children >= 2) copy(p->first_child);
  }
  candidates.sort([](const Node& a, const Node& b) { return a.precedes(b); });
}

// Moves the regions that pass a test to the front of another list, so the last one comes first.
template <class Test>
void move_if(RegionList& from, RegionList& to, Test test) {
  for (RegionStruct** link = from.begin(); *link != nullptr;) {
    if (test(*static_cast<Node*>(*link))) {
      to.push_front(RegionList::unlink(link));
    } else {
      link = &(*link)->next;
    }
  }
}

// A region in a hole of another one does not come from a split if both lie in the same region of the tree. A
// container with the ID 0 does not count.
bool is_island(const Node& c) {
  return c.parent != nullptr && c.sameLevelParentID > 0 && c.container->parent == c.parent;
}

// Moves the regions of a level that come from splits to the arrivals, in the order of their parents.
void move_parts(RegionList& candidates, RegionList& arrivals) {
  candidates.sort([](const Node& a, const Node& b) { return a.parent->precedes(*b.parent); });
  move_if(candidates, arrivals, [](const Node& c) { return c.parent->children >= 2; });
}

// Notes what has become of the regions with children, and replaces those that have split by more than the ratio.
void update_parents(Tree& tree, Node* parents, double ratio) {
  for (Node* p = parents; p != nullptr; p = p->next_parent) {
    if (p->children == 1) p->curArea = p->children_area;
    p->is_replaced = p->children >= 2 && static_cast<double>(p->children_area) / p->curArea > ratio;
    if (p->is_replaced) {
      tree.unfile(*p);
      p->release_index();
      delete_chain(*p);
    }
    p->children = p->children_area = 0;
    p->first_child = nullptr;
  }
}

}  // namespace

void start_tree(Tree& tree, Level& level) {
  for (Node* r = level.list.head(); r != nullptr; r = r->next_node()) {
    r->parent = copy_for_tree(level, *r);
    r->parent_is_current = true;
    if (r->parent != nullptr) tree.list.push_front(r->parent);
  }
  for (Node* node = tree.list.head(); node != nullptr; node = node->next_node()) {
    node->parent = node->container == nullptr ? nullptr : node->container->parent;
    tree.file(*node);
  }
}

void NuvMergeRegionLevel(Tree& tree, Level& level, double ratio, Census& census) {
  const Families families = families_of(tree, level);
  RegionList candidates;
  copy_candidates(level, families, candidates);
  RegionList arrivals;
  move_if(candidates, arrivals, [](const Node& c) { return c.parent == nullptr; });
  move_if(candidates, arrivals, [](const Node& c) {
    if (!is_island(c)) return false;
    --c.parent->children;
    c.parent->children_area -= c.area;
    return true;
  });
  move_parts(candidates, arrivals);
  update_parents(tree, families.parents, ratio);
  arrivals.sort_by_area();
  while (!arrivals.empty()) {
    Node* node = arrivals.take_first();
    NuvInsertRegionInTree(tree, node, census);
    offer_parent(level, *node);
  }
}

RegionStruct* release_regions(Tree& tree) {
  RegionList regions;
  regions.swap(tree.list);
  for (RegionStruct** link = regions.begin(); *link != nullptr;) {
    auto* r = static_cast<Node*>(*link);
    r->release_index();
    r->parentID = id_of(r->parent_in_tree());
    if (r->is_replaced) {
      tree.list.push_front(RegionList::unlink(link));
    } else {
      link = &r->next;
    }
  }
  // The later regions come first in the list, so this is the order of the tree.
  regions.sort_by_area();
  return regions.release();
}

}  // namespace nuv
