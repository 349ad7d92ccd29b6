#include "module/log/logplatform.h"

#ifdef _WIN32

std::FILE* logplatform::openToAppend(const GcString& fileName) { return _wfopen(fileName.c_str(), L"ab"); }

std::tm logplatform::localTime(std::time_t time) {
  std::tm local{};
  localtime_s(&local, &time);
  return local;
}

#else

#include <string>

namespace {

// File names are UTF-8 here. A lone surrogate becomes U+FFFD.
std::string fileNameBytes(const GcString& name) {
  std::string out;
  const std::size_t length = name.length();
  for (std::size_t i = 0; i < length; ++i) {
    uint32_t code = name[i];
    const bool isPair = (code & 0xFC00u) == 0xD800u && i + 1 < length && (name[i + 1] & 0xFC00u) == 0xDC00u;
    if (isPair)
      code = 0x10000u + ((code & 0x3FFu) << 10) + (name[++i] & 0x3FFu);
    else if ((code & 0xF800u) == 0xD800u)
      code = 0xFFFDu;
    const int tail = code < 0x80u ? 0 : code < 0x800u ? 1 : code < 0x10000u ? 2 : 3;
    constexpr uint8_t kLead[] = {0x00, 0xC0, 0xE0, 0xF0};
    out += static_cast<char>(kLead[tail] | (code >> (6 * tail)));
    for (int left = tail - 1; left >= 0; --left) out += static_cast<char>(0x80u | ((code >> (6 * left)) & 0x3Fu));
  }
  return out;
}

}  // namespace

std::FILE* logplatform::openToAppend(const GcString& fileName) {
  return std::fopen(fileNameBytes(fileName).c_str(), "ab");
}

std::tm logplatform::localTime(std::time_t time) {
  std::tm local{};
  localtime_r(&time, &local);
  return local;
}

#endif
