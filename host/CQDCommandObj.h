#pragma once

#include <map>
#include <string>
#include <variant>
#include <vector>

#include "host/CQDDocBase.h"
#include "host/Records.h"
#include "platform/Export.h"

namespace qd {

/// A command of the host with named parameters. The host runs it as one undoable act.
class QD_EXPORT CQDCommandObj {
 public:
  /// What a parameter can be.
  using Value = std::variant<int, CString, iterator, std::vector<iterator>, std::vector<tagTGset>>;

  /// Neither runs anything nor owns the document.
  CQDCommandObj(CQDDocBase* doc, CString name) : m_doc(doc), m_name(std::move(name)) {}

  /// Gives a parameter, in place of one of the same name. Returns this, so that calls can be chained.
  CQDCommandObj& Set(const CString& parameter, Value value);
  const CString& GetName() const { return m_name; }  ///< what the host knows the command by
  const std::map<CString, Value>& GetParameters() const { return m_parameters; }  ///< all that was given, by name
  /// Null when the parameter is missing or of another type.
  template <typename T>
  const T* Get(const CString& parameter) const {
    const auto found = m_parameters.find(parameter);
    return found != m_parameters.end() ? std::get_if<T>(&found->second) : nullptr;
  }
  /// Returns 1, or 0 with nothing changed.
  int Execute();

 private:
  CQDDocBase* m_doc;
  CString m_name;
  std::map<CString, Value> m_parameters;
};

}  // namespace qd
