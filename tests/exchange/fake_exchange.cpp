// Stands in for the exchange program and misbehaves. How, is the name of the file that it is given.

#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>
#include <thread>

#include "workbench/exchange/pipe/Protocol.h"

namespace {

using namespace qd::workbench;

void Send(const std::string& bytes) {
  for (std::size_t at = 0; at < bytes.size();) {
    const ssize_t count = write(STDOUT_FILENO, bytes.data() + at, bytes.size() - at);
    if (count <= 0) std::_Exit(3);
    at += static_cast<std::size_t>(count);
  }
}

void Sleep() {
  std::this_thread::sleep_for(std::chrono::hours(1));
}

/// Beats for ever; `moved` says how far it claims to have got.
void BeatForEver(const std::function<std::uint64_t()>& moved, bool busy) {
  std::thread([&moved] {
    while (true) {
      Send(FrameOf(FrameType::Beat, EncodeBeat(moved())));
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
  }).detach();
  volatile std::uint64_t work = 0;
  while (busy) work = work + 1;
  Sleep();
}

std::string Note() {
  return FrameOf(FrameType::Note, Encode(ImportNote{"IDS_WB_NOTE_MORE", "1"}));
}

std::string Part() {
  ImportedPart part;
  part.name = "part";
  part.shape.brep = std::string(100'000, 'x');
  return FrameOf(FrameType::Part, Encode(part));
}

std::string HeadOf(std::uint64_t length) {
  std::string head = FrameOf(FrameType::Part, {});
  head.replace(4, sizeof(length), reinterpret_cast<const char*>(&length), sizeof(length));
  return head;
}

void SendForEver(const std::string& bytes) {
  while (true) Send(bytes);
}

const std::map<std::string, std::function<void()>> kActs{
    {"mute", Sleep},
    {"spinning", [] { BeatForEver([] { return 5; }, true); }},
    {"waiting", [] { BeatForEver([] { return 5; }, false); }},
    {"rereading",
     [] {
       std::uint64_t moved = 0;
       BeatForEver([&moved] { return moved += 1'000'000; }, true);
     }},
    {"announcing",
     [] {
       Send(HeadOf(std::uint64_t{1} << 60));
       Sleep();
     }},
    {"endless-frame",
     [] {
       Send(HeadOf(std::uint64_t{1} << 60));
       SendForEver(std::string(100'000, 'x'));
     }},
    {"streaming", [] { SendForEver(Part()); }},
    {"noting", [] { SendForEver(Note()); }},
    {"progressing", [] { SendForEver(FrameOf(FrameType::Progress, EncodeProgress(7))); }},
    {"garbage", [] { Send(std::string(1000, '\x05')); }},
    {"unknown",
     [] {
       Send(FrameOf(static_cast<FrameType>(77), "x"));
       Sleep();
     }},
    {"closing",
     [] {
       close(STDOUT_FILENO);
       Sleep();
     }},
    {"done-and-staying",
     [] {
       Send(Part() + FrameOf(FrameType::Done, ""));
       Sleep();
     }},
    {"cut", [] { Send(Part().substr(0, 5000)); }},
    {"crashing", [] { std::abort(); }},
    {"out-of-memory",
     [] {
       Send(FrameOf(FrameType::Note, Encode(ImportNote{kMemoryError, ""})));
       std::abort();
     }},
    {"forbidden", [] { raise(SIGSYS); }},
    {"killed", [] { raise(SIGKILL); }},
};

}  // namespace

int main(int, char** argv) {
  std::string name;
  for (char** word = argv; *word != nullptr; ++word) name = *word;
  name.erase(0, name.rfind('/') + 1);
  kActs.at(name)();
  return 0;
}
