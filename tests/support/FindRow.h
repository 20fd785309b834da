#pragma once

#include <algorithm>
#include <map>

#include "qd_wrt/find/IRow.h"
#include "qd_wrt/find/Query.h"
#include "qd_wrt/find/QueryWords.h"
#include "qd_wrt/find/TitleKey.h"

namespace qd::test {

/// Whether a key holds what the keys of all matches hold.
inline bool HoldsNeedles(const Query& query, const std::string& key) {
  return std::all_of(query.Needles().begin(), query.Needles().end(), [&key](const auto& needles) {
    return std::any_of(needles.begin(), needles.end(),
                       [&key](const std::string& needle) { return key.find(needle) != std::string::npos; });
  });
}

/// A row that is not in a tree: what a query can ask of one, as plain values.
struct FindRow final : IRow {
  explicit FindRow(CString text) : title(std::move(text)), key(find::KeyOf(title)) {}

  std::wstring_view Title() const override { return title; }
  std::string_view Key() const override { return key; }
  std::optional<std::uint64_t> Id() const override { return id; }
  std::optional<COLORREF> Colour() const override { return colour; }
  std::optional<bool> IsShown() const override { return shown; }
  bool IsSelected() const override { return selected; }
  std::uint32_t Kinds() const override { return kinds; }
  std::optional<double> Number(std::size_t field) const override {
    const auto known = numbers.find(field);
    return known == numbers.end() ? std::nullopt : std::optional(known->second);
  }
  void AppendTexts(std::size_t field, TArray<CString>& out) const override {
    const auto known = texts.find(field);
    if (known != texts.end()) out.insert(out.end(), known->second.begin(), known->second.end());
  }

  CString title;
  std::string key;
  std::optional<std::uint64_t> id;
  std::optional<COLORREF> colour;
  std::optional<bool> shown;
  bool selected = false;
  std::uint32_t kinds = 0;
  std::map<std::size_t, double> numbers;
  std::map<std::size_t, TArray<CString>> texts;
};

/// A host with two numbers, a text, and a field that the module has itself.
class FindFields final : public IRowFields {
 public:
  enum : std::size_t { kElements, kVolume, kVendor, kColour };
  TArray<Field> GetFields() const override {
    return {{L"Elements", true}, {L"volume", true}, {L"vendor", false}, {L"colour", false}};
  }
  int GetNumber(const CQDTreeItem&, std::size_t, double&) const override { return 0; }
  int GetTexts(const CQDTreeItem&, std::size_t, TArray<CString>&) const override { return 0; }
};

/// Words in a language of the tests' own: the English ones, of which a few are called otherwise.
inline CString WordOf(std::string_view key) {
  static const std::map<std::string_view, CString> texts{{"IDS_QD_WRT_GEOMSET_SOLID", L"Volumen"},
                                                         {"IDS_QD_WRT_GEOMSET_SURFACE", L"Fl\u00E4che"},
                                                         {"IDS_QD_WRT_FIND_RED", L"rot"}};
  const auto known = texts.find(key);
  return known == texts.end() ? CString(key.begin(), key.end()) : known->second;
}

inline const QueryWords& TestWords() {
  static const FindFields fields;
  static const QueryWords words(WordOf, &fields);
  return words;
}

}  // namespace qd::test
