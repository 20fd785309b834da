#include "workbench/exchange/watch/ExchangeLimits.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "workbench/exchange/formats/Format.h"

namespace qd::workbench {

namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t kMiB = std::uint64_t{1} << 20;

std::uint64_t MachineMemory() {
  return static_cast<std::uint64_t>(sysconf(_SC_PHYS_PAGES)) * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
}

ExchangeLimits Basic() {
  const ExchangeSettings& settings = SettingsOfExchange();
  ExchangeLimits limits;
  limits.memory = settings.memory != 0 ? settings.memory : MachineMemory() / 4 * 3;
  if (settings.silence.count() > 0) limits.silence = settings.silence;
  // We hold a frame and what it says at once, and the model afterwards.
  limits.frames.total = std::max(MachineMemory() / 4, 256 * kMiB);
  limits.frames.frame = limits.frames.total / 2;
  limits.reading = 1024 * kMiB;
  return limits;
}

void SetWork(ExchangeLimits& limits, std::chrono::milliseconds work) {
  const ExchangeSettings& settings = SettingsOfExchange();
  limits.work = settings.work.count() > 0 ? std::chrono::milliseconds(settings.work) : work;
  limits.waiting = limits.work * 10;
}

/// A file of no known format is refused soon; it gets what CAD files get.
bool IsMesh(const std::string& path) {
  const Format* format = FormatOfPath(path);
  return format != nullptr && !format->Carry().shapes;
}

}  // namespace

ExchangeSettings& SettingsOfExchange() {
  static ExchangeSettings settings;
  return settings;
}

ExchangeLimits LimitsForFile(const std::string& path) {
  // A model of many uses of one part is much larger than its file; a mesh is written out node by node.
  constexpr std::uint64_t kMeshBytesPerByte = 256;
  constexpr std::uint64_t kReadings = 64;  // of the whole file
  constexpr std::chrono::minutes kMeshWork{2};
  constexpr std::chrono::minutes kCadWork{5};
  ExchangeLimits limits = Basic();
  std::error_code failed;
  const std::uintmax_t size = fs::file_size(path, failed);
  const bool isMesh = IsMesh(path);
  SetWork(limits, isMesh ? kMeshWork : kCadWork);
  if (failed || size > limits.frames.total) return limits;
  limits.reading = 64 * kMiB + size * kReadings;
  if (!isMesh) return limits;
  limits.frames.total = std::min(limits.frames.total, 64 * kMiB + size * kMeshBytesPerByte);
  limits.frames.frame = std::min(limits.frames.frame, limits.frames.total);
  return limits;
}

ExchangeLimits LimitsForWork() {
  constexpr std::chrono::minutes kMeshing{10};
  ExchangeLimits limits = Basic();
  SetWork(limits, kMeshing);
  return limits;
}

}  // namespace qd::workbench
