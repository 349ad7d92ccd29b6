#include "host/db/entities/modeler_move.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

#include "host/db/entities/modeler_tags.h"
#include "host/db/entities/modeler_text.h"
#include "host/rx/math/elementary.h"
#include "host/rx/text/number.h"

namespace gcmodeler {

namespace {

constexpr int kBodyParts = 3;  // what a body refers to at its end: lumps, wires, the transformation
constexpr size_t kNumbers = 13;
constexpr std::string_view kTransform = "transform";

GcGeMatrix3d matrixOf(const std::vector<double>& n) {
  GcGeMatrix3d matrix;
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column)
      matrix.entry[row][column] = n[static_cast<size_t>(column * 3 + row)] * n[kNumbers - 1];
    matrix.entry[row][3] = n[static_cast<size_t>(9 + row)];
  }
  return matrix;
}

// The words of a record behind what all records begin with.
std::string wordsOf(const GcGeMatrix3d& matrix) {
  const double scale = matrix.scale();
  std::string words;
  const auto add = [&](double value) { words += gc::realText(value + 0.0) + " "; };
  bool isTurned = false;
  for (int column = 0; column < 3; ++column) {
    for (int row = 0; row < 3; ++row) {
      const double value = matrix.entry[row][column] / scale;
      isTurned = isTurned || value != (row == column ? 1 : 0);
      add(value);
    }
  }
  for (int row = 0; row < 3; ++row) add(matrix.entry[row][3]);
  add(scale);
  words += isTurned ? "rotate " : "no_rotate ";
  words += matrix.det() < 0 ? "reflect " : "no_reflect ";
  return words + "no_shear ";
}

bool numbersOf(std::string_view words, std::vector<double>& numbers) {
  numbers.clear();
  while (numbers.size() < kNumbers) {
    const size_t from = words.find_first_not_of(" \t\r\n");
    if (from == std::string_view::npos) return false;
    words.remove_prefix(from);
    const std::string_view word = words.substr(0, words.find_first_of(" \t\r\n"));
    double value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc() || end != word.data() + word.size() || !std::isfinite(value)) return false;
    numbers.push_back(value);
    words.remove_prefix(word.size());
  }
  return numbers[kNumbers - 1] > 0;
}

// Where something stands in a body that is rewritten.
struct Stretch {
  size_t at = 0;
  size_t size = 0;
  [[nodiscard]] std::string_view of(std::string_view text) const { return text.substr(at, size); }
};

// The places that count, in text and in bytes alike.
struct Plan {
  struct Body {
    std::vector<Stretch> references;  // the last of them is the transformation
    std::vector<Stretch> prefix;      // of every record: attributes and, in newer ones, a number
    int64_t transform = -1;
  };
  struct Transform {
    int64_t index = 0;
    Stretch words;
  };
  std::vector<Body> bodies;
  std::vector<Transform> transforms;
  int64_t recordCount = 0;
  Stretch recordTotal;  // in the head
  size_t end = 0;       // where a further record goes
  bool isUnknown = false;

  [[nodiscard]] const Transform* find(int64_t index) const {
    for (const Transform& each : transforms)
      if (each.index == index) return &each;
    return nullptr;
  }
};

// Pieces of the former content and new ones, in the order of their places.
class Rewrite {
 public:
  void put(Stretch where, std::string what) { m_edits.push_back({where, std::move(what)}); }
  [[nodiscard]] std::string run(std::string_view from) {
    std::stable_sort(m_edits.begin(), m_edits.end(),
                     [](const Edit& a, const Edit& b) { return a.where.at < b.where.at; });
    std::string made;
    size_t at = 0;
    for (const Edit& edit : m_edits) {
      made += from.substr(at, edit.where.at - at);
      made += edit.what;
      at = edit.where.at + edit.where.size;
    }
    made += from.substr(at);
    return made;
  }

 private:
  struct Edit {
    Stretch where;
    std::string what;
  };
  std::vector<Edit> m_edits;
};

