#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "workbench/exchange/pipe/Protocol.h"

namespace qd::workbench {

/// What one run of the exchange program may cost before it is taken for lost.
struct ExchangeLimits {
  std::chrono::milliseconds silence{20'000};   ///< without a sign of life
  std::chrono::milliseconds work{120'000};     ///< processor time without getting on
  std::chrono::milliseconds waiting{600'000};  ///< time without getting on, whatever it waits for
  std::uint64_t memory = 0;                    ///< bytes that the program may hold
  std::uint64_t reading = 0;                   ///< bytes; reading more than these is not getting on
  FrameLimits frames;                          ///< what it may send
};

/// What the user has set for all runs; by default what the machine and the kind of file call for. Set before the
/// first run starts.
struct ExchangeSettings {
  std::uint64_t memory = 0;           ///< bytes; 0 for three quarters of the machine's
  std::chrono::seconds silence{0};    ///< 0 for the usual limit
  std::chrono::seconds work{0};       ///< 0 for the limit of the kind of file
  std::vector<std::string> includes;  ///< folders beside its own that a solver deck may take files from
};
ExchangeSettings& SettingsOfExchange();

/// The limits for reading a file: what it may send follows from its size, where its kind says how much a byte of
/// the file can stand for.
ExchangeLimits LimitsForFile(const std::string& path);
/// The limits for work on shapes.
ExchangeLimits LimitsForWork();

}  // namespace qd::workbench
