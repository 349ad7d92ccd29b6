// Regions: the modeller's text in blocks. Records with more than that (pictures of wires, binary data, materials) are
// refused here, and so kept as their bits.
#include <algorithm>
#include <string>

#include "db/region.h"
#include "host/dwg/packing/packings.h"
#include "host/dwg/record/pieces.h"

namespace gc::dwg::packing {

namespace {

constexpr int kText = 1;

std::string joined(const Elements& lines) {
  std::string text;
  for (int i = 0; i < lines.size(); ++i) {
    const auto& line = *static_cast<const GcDbModelerLine*>(lines.at(i));
    text += toUtf8(view(line.text));
    for (const GcString& more : line.more) text += toUtf8(view(more));
    text += '\n';
  }
  return text;
}

void split(const std::string& text, Elements& lines) {
  constexpr size_t kMostCharacters = 255;
  for (size_t at = 0; at < text.size();) {
    const size_t end = std::min(text.find('\n', at), text.size());
    GcText line = fromUtf8(text.substr(at, end - at));
    if (!line.empty() && line.back() == '\r') line.pop_back();
    auto& element = *static_cast<GcDbModelerLine*>(lines.append());
    element.text = GcString(line.c_str(), std::min(line.size(), kMostCharacters));
    for (size_t from = kMostCharacters; from < line.size(); from += kMostCharacters)
      element.more.append(GcString(line.c_str() + from, std::min(line.size() - from, kMostCharacters)));
    at = end + 1;
  }
}

// Blocks of their size and their characters; an empty one ends them.
template <class Io>
void blocks(Io& io, std::string& text) {
  constexpr size_t kMostInBlock = 4096;
  for (size_t at = 0; !io.rec.failed();) {
    const size_t left = Io::kWriting ? std::min(text.size() - at, kMostInBlock) : 0;
    const int size = io.rec.count(io.rec.bl(static_cast<int32_t>(left)), 8);
    if (size == 0) return;
    for (int i = 0; i < size; ++i) {
      const auto held = static_cast<unsigned char>(Io::kWriting ? text[at + static_cast<size_t>(i)] : 0);
      const auto read = static_cast<char>(io.rec.rc(held));
      if constexpr (!Io::kWriting) text += read;
    }
    at += static_cast<size_t>(size);
  }
}

template <class Io>
bool must(Io& io, bool holds) {
  if constexpr (!Io::kWriting)
    if (!holds) io.rec.fail();
  return holds;
}

template <class Io>
void modelerText(Io& io) {
  Elements lines = io.elements(0);
  if (!must(io, !io.rec.b(false))) return;
  io.rec.b(false);
  if (!must(io, io.rec.bs(kText) == kText)) return;
  std::string text;
  if constexpr (Io::kWriting) text = joined(lines);
  blocks(io, text);
  if constexpr (!Io::kWriting) split(text, lines);
  must(io, !io.rec.b(false));  // no picture of wires
  must(io, io.rec.b(true));    // and no second body
  if (io.version() >= kR2007) must(io, io.rec.bl(0) == 0);
}

constinit const PackRow kRegion[] = {
    section("AcDbModelerGeometry"),
    piece(modelerText<PieceIn>, modelerText<PieceOut>, {1}),
};

}  // namespace

void addRegions(std::vector<ClassPacking>& list) { list.push_back(packingOf("AcDbRegion", kRegion)); }

}  // namespace gc::dwg::packing
