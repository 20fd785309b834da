// The only file of the program that is not itself counted.

#include "benchmarks/scaling/Meter.h"

#include <cstddef>
#include <cstdlib>
#include <cwchar>
#include <limits>
#include <new>

namespace {

constexpr std::uint64_t kStepsOfAllocation = 16;
constexpr std::uint64_t kBytesOfStep = 16;

bool running = false;
std::uint64_t steps = 0;
std::uint64_t limit = std::numeric_limits<std::uint64_t>::max();
void (*atLimit)() = nullptr;

void Add(std::uint64_t more) {
  if (!running) return;
  steps += more;
  if (steps <= limit || atLimit == nullptr) return;
  running = false;
  atLimit();
}

void AddBytes(std::size_t bytes) {
  Add(bytes / kBytesOfStep);
}

void* Allocate(std::size_t size) {
  Add(kStepsOfAllocation);
  void* memory = std::malloc(size != 0 ? size : 1);
  if (memory == nullptr) std::abort();
  return memory;
}

}  // namespace

namespace qd::scaling {

void Meter::Start() {
  running = true;
}

void Meter::Stop() {
  running = false;
}

std::uint64_t Meter::Steps() {
  return steps;
}

void Meter::Reset(std::uint64_t most, void (*onLimit)()) {
  steps = 0;
  limit = most;
  atLimit = onLimit;
}

}  // namespace qd::scaling

// ---- what the compiler calls in counted code ------------------------------------------------------------

extern "C" void __sanitizer_cov_trace_pc() {
  Add(1);
}

// ---- what the linker puts in the place of the library's ---------------------------------------------------

extern "C" {
void* __real_memcpy(void* to, const void* from, std::size_t size);
void* __real_memmove(void* to, const void* from, std::size_t size);
void* __real_memset(void* to, int value, std::size_t size);
int __real_memcmp(const void* a, const void* b, std::size_t size);
wchar_t* __real_wmemcpy(wchar_t* to, const wchar_t* from, std::size_t size);
wchar_t* __real_wmemset(wchar_t* to, wchar_t value, std::size_t size);
int __real_wmemcmp(const wchar_t* a, const wchar_t* b, std::size_t size);

void* __wrap_memcpy(void* to, const void* from, std::size_t size) {
  AddBytes(size);
  return __real_memcpy(to, from, size);
}
void* __wrap_memmove(void* to, const void* from, std::size_t size) {
  AddBytes(size);
  return __real_memmove(to, from, size);
}
void* __wrap_memset(void* to, int value, std::size_t size) {
  AddBytes(size);
  return __real_memset(to, value, size);
}
int __wrap_memcmp(const void* a, const void* b, std::size_t size) {
  AddBytes(size);
  return __real_memcmp(a, b, size);
}
wchar_t* __wrap_wmemcpy(wchar_t* to, const wchar_t* from, std::size_t size) {
  AddBytes(size * sizeof(wchar_t));
  return __real_wmemcpy(to, from, size);
}
wchar_t* __wrap_wmemset(wchar_t* to, wchar_t value, std::size_t size) {
  AddBytes(size * sizeof(wchar_t));
  return __real_wmemset(to, value, size);
}
int __wrap_wmemcmp(const wchar_t* a, const wchar_t* b, std::size_t size) {
  AddBytes(size * sizeof(wchar_t));
  return __real_wmemcmp(a, b, size);
}
}

void* operator new(std::size_t size) {
  return Allocate(size);
}
void* operator new[](std::size_t size) {
  return Allocate(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
