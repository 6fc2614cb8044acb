/// Matches a log line of any level by its text, a string or a matcher.
#pragma once

#include "support/fake-platform.hpp"

template <typename TextMatcher>
auto LoggedText(const TextMatcher &text) {
  return testing::Field("text", &fake::LogLine::text, text);
}
