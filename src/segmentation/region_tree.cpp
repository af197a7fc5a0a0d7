// Regions that enter the tree, and regions that their parts replace.

#include "segmentation/region_tree.h"

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

// Inserts a region into the tree. Regions come by rising area. The link points to the place of the last one,
// or before it, and moves to the place of this one.
void NuvInsertRegionInTree(Tree& tree, RegionStruct**& link, Node* node, Census& census) {
  node->parent = tree.by_box.first_around(node->x0, node->y0, node->area,
                                          [=](Node& r) { return r.holds_start_of(*node); });
  // Smaller regions inside it become its children, unless they have a nearer parent.
  tree.by_start.for_each_in(node->box, [=](Node& r) {
    if (r.area >= node->area || !node->holds_start_of(r)) return;
    const bool parent_is_nearer =
        r.parent != nullptr && node->area > r.parent->area && node->holds_start_of(*r.parent);
    if (!parent_is_nearer) r.parent = node;
  });
  node->serial = census.next_serial++;
  tree.file(*node);
  while (*link != nullptr && (*link)->area < node->area) link = &(*link)->next;
  node->next = *link;
  *link = node;
}

// Finds the parent of each region of a level in the tree, and counts the children of each parent.
void link_to_tree(Tree& tree, const Level& level) {
  for (Node* c = level.list.head(); c != nullptr; c = c->next_node()) {
    if (!c->parent_is_current) {
      c->parent = tree.by_box.first_around(
          c->x0, c->y0, c->area, [=](Node& p) { return p.starts_with(*c) || p.holds_start_of(*c); },
          c->parent_known_from, c->parent);
      c->parent_is_current = true;
      c->parent_known_from = INT32_MAX;
    }
    if (c->parent == nullptr) continue;
    ++c->parent->children;
    c->parent->children_area += c->area;
  }
}

// Makes a region that has entered the tree the parent of the regions of the level to which it is nearer than
// their parent so far.
void offer_parent(Level& level, Node& parent) {
  level.by_start.for_each_in(parent.box, [&](Node& c) {
    if (!c.parent_is_current || parent.area < c.area) return;
    if (c.parent != nullptr && !parent.precedes(*c.parent)) return;
    if (parent.starts_with(c) || parent.holds_start_of(c)) c.parent = &parent;
  });
}

// Copies the regions of a level that may enter the tree, and sorts them: those without a parent, and those
// that are not the only child of their parent.
void copy_candidates(Level& level, RegionList& candidates) {
  for (Node* c = level.list.head(); c != nullptr; c = c->next_node()) {
    if (c->parent != nullptr && c->parent->children < 2) continue;
    Node* node = copy_for_tree(level, *c);
    if (node != nullptr) candidates.push_front(node);
  }
  candidates.sort();
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

// Moves the regions of a level that come from splits to the parts of their parents, in list order.
void assign_parts(RegionList& candidates) {
  RegionList parts;
  move_if(candidates, parts, [](const Node& c) { return c.parent->children >= 2; });
  while (!parts.empty()) {
    Node* c = parts.take_first();
    c->next = c->parent->parts;
    c->parent->parts = c;
  }
}

}  // namespace

void start_tree(Tree& tree, Level& level) {
  for (Node* r = level.list.head(); r != nullptr; r = r->next_node()) {
    r->parent = copy_for_tree(level, *r);
    r->parent_is_current = true;
    if (r->parent != nullptr) tree.list.push_front(r->parent);
  }
  tree.list.sort();
  for (Node* node = tree.list.head(); node != nullptr; node = node->next_node()) {
    node->parent = node->container == nullptr ? nullptr : node->container->parent;
    tree.file(*node);
  }
}

void NuvMergeRegionLevel(Tree& tree, Level& level, double ratio, Census& census) {
  link_to_tree(tree, level);
  RegionList candidates;
  copy_candidates(level, candidates);
  RegionList arrivals;
  move_if(candidates, arrivals, [](const Node& c) { return c.parent == nullptr; });
  move_if(candidates, arrivals, [](const Node& c) {
    if (!is_island(c)) return false;
    --c.parent->children;
    c.parent->children_area -= c.area;
    return true;
  });
  assign_parts(candidates);

  RegionList replaced;
  for (RegionStruct** link = tree.list.begin(); *link != nullptr;) {
    auto* p = static_cast<Node*>(*link);
    if (p->children == 1) p->curArea = p->children_area;
    while (p->parts != nullptr) arrivals.push_front(RegionList::unlink(&p->parts));
    p->is_replaced = p->children >= 2 && static_cast<double>(p->children_area) / p->curArea > ratio;
    if (p->is_replaced) {
      tree.unfile(*p);
      replaced.push_front(RegionList::unlink(link));
    } else {
      p->children = p->children_area = 0;  // for the next level
      p->release_unused_rows();
      link = &p->next;
    }
  }
  if (!replaced.empty()) {
    for (Node* r = tree.list.head(); r != nullptr; r = r->next_node()) {
      while (r->parent != nullptr && r->parent->is_replaced) r->parent = r->parent->parent;
    }
    for (Node* c = level.list.head(); c != nullptr; c = c->next_node()) {
      if (c->parent != nullptr && c->parent->is_replaced) {
        c->parent_is_current = false;
        c->parent = nullptr;
      }
    }
  }
  arrivals.sort();
  RegionStruct** link = tree.list.begin();
  while (!arrivals.empty()) {
    Node* node = arrivals.take_first();
    NuvInsertRegionInTree(tree, link, node, census);
    offer_parent(level, *node);
  }
}

}  // namespace nuv
