#include "workbench/exchange/watch/ExchangeRun.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <utility>

#include "workbench/exchange/watch/PrivateFolder.h"

namespace qd::workbench {

namespace {

constexpr std::chrono::milliseconds kLook{100};  // how often the limits of time are looked at
constexpr std::size_t kMostNotes = 200;          // more than anybody reads

std::string Seconds(std::chrono::milliseconds time) {
  return std::to_string(std::chrono::duration_cast<std::chrono::seconds>(time).count());
}

std::string MiB(std::uint64_t bytes) {
  return std::to_string(bytes >> 20);
}

}  // namespace

ExchangeRun::ExchangeRun(Task task)
    : m_task(std::move(task)), m_wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), m_frames(m_task.limits.frames) {}

ExchangeRun::~ExchangeRun() {
  if (m_wake >= 0) close(m_wake);
}

void ExchangeRun::Cancel() {
  m_cancelled = true;
  eventfd_write(m_wake, 1);
}

void ExchangeRun::WaitLonger() {
  m_waitLonger = true;
  eventfd_write(m_wake, 1);
}

bool ExchangeRun::StartProgram(const std::string& folder) {
  std::vector<std::string> arguments{
      "--parent", std::to_string(getpid()), "--folder", folder, "--memory", std::to_string(m_task.limits.memory)};
  for (const auto* folders : {&SettingsOfExchange().includes, &m_task.includes}) {
    for (const std::string& include : *folders) arguments.insert(arguments.end(), {"--includes", include});
  }
  if (!m_task.isDrawn) arguments.insert(arguments.end(), {"--facets", "none"});
  std::error_code failed;
  const std::filesystem::path file = std::filesystem::absolute(m_task.file, failed);
  arguments.push_back(m_task.take           ? "--export"
                      : m_task.file.empty() ? "--operation"
                      : failed              ? m_task.file
                                            : file.string());
  return m_child.Start(m_task.program, arguments, folder, m_task.request);
}

ExchangeRun::Result ExchangeRun::Run(Listener& listener) {
  const PrivateFolder folder;
  if (folder.Path().empty()) return {nullptr, {"IDS_WB_IMPORT_NO_FOLDER", {}}};
  if (!StartProgram(folder.Path())) return {nullptr, {"IDS_WB_IMPORT_NO_PROGRAM", {}}};
  m_task.request = {};
  StartAnew();
  Step step = Step::GoOn;
  while (step == Step::GoOn) {
    pollfd waits[] = {{m_child.Output(), POLLIN, 0}, {m_wake, POLLIN, 0}};
    poll(waits, std::size(waits), static_cast<int>(kLook.count()));
    eventfd_t events = 0;
    eventfd_read(m_wake, &events);
    if (m_cancelled || !listener.GoesOn()) m_cancelled = true;
    if (m_cancelled) break;
    if (waits[0].revents != 0) step = TakeBytes(listener);
    if (step == Step::GoOn) step = Watch(listener);
  }
  m_child.Kill();  // what it would do after its last frame is of no use
  if (m_cancelled || step != Step::Finished) return {nullptr, m_cancelled ? Message() : m_reason};
  if (m_lostNotes > 0) m_model->notes.push_back({"IDS_WB_NOTE_MORE", std::to_string(m_lostNotes)});
  return {std::move(m_model), {}};
}

ExchangeRun::Step ExchangeRun::TakeBytes(Listener& listener) {
  constexpr std::size_t kPiece = std::size_t{1} << 16;
  char bytes[kPiece];
  const ssize_t count = read(m_child.Output(), bytes, sizeof(bytes));
  if (count == 0) return TakeEnd();
  if (count < 0) return Step::GoOn;
  m_lastSign = Clock::now();
  if (!m_frames.Feed({bytes, static_cast<std::size_t>(count)})) {
    return Fail("IDS_WB_IMPORT_TOO_MUCH", MiB(m_task.limits.frames.total));
  }
  if (m_frames.Arrived() > m_arrived) GotOn(listener);
  m_arrived = m_frames.Arrived();
  Step step = Step::GoOn;
  while (step == Step::GoOn) {
    const auto frame = m_frames.Next();
    if (!frame) break;
    step = TakeFrame(*frame, listener);
  }
  return step;
}

