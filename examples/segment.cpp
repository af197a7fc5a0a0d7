// Segments photographs into trees of dark regions.
//
// There is no threshold to choose. Gray levels fall one by one, and a region that splits becomes a parent or is
// replaced by its parts.

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "host.h"
#include "marks.h"
#include "picture.h"

namespace {

struct Options {
  int32_t min_area = 200;
  int32_t min_gray = 0;
  int32_t max_gray = 255;
  double ratio = 0.5;
  bool light = false;
};

using RegionList = std::unique_ptr<RegionStruct, decltype(&NuvFreeRegionStruct)>;

// A region at its place in the tree.
struct Node {
  const RegionStruct* region;
  int64_t parent;  // number of the parent; 0 for none
  int32_t depth;
  bool is_leaf;
};

// The regions in the order of the table: each before its children, which are sorted by falling area.
class Tree {
 public:
  explicit Tree(const RegionStruct* list) {
    for (const RegionStruct* r = list; r != nullptr; r = r->next) children_[r->parentID].push_back(r);
    constexpr int32_t kNone = -1;
    add_children_of(kNone, 0, 0);
  }
  const std::vector<Node>& nodes() const { return nodes_; }

 private:
  void add_children_of(int32_t id, int64_t number, int32_t depth) {
    const auto found = children_.find(id);
    if (found == children_.end()) return;
    for (auto child = found->second.rbegin(); child != found->second.rend(); ++child) {
      nodes_.push_back({*child, number, depth, children_.count((*child)->ID) == 0});
      add_children_of((*child)->ID, static_cast<int64_t>(nodes_.size()), depth + 1);
    }
  }

  std::map<int32_t, std::vector<const RegionStruct*>> children_;  // by the ID of the parent
  std::vector<Node> nodes_;
};

Box box_of(const RegionStruct& r) {
  tagRECT box{};
  NuvContourRect(r.x0, r.y0, r.pChainCode, r.N, &box.left, &box.right, &box.top, &box.bottom);
  return {double(box.left), double(box.top), double(box.right), double(box.bottom)};
}

// Draws outlines in the colour of their depth. Outer regions have thick lines, so that they show where a child
// touches them.
Marks drawn(const Picture& picture, const std::vector<Node>& nodes) {
  Marks marks(picture, 0.7);
  int64_t number = 0;
  for (const Node& node : nodes) {
    const RegionStruct& r = *node.region;
    const double width = node.depth == 0 ? 2.6 : node.depth == 1 ? 1.8 : 1.2;
    marks.outline(r.x0, r.y0, r.pChainCode, r.N, colour_of_depth(node.depth), width);
    // The number of a region with children is put at its outline, because the middle belongs to a child.
    const Box start = {double(r.x0), double(r.y0), double(r.x0), double(r.y0)};
    marks.label(node.is_leaf ? box_of(r) : start, std::to_string(++number), colour_of_depth(node.depth));
  }
  marks.place_labels();
  return marks;
}

Report work(const Job& job, const Options& options) {
  Picture picture = read_picture(job.input);
  Picture gray = to_gray(picture);
  job.says("finding the regions of " + std::to_string(picture.width) + "x" + std::to_string(picture.height) +
           " pixels");
  if (options.light) NuvInvertGryValue(gray.pixels.data(), gray.width, gray.height);
  const int32_t last_level = options.light ? 255 - options.max_gray : options.min_gray;
  std::vector<uint8_t> space(2 * gray.pixels.size());
  const RegionList list(NuvMergeSplit(gray.pixels.data(), space.data(), gray.width, gray.height,
                                      options.min_area, last_level, options.ratio),
                        NuvFreeRegionStruct);
  const Tree tree(list.get());
  job.says("drawing");
  const Marks marks = drawn(picture, tree.nodes());
  write_picture(marks.drawing(), job.results[0]);

  Report report;
  report.numbers = {picture.width, picture.height};
  int64_t number = 0;
  for (const Node& node : tree.nodes()) {
    const RegionStruct& r = *node.region;
    const Box box = box_of(r);
    const auto whole = [](double value) { return static_cast<int64_t>(value); };
    const Value parent = node.parent == 0 ? Value() : Value(node.parent);
    report.rows.push_back({++number, parent, node.depth, whole(box.left), whole(box.top), whole(box.right),
                           whole(box.bottom), r.area, r.perimeter, options.light ? 255 - r.gry : r.gry});
    report.depths.push_back(node.depth);
  }
  report.conclusion =
      counted(tree.nodes().size(), "region") + ", drawn into " + job.results[0] + marks.remark();
  return report;
}

}  // namespace

int main(int argc, char** argv) {
  Plan plan;
  plan.name = "segment";
  plan.purpose = "Segments photographs: trees of dark regions as tables, and pictures with their outlines.";
  plan.results = {{"-o,--output", "_regions", kPictureEndings,
                   "picture to write, with outlines and numbers in the colour of their depth"}};
  plan.numbers = {{"width", "of the picture, in pixels"}, {"height", "of the picture, in pixels"}};
  plan.items = "regions";
  plan.columns = {{"number", "as in the picture; a table indents it by the depth"},
                  {"parent", "number of the region around it; none for a root"},
                  {"depth", "0 for a root"},
                  {"left", "first column of the region"},
                  {"top", "first row"},
                  {"right", "last column"},
                  {"bottom", "last row"},
                  {"area", "in pixels"},
                  {"perimeter", "in pixels"},
                  {"level", "gray level of the picture at which the region was found"}};
  plan.notes =
      "The outlines are green at depth 0, then orange, blue, red and cyan, and green again. Outer ones are "
      "thicker.";
  Host host(plan);
  Options options;
  host.number("-a,--min-area", options.min_area, "least area of a region in pixels", 1, 1000000000);
  host.number("-g,--min-gray", options.min_gray, "the lowest gray level considered for dark regions", 0, 255);
  CLI::Option* highest =
      host.number("--max-gray", options.max_gray, "the highest gray level considered, with --light", 0, 255);
  host.number(
      "-r,--ratio", options.ratio,
      "a region that splits is dropped if its parts cover more than this share of it; 1: it always stays",
      0.0, 1.0);
  CLI::Option* light = host.flag("-l,--light", options.light, "light regions instead of dark ones");
  host.check([&] {
    if (highest->count() > 0 && light->count() == 0) throw UsageError("--max-gray needs --light");
    if (options.light && options.min_gray > 0)
      throw UsageError("--min-gray is for dark regions; --light takes --max-gray");
  });
  return host.run(argc, argv, [&options](const Job& job) { return work(job, options); });
}