// ---- text ------------------------------------------------------------------------------------------------

class TextPlan {
 public:
  explicit TextPlan(std::string_view text) : m_text(text) {}

  bool run(Plan& plan) {
    if (!head(plan)) return false;
    plan.end = m_text.size();
    std::vector<Stretch> record;
    for (Stretch word; next(word);) {
      if (word.of(m_text) == "#") {
        take(record, plan);
        record.clear();
        ++plan.recordCount;
        continue;
      }
      if (record.empty() && word.of(m_text).substr(0, 7) == "End-of-") {
        plan.end = word.at;
        break;
      }
      record.push_back(word);
    }
    return !plan.isUnknown && !plan.bodies.empty();
  }

 private:
  // Three lines, the first of them with how many records there are, or 0.
  bool head(Plan& plan) {
    constexpr int kLines = 3;
    Stretch version;
    if (!next(version) || !next(plan.recordTotal)) return false;
    m_at = 0;
    for (int i = 0; i < kLines; ++i) {
      const size_t end = m_text.find('\n', m_at);
      if (end == std::string_view::npos) return false;
      m_at = end + 1;
    }
    return plan.recordTotal.at < m_text.find('\n');
  }

  bool next(Stretch& word) {
    constexpr std::string_view kBlanks = " \t\r\n";
    const size_t from = m_text.find_first_not_of(kBlanks, m_at);
    if (from == std::string_view::npos) return false;
    const size_t end = std::min(m_text.find_first_of(kBlanks, from), m_text.size());
    word = {from, end - from};
    m_at = end;
    return true;
  }

  void take(const std::vector<Stretch>& record, Plan& plan) const {
    if (record.empty()) return;
    const std::string_view name = record[0].of(m_text);
    plan.isUnknown = plan.isUnknown || name[0] == '-' || name.substr(0, 9) == "Begin-of-";
    if (name == "body") body(record, plan);
    if (name == kTransform) transform(record, plan);
  }

  void body(const std::vector<Stretch>& record, Plan& plan) const {
    Plan::Body body;
    for (size_t i = 1; i < record.size(); ++i)
      if (record[i].of(m_text)[0] == '$') body.references.push_back(record[i]);
    if (body.references.size() < kBodyParts) {
      plan.isUnknown = true;
      return;
    }
    body.prefix.push_back(record[1]);
    if (record[2].of(m_text)[0] != '$') body.prefix.push_back(record[2]);
    const std::string_view last = body.references.back().of(m_text).substr(1);
    const auto [end, error] = std::from_chars(last.data(), last.data() + last.size(), body.transform);
    plan.isUnknown = plan.isUnknown || error != std::errc() || end != last.data() + last.size();
    plan.bodies.push_back(std::move(body));
  }

  // Behind what every record begins with: a number in newer ones.
  void transform(const std::vector<Stretch>& record, Plan& plan) const {
    size_t first = 1;
    for (size_t i = 1; i < record.size(); ++i)
      if (record[i].of(m_text)[0] == '$') first = i + 1;
    constexpr size_t kWords = kNumbers + 3;
    if (record.size() == first + kWords + 1) ++first;
    if (record.size() < first + kWords) return;
    const size_t at = record[first].at;
    plan.transforms.push_back({plan.recordCount, {at, record.back().at + record.back().size - at}});
  }

  std::string_view m_text;
  size_t m_at = 0;
};

// ---- bytes -----------------------------------------------------------------------------------------------

class BinaryPlan {
 public:
  explicit BinaryPlan(std::string_view bytes) : m_bytes(bytes) {}

  bool run(Plan& plan) {
    if (!head(plan)) return false;
    while (m_at < m_bytes.size() && !m_failed) {
      const size_t begin = m_at;
      if (!record(plan)) {
        plan.end = begin;
        break;
      }
      ++plan.recordCount;
    }
    return !m_failed && !plan.isUnknown && !plan.bodies.empty() && plan.end != 0;
  }

