#include "host/CMainFrame.h"

namespace qd {

namespace {
CMainFrame* theFrame = nullptr;
}

CMainFrame::CMainFrame() {
  theFrame = this;
}

CMainFrame::~CMainFrame() {
  if (theFrame == this) theFrame = nullptr;
}

CMainFrame* CMainFrame::Get() {
  return theFrame;
}

}  // namespace qd
