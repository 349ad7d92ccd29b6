#include "host/lisp/core/stack_memory.h"

#include "host/lisp/core/error.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/mman.h>
#endif

namespace lisp {

#ifdef _WIN32

// Committed memory is backed by the page file but touched page by page.
StackMemory::StackMemory(size_t bytes)
    : m_data(VirtualAlloc(nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE)), m_bytes(bytes) {
  if (!m_data) fail(ErrorKind::MemoryLimit, "out of memory");
}

StackMemory::~StackMemory() { VirtualFree(m_data, 0, MEM_RELEASE); }

#else

StackMemory::StackMemory(size_t bytes)
    : m_data(mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0)),
      m_bytes(bytes) {
  if (m_data == MAP_FAILED) fail(ErrorKind::MemoryLimit, "out of memory");
}

StackMemory::~StackMemory() { munmap(m_data, m_bytes); }

#endif

}  // namespace lisp
