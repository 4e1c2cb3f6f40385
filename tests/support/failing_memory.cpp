// SPDX-License-Identifier: MIT
#include "tests/support/failing_memory.h"

#include <cstdlib>
#include <new>

namespace {

// 0: none fails.
thread_local std::size_t calls_left = 0;
thread_local bool failed = false;

void* Allocate(std::size_t size) {
  if (calls_left != 0 && --calls_left == 0) {
    failed = true;
    throw std::bad_alloc();
  }
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (!memory) throw std::bad_alloc();
  return memory;
}

}  // namespace

// All of the program's own memory comes from here.
void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return Allocate(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace tarvel::testing {

FailingMemory::FailingMemory(std::size_t n) {
  failed = false;
  calls_left = n;
}
FailingMemory::~FailingMemory() { calls_left = 0; }
bool FailingMemory::Failed() const { return failed; }

UncountedMemory::UncountedMemory() : left_(calls_left) { calls_left = 0; }
UncountedMemory::~UncountedMemory() { calls_left = left_; }

}  // namespace tarvel::testing
