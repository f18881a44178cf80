#pragma once

#include <exception>

namespace trackloom {

/// Answers what the toolkit asks of a model, a delegate or an accessible object. It asks in the middle of its own work,
/// also while rows come and go, and nothing may be thrown through it: a question that fails is answered with
/// `otherwise`.
template <class Answer, class Question>
Answer answer(Answer otherwise, const Question& question) noexcept {
  try {
    return question();
  } catch (const std::exception&) {
    return otherwise;
  }
}

}  // namespace trackloom
