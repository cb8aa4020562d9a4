// Where the curve is in a document of lists and maps.

#include <algorithm>
#include <array>

#include "greycard/names.h"
#include "text_node.h"

namespace greycard::reading {
namespace {

using Found = std::optional<RawCurve>;
using Samples = std::vector<Located>;

Found curveIn(const TextNode& node);

bool isNumberList(const TextNode& node) {
  return node.isList() && !node.items.empty() &&
         std::ranges::all_of(node.items, [](const TextNode& item) { return item.isNumber(); });
}

// Of a list, or of a map that keeps it under "data".
const TextNode* numberList(const TextNode* node) {
  if (node != nullptr && node->isMap()) node = node->find("data");
  return node != nullptr && isNumberList(*node) ? node : nullptr;
}

Located located(const TextNode& number) {
  return {number.number, number.line, number.column};
}

Samples samplesOf(const TextNode& list) {
  Samples samples;
  samples.reserve(list.items.size());
  for (const TextNode& item : list.items) samples.push_back(located(item));
  return samples;
}

RawCurve oneChannel(Samples inputs, Samples outputs) {
  RawCurve curve;
  curve.channels.push_back({std::move(inputs), std::move(outputs)});
  return curve;
}

RawCurve threeChannels(const std::array<const TextNode*, 3>& lists) {
  RawCurve curve;
  for (const TextNode* list : lists) curve.channels.push_back({{}, samplesOf(*list)});
  return curve;
}

// Lists of 2 (input, output), 3 (red, green, blue) or 4 numbers (input, red, green, blue).
Found fromRows(const TextNode& list) {
  const std::size_t width = list.items[0].items.size();
  if (width < 2 || width > 4) return {};
  RawCurve curve;
  curve.channels.resize(width == 2 ? 1 : 3);
  for (const TextNode& row : list.items) {
    if (!isNumberList(row) || row.items.size() != width)
      throw Refusal(row.line, row.column, row.word,
                    "a list of " + std::to_string(width) + " numbers is wanted here, as before");
    for (std::size_t c = 0; c < curve.channels.size(); ++c) {
      if (width != 3) curve.channels[c].inputs.push_back(located(row.items[0]));
      curve.channels[c].outputs.push_back(located(row.items[width == 3 ? c : c + 1]));
    }
  }
  return curve;
}

struct PairNames {
  const char *input, *output;
};
constexpr std::array kPairNames{PairNames{"x", "y"}, PairNames{"input", "output"},
                                PairNames{"in", "out"}, PairNames{"inputs", "table"},
                                PairNames{"inputs", "outputs"}};

Found fromPointMaps(const TextNode& list) {
  const auto names = std::ranges::find_if(kPairNames, [&](const PairNames& pair) {
    return list.items[0].find(pair.input) != nullptr && list.items[0].find(pair.output) != nullptr;
  });
  if (names == kPairNames.end()) return {};
  Samples inputs, outputs;
  for (const TextNode& point : list.items) {
    const TextNode *x = point.find(names->input), *y = point.find(names->output);
    if (x == nullptr || y == nullptr || !x->isNumber() || !y->isNumber())
      throw Refusal(point.line, point.column, point.word,
                    std::string("a point with the numbers ") + names->input + " and " +
                        names->output + " is wanted here");
    inputs.push_back(located(*x));
    outputs.push_back(located(*y));
  }
  return oneChannel(std::move(inputs), std::move(outputs));
}

// x, y, x, y, ...
RawCurve fromFlatPairs(const TextNode& list) {
  if (list.items.size() % 2 != 0)
    throw Refusal(list.line, list.column, {}, "these numbers make no whole pairs");
  Samples inputs, outputs;
  for (std::size_t i = 0; i < list.items.size(); i += 2) {
    inputs.push_back(located(list.items[i]));
    outputs.push_back(located(list.items[i + 1]));
  }
  return oneChannel(std::move(inputs), std::move(outputs));
}

// The only part that holds a curve.
Found onlyCurveIn(const TextNode& node) {
  Found found;
  std::string where;
  for (std::size_t i = 0; i < node.items.size(); ++i) {
    Found part = curveIn(node.items[i]);
    if (!part) continue;
    std::string name = "item " + std::to_string(i + 1);
    if (node.isMap()) name = "\"" + printable(node.keys[i]) + "\"";
    if (found)
      throw Refusal(node.items[i].line, node.items[i].column, {},
                    where.append(" and ").append(name).append(
                        " could both be the curve; leave one, or call three of them red, green "
                        "and blue"));
    found = std::move(part);
    where = std::move(name);
  }
  return found;
}

Found fromList(const TextNode& list) {
  if (list.items.empty()) return {};
  if (isNumberList(list)) return oneChannel({}, samplesOf(list));
  const TextNode& first = list.items[0];
  if (list.items.size() == 1) return curveIn(first);
  if (first.isNumber() || first.kind == TextNode::Kind::Word) {
    const auto odd =
        std::ranges::find_if_not(list.items, [](const TextNode& item) { return item.isNumber(); });
    if (first.isNumber()) throw Refusal(odd->line, odd->column, odd->word, "this is no number");
    return {};
  }
  if (isNumberList(first) && list.items.size() == 3 && first.items.size() > 4) {
    std::array<const TextNode*, 3> lists{};
    for (std::size_t c = 0; c < 3; ++c) lists[c] = numberList(&list.items[c]);
    if (lists[1] != nullptr && lists[2] != nullptr) return threeChannels(lists);
  }
  if (isNumberList(first))
    if (Found rows = fromRows(list)) return rows;
  if (first.isMap())
    if (Found points = fromPointMaps(list)) return points;
  return onlyCurveIn(list);
}

bool endsWithIgnoringCase(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && equalIgnoringCase(text.substr(text.size() - end.size()), end);
}

// The one list of numbers whose name ends so.
const TextNode* channelOf(const TextNode& map, std::string_view end) {
  const TextNode* found = nullptr;
  for (std::size_t i = 0; i < map.keys.size(); ++i) {
    const TextNode* list = numberList(&map.items[i]);
    if (list == nullptr || !endsWithIgnoringCase(map.keys[i], end)) continue;
    if (found != nullptr) return nullptr;
    found = list;
  }
  return found;
}

Found fromNamedChannels(const TextNode& map) {
  // Our own results call red "table" where there are three.
  if (const auto* r = numberList(map.find("table")), *g = numberList(map.find("table_green")),
      *b = numberList(map.find("table_blue"));
      r != nullptr && g != nullptr && b != nullptr)
    return threeChannels({r, g, b});
  constexpr std::array<std::array<const char*, 3>, 3> kEnds{
      {{"red", "green", "blue"}, {"_r", "_g", "_b"}, {"r", "g", "b"}}};
  for (const auto& ends : kEnds) {
    std::array<const TextNode*, 3> lists{};
    for (std::size_t c = 0; c < 3; ++c)
      lists[c] = ends[c][1] == '\0' ? numberList(map.find(ends[c])) : channelOf(map, ends[c]);
    if (std::ranges::find(lists, nullptr) == lists.end()) return threeChannels(lists);
  }
  return {};
}

Found fromNamedPair(const TextNode& map) {
  for (const auto& [input, output] : kPairNames)
    if (const auto* x = numberList(map.find(input)), *y = numberList(map.find(output));
        x != nullptr && y != nullptr)
      return oneChannel(samplesOf(*x), samplesOf(*y));
  return {};
}

Found fromMap(const TextNode& map) {
  if (Found channels = fromNamedChannels(map)) return channels;
  if (Found pair = fromNamedPair(map)) return pair;
  for (const char* name : {"table", "codes", "curve", "data", "points"})
    if (const TextNode* item = map.find(name))
      if (Found found = curveIn(*item)) return found;
  return onlyCurveIn(map);
}

// The bits that our own results tell, of whole codes.
void takeBits(const TextNode& map, RawCurve& curve) {
  for (const char* name : {"bits", "output_bits"})
    if (const TextNode* bits = map.find(name);
        bits != nullptr && bits->isNumber() && bits->number >= 8.0 && bits->number <= 16.0)
      curve.bits = static_cast<int>(bits->number);
}

Found curveIn(const TextNode& node) {
  if (node.isList()) return fromList(node);
  if (!node.isMap()) return {};
  Found found = fromMap(node);
  if (found && !found->bits) takeBits(node, *found);
  return found;
}

// The first item of that name and kind, however deep.
const TextNode* findAnywhere(const TextNode& node, std::string_view key, TextNode::Kind kind) {
  if (const TextNode* item = node.find(key); item != nullptr && item->kind == kind) return item;
  for (const TextNode& item : node.items)
    if (const TextNode* found = findAnywhere(item, key, kind)) return found;
  return nullptr;
}

// Names that tuning files and our fits have for a curve that lies among much else.
Found fromKnownName(const TextNode& document) {
  if (const TextNode* pairs =
          numberList(findAnywhere(document, "gamma_curve", TextNode::Kind::List)))
    return fromFlatPairs(*pairs);
  const TextNode* curve = findAnywhere(document, "tone_curve", TextNode::Kind::Map);
  return curve != nullptr ? curveIn(*curve) : Found();
}

}  // namespace

RawCurve curveOf(const TextNode& document) {
  Found found = fromKnownName(document);
  if (!found) found = curveIn(document);
  if (!found)
    throw Refusal(document.line, document.column, {},
                  "there is no list of numbers here that could be a curve");
  return std::move(*found);
}

}  // namespace greycard::reading
