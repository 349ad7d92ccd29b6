// Memory for database objects: blocks of equal size cut from large slabs, so that a small object costs its
// size and nothing more. Main thread only. Freed blocks are used again; slabs live as long as the process.
#pragma once

#include <cstddef>

void* gcdbPoolAlloc(std::size_t size) noexcept;  // null when memory is exhausted
void gcdbPoolFree(void* memory, std::size_t size) noexcept;