ExchangeRun::Step ExchangeRun::TakeFrame(const FrameReader::Frame& frame, Listener& listener) {
  const auto keep = [&listener, this](auto&& decoded, auto& list) {
    if (!decoded) return Fail("IDS_WB_IMPORT_CRASHED");  // nothing that the program sends
    list.push_back(std::move(*decoded));
    GotOn(listener);
    return Step::GoOn;
  };
  switch (frame.type) {
    case FrameType::Progress:
      if (const auto done = DecodeProgress(frame.payload); done && *done > m_progress) {
        m_progress = *done;
        listener.OnProgress(static_cast<int>(*done));
        GotOn(listener);
      }
      return Step::GoOn;
    case FrameType::Beat:
      if (const auto moved = DecodeBeat(frame.payload); moved && *moved > m_moved) {
        m_moved = *moved;
        if (m_moved <= m_task.limits.reading) GotOn(listener);
      }
      return Step::GoOn;
    case FrameType::Part:
      return keep(DecodePart(frame.payload), m_model->parts);
    case FrameType::Material:
      return keep(DecodeMaterial(frame.payload), m_model->materials);
    case FrameType::Property:
      return keep(DecodeProperty(frame.payload), m_model->properties);
    case FrameType::MeshSet:
      return keep(DecodeMeshSet(frame.payload), m_model->meshSets);
    case FrameType::Note:
      if (auto note = DecodeNote(frame.payload)) {
        KeepNote(std::move(*note));
        return Step::GoOn;
      }
      break;
    case FrameType::Deck:
      if (!m_model->decks.empty()) break;  // a file is one deck
      return keep(DecodeDeck(frame.payload), m_model->decks);
    case FrameType::Bytes:
      if (!m_task.take) break;
      if (!m_task.take(frame.payload)) return Fail("IDS_WB_EXPORT_UNWRITABLE");
      GotOn(listener);
      return Step::GoOn;
    case FrameType::Written:
      if (const auto parts = DecodeWritten(frame.payload)) {
        m_model->written = *parts;
        return Step::GoOn;
      }
      break;
    case FrameType::Done:
      return Step::Finished;
    case FrameType::Error:
      if (const auto error = DecodeError(frame.payload)) {
        return Fail(error->key, error->detail, error->wanted);
      }
      break;
  }
  return Fail("IDS_WB_IMPORT_CRASHED");
}

void ExchangeRun::KeepNote(ImportNote note) {
  if (note.key == kMemoryError) {
    m_outOfMemory = true;
    return;
  }
  // What the system lacks is the same for every file.
  static std::atomic<bool> told = false;
  if (note.key == kUnprotectedNote && told.exchange(true)) return;
  if (m_model->notes.size() < kMostNotes) {
    m_model->notes.push_back(std::move(note));
  } else {
    ++m_lostNotes;
  }
}

/// The pipe is closed: the program has ended, or ends now, or has only closed it.
ExchangeRun::Step ExchangeRun::TakeEnd() {
  constexpr int kPatience = 20;
  for (int i = 0; i < kPatience && !m_cancelled; ++i) {
    const auto end = m_child.TakeEnd();
    if (!end) {
      poll(nullptr, 0, static_cast<int>(kLook.count()));
      continue;
    }
    if (end->signal == SIGSYS) return Fail("IDS_WB_IMPORT_FORBIDDEN");
    if (end->signal == SIGKILL) return Fail("IDS_WB_IMPORT_KILLED");
    break;
  }
  return Fail("IDS_WB_IMPORT_CRASHED");
}

ExchangeRun::Step ExchangeRun::Fail(const std::string& key, std::string detail, std::string wanted) {
  m_reason = {key, std::move(detail), std::move(wanted)};
  // Whatever a library makes of it, that was the cause.
  if (m_outOfMemory) m_reason = {kMemoryError, MiB(m_task.limits.memory)};
  return Step::Failed;
}

void ExchangeRun::StartAnew() {
  m_lastSign = m_lastStep = Clock::now();
  m_workAtLastStep = m_child.WorkTime();
}

void ExchangeRun::GotOn(Listener& listener) {
  m_lastStep = Clock::now();
  m_workAtLastStep = m_child.WorkTime();
  if (std::exchange(m_asking, false)) listener.OnResumed();
}

/// Why the program seems to be lost; no key while it does not.
ExchangeRun::Message ExchangeRun::Lost() const {
  const ExchangeLimits& limits = m_task.limits;
  const Clock::time_point now = Clock::now();
  if (now - m_lastSign > limits.silence) return {"IDS_WB_IMPORT_SILENT", Seconds(limits.silence)};
  if (m_child.WorkTime() - m_workAtLastStep > limits.work) return {"IDS_WB_IMPORT_STUCK", Seconds(limits.work)};
  if (now - m_lastStep > limits.waiting) return {"IDS_WB_IMPORT_WAITING", Seconds(limits.waiting)};
  return {};
}

ExchangeRun::Step ExchangeRun::Watch(Listener& listener) {
  if (m_waitLonger.exchange(false)) {
    StartAnew();
    if (std::exchange(m_asking, false)) listener.OnResumed();
  }
  if (m_asking) return Step::GoOn;
  Message reason = Lost();
  if (reason.key.empty()) return Step::GoOn;
  m_asking = listener.OnStalled(reason);
  if (m_asking) return Step::GoOn;
  m_reason = std::move(reason);
  return Step::Failed;
}

}  // namespace qd::workbench
