#include "runtime/ValueFile.h"

#include <algorithm>

#include "runtime/RuntimeError.h"
#include "runtime/Text.h"

namespace trackloom {

namespace {

constexpr std::string_view Separators = ",\r\n";

}  // namespace

std::string ValueReader::next() {
  at_ = skip(" \t", at_);
  if (at_ == bytes_.size()) throw RuntimeError(RuntimeError::InputPastEnd);
  std::string value = bytes_[at_] == '"' ? quoted() : bare();
  passSeparator();
  return value;
}

std::size_t ValueReader::skip(std::string_view characters, std::size_t at) const {
  return std::min(bytes_.find_first_not_of(characters, at), bytes_.size());
}

bool ValueReader::endsValue(std::size_t at) const {
  return at == bytes_.size() || Separators.find(bytes_[at]) != std::string_view::npos;
}

/// The end of the bytes where nothing closes the text.
std::size_t ValueReader::closingQuote(std::size_t from) const {
  std::size_t quote = bytes_.find('"', from);
  while (quote != std::string::npos && !endsValue(skip(" ", quote + 1))) quote = bytes_.find('"', quote + 1);
  return std::min(quote, bytes_.size());
}

std::string ValueReader::quoted() {
  const std::size_t begin = at_ + 1;
  const std::size_t end = closingQuote(begin);
  at_ = end == bytes_.size() ? end : skip(" ", end + 1);
  return bytes_.substr(begin, end - begin);
}

std::string ValueReader::bare() {
  const std::size_t begin = at_;
  at_ = std::min(bytes_.find_first_of(Separators, begin), bytes_.size());
  return bytes_.substr(begin, at_ - begin);
}

void ValueReader::passSeparator() {
  if (at_ == bytes_.size()) return;
  const bool twoBytes = bytes_.compare(at_, 2, CrLf) == 0;
  at_ += twoBytes ? 2 : 1;
}

ValueWriter& ValueWriter::text(std::string_view value) {
  bytes_.append("\"").append(value).append("\"").append(CrLf);
  return *this;
}

ValueWriter& ValueWriter::number(std::int64_t value) {
  bytes_.append(std::to_string(value)).append(CrLf);
  return *this;
}

}  // namespace trackloom