  [[nodiscard]] size_t integerSize() const { return m_integerSize; }

 private:
  bool head(Plan& plan) {
    const bool isOlder = m_bytes.starts_with(tags::kOlder);
    if (!isOlder && !m_bytes.starts_with(tags::kNewer)) return false;
    m_at = (isOlder ? tags::kOlder : tags::kNewer).size();
    if (!isOlder) m_integerSize = take(1) == "8" ? 8 : 4;
    take(m_integerSize);
    plan.recordTotal = {m_at, m_integerSize};
    take(3 * m_integerSize);
    constexpr int kTexts = 3, kReals = 3;
    for (int i = 0; i < kTexts; ++i) take(1), take(static_cast<size_t>(number(take(1))));
    for (int i = 0; i < kReals; ++i) take(1 + sizeof(double));
    return !m_failed;
  }

  std::string_view take(size_t size) {
    if (size > m_bytes.size() - m_at) {
      m_failed = true;
      return {};
    }
    m_at += size;
    return m_bytes.substr(m_at - size, size);
  }
  static uint64_t number(std::string_view bytes) {
    uint64_t value = 0;
    if (!bytes.empty()) std::memcpy(&value, bytes.data(), std::min(bytes.size(), sizeof value));
    return value;
  }
  int64_t integer() {
    const uint64_t value = number(take(m_integerSize));
    return m_integerSize == 4 ? static_cast<int32_t>(value) : static_cast<int64_t>(value);
  }

  // False at the end of the body.
  bool record(Plan& plan) {
    std::string name;
    Plan::Body body;
    std::vector<Stretch> values;  // each with its tag
    Stretch words;
    while (!m_failed) {
      const size_t at = m_at;
      const int tag = static_cast<int>(number(take(1)));
      if (tag == tags::kEnd) break;
      if (tag == tags::kKind || tag == tags::kSubKind) {
        const std::string_view part = take(static_cast<size_t>(number(take(1))));
        if (values.empty()) name += std::string(part) + (tag == tags::kSubKind ? "-" : "");
        if (name == "End-") return false;
        if (name == "Begin-") plan.isUnknown = true;
        continue;
      }
      if (tag == tags::kReference) body.references.push_back({m_at, m_integerSize});
      value(tag, body.transform, words);
      values.push_back({at, m_at - at});
    }
    if (name == "body") {
      if (body.references.size() < kBodyParts) {
        plan.isUnknown = true;
        return true;
      }
      body.prefix.push_back(values[0]);
      if (m_bytes[values[1].at] == tags::kInteger) body.prefix.push_back(values[1]);
      plan.bodies.push_back(std::move(body));
    }
    if (name == kTransform) plan.transforms.push_back({plan.recordCount, words});
    return true;
  }

  void value(int tag, int64_t& reference, Stretch& words) {
    switch (tag) {
      case tags::kInteger:
      case tags::kChoice: take(m_integerSize); return;
      case tags::kReference: reference = integer(); return;
      case tags::kReal:
      case tags::kReal2: take(sizeof(double)); return;
      case tags::kPlace:
      case tags::kVector: take(3 * sizeof(double)); return;
      case tags::kText8: take(static_cast<size_t>(number(take(1)))); return;
      case tags::kText16: take(static_cast<size_t>(number(take(2)))); return;
      case tags::kText32: take(static_cast<size_t>(number(take(4)))); return;
      case tags::kLongText: {
        const auto size = static_cast<size_t>(number(take(4)));
        words = {m_at, size};
        take(size);
        return;
      }
      case tags::kTrue:
      case tags::kFalse:
      case tags::kOpen:
      case tags::kClose: return;
      default: m_failed = true;
    }
  }

  std::string_view m_bytes;
  size_t m_at = 0;
  size_t m_integerSize = 4;
  bool m_failed = false;
};

std::string bytesOf(int64_t value, size_t size) {
  std::string bytes(size, '\0');
  std::memcpy(bytes.data(), &value, size);
  return bytes;
}

