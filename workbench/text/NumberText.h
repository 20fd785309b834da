#pragma once

#include <limits>
#include <string>
#include <string_view>

namespace qd::workbench {

/// What a number has to be.
struct NumberLimits {
  double least = std::numeric_limits<double>::lowest();
  double greatest = std::numeric_limits<double>::max();
  bool aboveLeast = false;  ///< `least` itself is not allowed
  bool notZero = false;
  bool whole = false;

  static NumberLimits Positive() { return {.least = 0, .aboveLeast = true}; }
  static NumberLimits NotNegative() { return {.least = 0}; }
};

enum class NumberFault {
  None,
  Empty,
  NotANumber,
  Grouped,   ///< a sign in it may divide thousands or begin the decimals
  TooLong,   ///< or too many parentheses in one another
  TooLarge,  ///< no number can be that large, or that near to zero
  DividesByZero,
  NotAboveLeast,
  BelowLeast,
  AboveGreatest,
  Zero,
  NotWhole
};

/// What a text says: a number, or what is wrong with it.
struct NumberReading {
  double value = 0;
  NumberFault fault = NumberFault::None;

  bool IsGood() const { return fault == NumberFault::None; }
};

/// Reads what somebody has typed: a number such as 1.5, 1,5, .5 or 2e-3, or an expression of numbers with + - * /
/// and parentheses. Nothing is guessed: digits are 0 to 9, there are no signs between thousands, and a text that
/// people with another decimal sign would read as another number is refused. `decimalSign`, '.' or ',', is the one
/// of the language on show, in which it is never taken for a sign between thousands.
NumberReading ReadNumber(std::string_view text, char decimalSign, const NumberLimits& limits = {});

/// A number with what is wrong with it, judged by its limits.
NumberReading Judged(double value, const NumberLimits& limits);

/// The shortest text that is read as the same number; empty for what is no finite number.
std::string ShowNumber(double value, char decimalSign);

/// The message key of a fault, null for None. Its places for arguments are, in order: for NotANumber the text; for
/// Grouped the text and the decimal sign; for those of limits the limit.
const char* KeyOf(NumberFault fault);

}  // namespace qd::workbench
