#include "host/lisp/core/host_calls.h"

#include <charconv>
#include <cstdio>

namespace lisp {

namespace {

void put(std::FILE* file, TextView text) {
  const std::string bytes = toUtf8(text);
  std::fwrite(bytes.data(), 1, bytes.size(), file);
  std::fflush(file);
}

}  // namespace

HostCalls::~HostCalls() = default;

void HostCalls::write(TextView text) { put(stdout, text); }

bool HostCalls::readLine(Text&) { return false; }

LispValue HostCalls::callExternal(int, Args&) { return LispValue::nil(); }

void HostCalls::formatEntityName(uint64_t id, Text& out) {
  char buffer[20];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, id, 16).ptr;
  appendAscii(out, std::string_view(buffer, static_cast<size_t>(end - buffer)));
}

uint64_t HostCalls::selectionSetNumber(uint64_t handle) { return handle; }

void HostCalls::releaseSelectionSet(uint64_t) {}

const char* HostCalls::reasonUnavailable(TextView) { return ""; }
void HostCalls::alert(TextView text) { write(Text(text) + GC_T("\n")); }

void HostCalls::diagnose(TextView text) { put(stderr, text); }

}  // namespace lisp
