#include "cli/terminal.h"

#include <cstdio>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#define GC_FD(name) _##name  // the C library's names for file descriptors
#else
#include <unistd.h>
#define GC_FD(name) name
#endif

namespace cli {

namespace {
constexpr size_t kBufferSize = 1 << 16;
}

Terminal::Terminal() : m_output(GC_FD(dup)(1)) {
  GC_FD(dup2)(2, 1);
#ifdef _WIN32
  _setmode(m_output, _O_BINARY);
  _setmode(0, _O_BINARY);
  _setmode(1, _O_BINARY);
  _setmode(2, _O_BINARY);
#endif
}

Terminal::~Terminal() {
  flush();
  std::fflush(stdout);
  GC_FD(close)(m_output);
}

void Terminal::write(std::string_view bytes) {
  m_buffer.append(bytes);
  if (m_buffer.size() >= kBufferSize) flush();
}

void Terminal::flush() {
  std::string_view rest = m_buffer;
  while (!rest.empty() && m_good) {
    const auto written =
        ::GC_FD(write)(m_output, rest.data(), static_cast<unsigned>(std::min(rest.size(), size_t{1} << 30)));
    if (written <= 0)
      m_good = false;
    else
      rest.remove_prefix(static_cast<size_t>(written));
  }
  m_buffer.clear();
}

bool Terminal::inputIsTerminal() const { return GC_FD(isatty)(0) != 0; }
bool Terminal::outputIsTerminal() const { return GC_FD(isatty)(m_output) != 0; }

void complain(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stderr);
  std::fflush(stderr);
}

}  // namespace cli
