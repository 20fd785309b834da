#include "qd_wrt/core/Factories.h"

namespace qd {

namespace {
IQDTreeItemFactory* theFactory = nullptr;
}

IQDTreeItemFactory::IQDTreeItemFactory() {
  theFactory = this;
}

IQDTreeItemFactory::~IQDTreeItemFactory() {
  theFactory = nullptr;
}

IQDTreeItemFactory* IQDTreeItemFactory::Instance() {
  return theFactory;
}

}  // namespace qd
