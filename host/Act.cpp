#include "host/Act.h"

#include <utility>

#include "host/CMSGFunction.h"
#include "host/CTransaction.h"
#include "host/LentActs.h"
#include "host/MessageOutput.h"

namespace qd {

namespace {

/// An act whose writes run, on its thread.
struct RunningAct {
  CQDDBSession* session = nullptr;
  bool failed = false;
  RunningAct* above = nullptr;  ///< open acts of other sessions, around the one whose writes run
};
thread_local RunningAct* theRunning = nullptr;

/// The act of a session that goes on, null for none. Writes of an act of another session are no part of it.
RunningAct* RunningOf(const CQDDBSession* session) {
  RunningAct* act = theRunning;
  while (act != nullptr && act->session != session) act = act->above;
  return session != nullptr ? act : nullptr;
}

int RunWrites(RunningAct& act, const std::function<int()>& writes) {
  struct Scope {
    RunningAct* before;
    ~Scope() { theRunning = before; }
  };
  const Scope scope{std::exchange(theRunning, &act)};
  return writes() != 0 && !act.failed ? 1 : 0;
}

}  // namespace

int RunAct(CQDDBSession* session, std::string_view titleKey, const std::function<int()>& writes, int redraw) {
  return RunAct(session, CMSGFunction::GetValue(titleKey), writes, redraw);
}

int RunAct(CQDDBSession* session, const CString& title, const std::function<int()>& writes, int redraw) {
  if (RunningAct* running = RunningOf(session)) {
    const int done = writes() != 0 ? 1 : 0;
    running->failed |= done == 0;
    return done;
  }
  RunningAct act{session, false, theRunning};
  CTransaction transaction(session);
  if (transaction.Begin(title) == 0 || RunWrites(act, writes) == 0) return 0;
  return transaction.Commit(redraw);
}

void* ActsOfThread() {
  return theRunning;
}

LentActs::LentActs(void* acts) : m_before(std::exchange(theRunning, static_cast<RunningAct*>(acts))) {}

LentActs::~LentActs() {
  theRunning = static_cast<RunningAct*>(m_before);
}

struct OpenAct::Body {
  explicit Body(CQDDBSession* session) : running{session, false, theRunning}, transaction(session) {
    theRunning = &running;
  }
  ~Body() {
    RunningAct** place = &theRunning;  // acts may end in another order than they began
    while (*place != nullptr && *place != &running) place = &(*place)->above;
    if (*place != nullptr) *place = running.above;
  }
  Body(const Body&) = delete;
  Body& operator=(const Body&) = delete;
  RunningAct running;
  CTransaction transaction;
};

OpenAct::OpenAct(CQDDBSession* session, const CString& title) : m_body(std::make_unique<Body>(session)) {
  if (m_body->transaction.Begin(title) == 0) m_body.reset();
}

OpenAct::~OpenAct() {
  Rollback();
}

bool OpenAct::IsOpen() const {
  return m_body != nullptr;
}

int OpenAct::Commit(int redraw) {
  if (m_body == nullptr) return 0;
  const std::unique_ptr<Body> body = std::move(m_body);
  if (!body->running.failed) return body->transaction.Commit(redraw);
  body->transaction.Rollback();
  return 0;
}

void OpenAct::Rollback() {
  if (m_body == nullptr) return;
  const std::unique_ptr<Body> body = std::move(m_body);
  body->transaction.Rollback();
}

std::optional<CString> NewName(const CString& old, const CString& wanted,
                               const std::function<bool(const CString&)>& isTaken, NameRefusal refusal) {
  if (wanted == old) return std::nullopt;
  const CString name = CutName(wanted);
  const bool told = refusal == NameRefusal::Told;
  if (isTaken && (isTaken(wanted) || (name != old && isTaken(name)))) {
    if (told) qdMsgOutFormatWarning(CMSGFunction::GetValue("IDS_QD_DB_EXIST_NEW_DATA_NAME"), {wanted});
    return std::nullopt;
  }
  if (name.empty()) {
    if (told) qdMsgOutFormatWarning(CMSGFunction::GetValue("IDS_QD_DB_NAME_EMPTY"));
    return std::nullopt;
  }
  return name != old ? std::optional(name) : std::nullopt;
}

}  // namespace qd
