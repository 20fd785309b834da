#include "workbench/text/NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "workbench/text/Ascii.h"

namespace qd::workbench {

namespace {

constexpr std::size_t kMostLetters = 200;
constexpr int kMostDepth = 32;

bool IsDigit(char letter) {
  return letter >= '0' && letter <= '9';
}

bool IsDecimalSign(char letter) {
  return letter == '.' || letter == ',';
}

/// The minus of typographers, as it comes with numbers copied from a text.
constexpr std::string_view kMinus = "\xE2\x88\x92";

/// Reads an expression from left to right. After the first fault nothing is read any more.
class Reader {
 public:
  Reader(std::string_view text, char decimalSign) : m_rest(text), m_decimalSign(decimalSign) {}

  NumberReading ReadAll() {
    const double value = Sum(0);
    SkipBlanks();
    if (m_fault == NumberFault::None && !m_rest.empty()) m_fault = NumberFault::NotANumber;
    return {m_fault == NumberFault::None ? value : 0, m_fault};
  }

 private:
  double Fail(NumberFault fault) {
    if (m_fault == NumberFault::None) m_fault = fault;
    m_rest = {};
    return 0;
  }

  /// What is worked out on the way must be a number, too: one divided by what is too large would be 0.
  double Kept(double value) { return std::isfinite(value) ? value : Fail(NumberFault::TooLarge); }

  void SkipBlanks() {
    while (!m_rest.empty() && (m_rest.front() == ' ' || m_rest.front() == '\t')) m_rest.remove_prefix(1);
  }

  /// Takes one of two signs, 0 when neither comes next.
  char Take(char one, char other) {
    SkipBlanks();
    const bool minus = m_rest.starts_with(kMinus);
    const char next = minus ? '-' : m_rest.empty() ? '\0' : m_rest.front();
    if (next == '\0' || (next != one && next != other)) return 0;
    m_rest.remove_prefix(minus ? kMinus.size() : 1);
    return next;
  }

  double Sum(int depth) {
    double sum = Product(depth);
    while (const char sign = Take('+', '-')) {
      const double next = Product(depth);
      sum = Kept(sign == '+' ? sum + next : sum - next);
    }
    return sum;
  }

  double Product(int depth) {
    double product = Factor(depth);
    while (const char sign = Take('*', '/')) {
      const double next = Factor(depth);
      if (m_fault != NumberFault::None) return 0;
      if (sign == '/' && next == 0) return Fail(NumberFault::DividesByZero);
      const bool zero = product == 0 || next == 0;
      product = Kept(sign == '*' ? product * next : product / next);
      if (product == 0 && !zero) return Fail(NumberFault::TooLarge);
    }
    return product;
  }

  double Factor(int depth) {
    if (depth > kMostDepth) return Fail(NumberFault::TooLong);
    if (const char sign = Take('+', '-')) {
      const double value = Factor(depth + 1);
      return sign == '-' ? -value : value;
    }
    if (Take('(', '(') == 0) return Number();
    const double value = Sum(depth + 1);
    if (Take(')', ')') == 0) return Fail(NumberFault::NotANumber);
    return value;
  }

  std::string_view TakeDigits() {
    const auto end = std::find_if_not(m_rest.begin(), m_rest.end(), IsDigit);
    const std::string_view digits = m_rest.substr(0, static_cast<std::size_t>(end - m_rest.begin()));
    m_rest.remove_prefix(digits.size());
    return digits;
  }

  /// Whether a sign between these digits could divide thousands for somebody.
  bool MayGroup(char sign, std::string_view before, std::string_view behind) const {
    constexpr std::size_t kGroup = 3;
    const bool leads = !before.empty() && before.size() <= kGroup && before.front() != '0';
    return sign != m_decimalSign && leads && behind.size() == kGroup;
  }