// What text and bytes have in common: each body gets its transformation. `Form` says how records are spelt.
template <class Form>
bool rewrite(std::string& content, const Plan& plan, const GcGeMatrix3d& matrix, const Form& form) {
  Rewrite edits;
  std::vector<int64_t> done;
  int64_t next = plan.recordCount;
  for (const Plan::Body& body : plan.bodies) {
    if (body.transform < 0) {
      edits.put(body.references.back(), form.reference(next++));
      edits.put({plan.end, 0}, form.record(body, content, wordsOf(matrix)));
      continue;
    }
    if (std::find(done.begin(), done.end(), body.transform) != done.end()) continue;
    done.push_back(body.transform);
    const Plan::Transform* known = plan.find(body.transform);
    std::vector<double> numbers;
    if (known == nullptr || !numbersOf(known->words.of(content), numbers)) return false;
    form.change(edits, known->words, wordsOf(matrix * matrixOf(numbers)));
  }
  form.total(edits, plan, content, next - plan.recordCount);
  content = edits.run(content);
  return true;
}

struct TextForm {
  static std::string reference(int64_t index) { return "$" + std::to_string(index); }
  static std::string record(const Plan::Body& body, std::string_view text, const std::string& words) {
    std::string made(kTransform);
    for (const Stretch& each : body.prefix) made += each.of(text)[0] == '$' ? " $-1" : " -1";
    return made + " " + words + "#\n";
  }
  static void change(Rewrite& edits, Stretch where, const std::string& words) {
    edits.put(where, words.substr(0, words.size() - 1));
  }
  // Texts that do not say how many records they have say 0.
  static void total(Rewrite& edits, const Plan& plan, std::string_view text, int64_t added) {
    int64_t total = 0;
    const std::string_view word = plan.recordTotal.of(text);
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), total);
    if (error == std::errc() && end == word.data() + word.size() && total > 0)
      edits.put(plan.recordTotal, std::to_string(total + added));
  }
};

struct BinaryForm {
  size_t integerSize;

  [[nodiscard]] std::string reference(int64_t index) const { return bytesOf(index, integerSize); }
  [[nodiscard]] std::string record(const Plan::Body& body, std::string_view bytes, const std::string& words) const {
    std::string made;
    made += static_cast<char>(tags::kKind);
    made += static_cast<char>(kTransform.size());
    made += kTransform;
    for (const Stretch& each : body.prefix) made += each.of(bytes)[0] + bytesOf(-1, each.size - 1);
    made += static_cast<char>(tags::kLongText) + bytesOf(static_cast<int64_t>(words.size()), 4) + words;
    return made + static_cast<char>(tags::kEnd);
  }
  // The length stands before the words.
  static void change(Rewrite& edits, Stretch where, const std::string& words) {
    constexpr size_t kLength = 4;
    edits.put({where.at - kLength, where.size + kLength}, bytesOf(static_cast<int64_t>(words.size()), kLength) + words);
  }
  void total(Rewrite& edits, const Plan& plan, std::string_view bytes, int64_t added) const {
    int64_t total = 0;
    std::memcpy(&total, bytes.data() + plan.recordTotal.at, integerSize);
    if (total > 0) edits.put(plan.recordTotal, bytesOf(total + added, integerSize));
  }
};

}  // namespace

bool moveText(std::vector<std::string>& lines, const GcGeMatrix3d& matrix) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  Plan plan;
  if (!TextPlan(text).run(plan) || !rewrite(text, plan, matrix, TextForm())) return false;
  lines.clear();
  for (size_t at = 0; at < text.size();) {
    const size_t end = std::min(text.find('\n', at), text.size());
    lines.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  return true;
}

bool moveBinary(std::string& bytes, const GcGeMatrix3d& matrix) {
  Plan plan;
  BinaryPlan reader(bytes);
  return reader.run(plan) && rewrite(bytes, plan, matrix, BinaryForm{reader.integerSize()});
}

}  // namespace gcmodeler
