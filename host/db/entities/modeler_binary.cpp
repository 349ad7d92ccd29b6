// Binary bodies, read as the text that says the same: one reader then knows both.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "host/db/entities/modeler_tags.h"
#include "host/db/entities/modeler_text.h"
#include "host/rx/text/number.h"

namespace gcmodeler {
namespace {

// Every read looks whether there is enough left; a short one ends the reading.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : m_rest(bytes) {}

  bool run(std::string& text) {
    if (!head()) return false;
    m_text = "binary\n\n\n";
    while (!m_rest.empty() && !m_failed && token()) {
    }
    text = std::move(m_text);
    return !m_failed;
  }

 private:
  bool head() {
    const bool isOlder = m_rest.starts_with(tags::kOlder);
    if (!isOlder && !m_rest.starts_with(tags::kNewer)) return false;
    m_rest.remove_prefix((isOlder ? tags::kOlder : tags::kNewer).size());
    if (!isOlder && !m_rest.empty()) {
      m_integerSize = m_rest[0] == '8' ? 8 : 4;
      m_rest.remove_prefix(1);
    }
    constexpr int kNumbers = 4, kTexts = 3, kReals = 3;
    for (int i = 0; i < kNumbers; ++i) integer();
    for (int i = 0; i < kTexts; ++i) take(1), text(1);
    for (int i = 0; i < kReals; ++i) take(1), real();
    return !m_failed;
  }

  std::string_view take(size_t count) {
    if (count > m_rest.size()) {
      m_failed = true;
      m_rest = {};
      return {};
    }
    const std::string_view taken = m_rest.substr(0, count);
    m_rest.remove_prefix(count);
    return taken;
  }
  // Nothing is copied at the end of the data: there is no address to copy from.
  static void copy(void* to, std::string_view bytes) {
    if (!bytes.empty()) std::memcpy(to, bytes.data(), bytes.size());
  }
  uint64_t number(size_t size) {
    uint64_t value = 0;
    copy(&value, take(size));
    return value;
  }
  int64_t integer() {
    const uint64_t value = number(m_integerSize);
    return m_integerSize == 4 ? static_cast<int32_t>(value) : static_cast<int64_t>(value);
  }
  double real() {
    double value = 0;
    copy(&value, take(sizeof value));
    if (!std::isfinite(value)) m_failed = true;
    return m_failed ? 0 : value;
  }
  std::string_view text(size_t lengthSize) { return take(static_cast<size_t>(number(lengthSize))); }

  void word(std::string_view letters) {
    m_text += letters;
    m_text += ' ';
  }
  // Of letters that would be taken for several words or for a number.
  void quoted(std::string_view letters) {
    m_text += '@';
    for (const char c : letters) m_text += c > ' ' && c < 127 ? c : '_';
    m_text += ' ';
  }
  void reals(int count) {
    for (int i = 0; i < count; ++i) word(gc::realText(real()));
  }

  // False at a tag nobody knows.
  bool token() {
    switch (number(1)) {
      case tags::kInteger:
      case tags::kChoice: word(std::to_string(integer())); return true;
      case tags::kReal:
      case tags::kReal2: reals(1); return true;
      case tags::kPlace:
      case tags::kVector: reals(3); return true;
      case tags::kText8: quoted(text(1)); return true;
      case tags::kText16: quoted(text(2)); return true;
      case tags::kText32: quoted(text(4)); return true;
      case tags::kLongText: word(text(4)); return true;  // the words a record has in a text
      case tags::kTrue: word("reversed"); return true;   // of directions; other words are not looked at
      case tags::kFalse: word("forward"); return true;
      case tags::kReference: word("$" + std::to_string(integer())); return true;
      case tags::kSubKind:
        m_text += text(1);
        m_text += '-';
        return true;
      case tags::kKind: word(text(1)); return true;
      case tags::kOpen: word("{"); return true;
      case tags::kClose: word("}"); return true;
      case tags::kEnd: word("#"); return true;
      default: m_failed = true; return false;
    }
  }

  std::string_view m_rest;
  std::string m_text;
  size_t m_integerSize = 4;
  bool m_failed = false;
};

}  // namespace

bool textOfBinary(std::string_view bytes, std::string& text) { return Reader(bytes).run(text); }

bool readBinary(std::string_view bytes, PlaneArea& area) {
  std::string text;
  return textOfBinary(bytes, text) && read(text, area);
}

size_t binarySize(std::string_view bytes) {
  if (!bytes.starts_with(tags::kOlder) && !bytes.starts_with(tags::kNewer)) return 0;
  size_t size = std::string_view::npos;
  for (const std::string_view end : {tags::kEndOlder, tags::kEndNewer}) {
    const size_t at = bytes.find(end);
    if (at != std::string_view::npos) size = std::min(size, at + end.size());
  }
  return size == std::string_view::npos ? 0 : size;
}

int binaryVersion(std::string_view bytes) {
  const bool isOlder = bytes.starts_with(tags::kOlder);
  if (!isOlder && !bytes.starts_with(tags::kNewer)) return 0;
  bytes.remove_prefix(isOlder ? tags::kOlder.size() : tags::kNewer.size() + 1);
  int32_t version = 0;
  if (bytes.size() >= sizeof version) std::memcpy(&version, bytes.data(), sizeof version);
  return version;
}

}  // namespace gcmodeler