  double Number() {
    SkipBlanks();
    const std::string_view before = TakeDigits();
    std::string_view behind;
    char sign = 0;
    if (!m_rest.empty() && IsDecimalSign(m_rest.front())) {
      sign = m_rest.front();
      m_rest.remove_prefix(1);
      behind = TakeDigits();
    }
    if (before.empty() && behind.empty()) return Fail(NumberFault::NotANumber);
    const bool second = !behind.empty() && !m_rest.empty() && IsDecimalSign(m_rest.front());
    if (second || MayGroup(sign, before, behind)) return Fail(NumberFault::Grouped);
    std::string plain(before.empty() ? "0" : before);
    if (!behind.empty()) plain.append(".").append(behind);
    const bool zero = plain.find_first_of("123456789") == std::string::npos;
    if (!m_rest.empty() && (m_rest.front() == 'e' || m_rest.front() == 'E')) {
      m_rest.remove_prefix(1);
      plain += 'e';
      if (const char exponentSign = TakeExponentSign()) plain += exponentSign;
      const std::string_view exponent = TakeDigits();
      if (exponent.empty()) return Fail(NumberFault::NotANumber);
      plain.append(exponent);
    }
    double value = 0;
    const std::from_chars_result result = std::from_chars(plain.data(), plain.data() + plain.size(), value);
    if (zero) return 0;
    if (result.ec != std::errc{} || !std::isfinite(value) || value == 0) return Fail(NumberFault::TooLarge);
    return value;
  }

  /// No blank may stand before it: "2 e -3" is no number.
  char TakeExponentSign() {
    const bool blank = !m_rest.empty() && (m_rest.front() == ' ' || m_rest.front() == '\t');
    return blank ? '\0' : Take('+', '-');
  }

  std::string_view m_rest;
  char m_decimalSign;
  NumberFault m_fault = NumberFault::None;
};

NumberFault FaultOf(double value, const NumberLimits& limits) {
  if (limits.notZero && value == 0) return NumberFault::Zero;
  if (limits.aboveLeast && value <= limits.least) return NumberFault::NotAboveLeast;
  if (value < limits.least) return NumberFault::BelowLeast;
  if (value > limits.greatest) return NumberFault::AboveGreatest;
  return limits.whole && value != std::floor(value) ? NumberFault::NotWhole : NumberFault::None;
}

}  // namespace

NumberReading ReadNumber(std::string_view text, char decimalSign, const NumberLimits& limits) {
  if (text.size() > kMostLetters) return {0, NumberFault::TooLong};
  if (Trimmed(text).empty()) return {0, NumberFault::Empty};
  NumberReading reading = Reader(Trimmed(text), decimalSign).ReadAll();
  return reading.IsGood() ? Judged(reading.value, limits) : reading;
}

NumberReading Judged(double value, const NumberLimits& limits) {
  if (!std::isfinite(value)) return {0, NumberFault::TooLarge};
  return {value, FaultOf(value, limits)};
}

std::string ShowNumber(double value, char decimalSign) {
  constexpr double kLeastPlain = 1e-4;
  constexpr double kMostPlain = 1e15;
  if (!std::isfinite(value)) return {};
  const double size = std::fabs(value);
  const bool plain = value == 0 || (size >= kLeastPlain && size < kMostPlain);
  std::array<char, 40> room{};
  const std::to_chars_result end = std::to_chars(room.data(), room.data() + room.size(), value == 0 ? 0 : value,
                                                 plain ? std::chars_format::fixed : std::chars_format::scientific);
  std::string text(room.data(), end.ptr);
  std::replace(text.begin(), text.end(), '.', decimalSign);
  return text;
}

const char* KeyOf(NumberFault fault) {
  switch (fault) {
    case NumberFault::None:
      return nullptr;
    case NumberFault::Empty:
      return "IDS_WB_NUMBER_EMPTY";
    case NumberFault::NotANumber:
      return "IDS_WB_NUMBER_NONE";
    case NumberFault::Grouped:
      return "IDS_WB_NUMBER_GROUPED";
    case NumberFault::TooLong:
      return "IDS_WB_NUMBER_LONG";
    case NumberFault::TooLarge:
      return "IDS_WB_NUMBER_LARGE";
    case NumberFault::DividesByZero:
      return "IDS_WB_NUMBER_DIVIDES";
    case NumberFault::NotAboveLeast:
      return "IDS_WB_NUMBER_ABOVE";
    case NumberFault::BelowLeast:
      return "IDS_WB_NUMBER_LEAST";
    case NumberFault::AboveGreatest:
      return "IDS_WB_NUMBER_GREATEST";
    case NumberFault::Zero:
      return "IDS_WB_NUMBER_ZERO";
    case NumberFault::NotWhole:
      return "IDS_WB_NUMBER_WHOLE";
  }
  return nullptr;
}

}  // namespace qd::workbench
