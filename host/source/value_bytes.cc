#include "host/source/value_bytes.h"

#include <algorithm>

namespace px {
namespace {

constexpr size_t kPiece = 1024;  // about as much is decoded at a time

bool isBlank(int c) { return c == ' ' || c == '\t'; }

int hexDigit(int c) {
  if ('0' <= c && c <= '9') return c - '0';
  if ('A' <= c && c <= 'F') return c - 'A' + 10;
  if ('a' <= c && c <= 'f') return c - 'a' + 10;
  return -1;
}

bool isBase64(char c) {
  return ('A' <= c && c <= 'Z') || ('a' <= c && c <= 'z') || ('0' <= c && c <= '9') || c == '+' ||
         c == '/' || c == '=';
}

}  // namespace

std::string_view ValueBytes::next() {
  if (ended_) return {};
  switch (transfer_) {
    case Transfer::Plain:
      return nextPlain();
    case Transfer::QuotedPrintable:
      return nextQuotedPrintable();
    case Transfer::Base64:
      return nextBase64();
  }
  return {};
}

// Notes what the break in front of `behind` means. Answers whether the value goes on.
bool ValueBytes::goesOnBehind(Behind behind) {
  ended_ = behind != Behind::More;
  atProperty_ = behind == Behind::Property;
  before_ = Before::Text;
  return !ended_;
}

// Takes the line end that lies ready, or the end of the input. Answers whether the value goes on
// behind a fold.
bool ValueBytes::endLine() {
  end_ = source_->place();
  return goesOnBehind(source_->peek() < 0 ? Behind::End : takeFold(source_, before_));
}

std::string_view ValueBytes::nextPlain() {
  for (;;) {
    if (!atLineEnd_) {
      const Place start = source_->place();
      std::string_view bytes;
      if (source_->takeRestOfLine(&bytes)) {
        end_ = {start.position + bytes.size(), start.line};
        ended_ = true;
        return bytes;
      }
      bytes = source_->readyInLine(&atLineEnd_);
      source_->skip(bytes.size());
      if (!bytes.empty()) {
        noteEscape(bytes);
        return bytes;
      }
    }
    atLineEnd_ = false;
    if (!endLine()) return {};
    if (rule_ == FoldRule::KeepsBlank) return " ";
  }
}

// Notes whether a piece of plain text ends with an escaped line end, in the versions that have
// them.
void ValueBytes::noteEscape(std::string_view piece) {
  const char last = piece.back();
  const char before = piece.size() > 1 ? piece[piece.size() - 2] : last_;
  before_ = before == '\\' && (last == 'n' || last == 'N') ? Before::EncodedLineEnd : Before::Text;
  last_ = last;
}

std::string_view ValueBytes::nextQuotedPrintable() {
  decoded_.clear();
  while (decoded_.size() < kPiece) {
    bool ended;
    const std::string_view bytes = source_->readyInLine(&ended);
    const size_t plain = std::min({bytes.find('='), bytes.size(), kPiece});
    decoded_.append(bytes, 0, plain);
    if (plain > 0) before_ = Before::Text;
    source_->skip(plain);
    if (plain + 2 < bytes.size() && bytes[plain] == '=') {
      const int high = hexDigit(bytes[plain + 1]);
      const int low = hexDigit(bytes[plain + 2]);
      if (high >= 0 && low >= 0) {
        source_->skip(3);
        putByte(high, low);
        continue;
      }
    }
    const int c = source_->peek();
    if (c == '=') {
      source_->skip(1);
      takeEscape();
      if (ended_) break;
    } else if (c < 0 || c == '\r' || c == '\n') {
      if (!endLine()) break;
      if (rule_ == FoldRule::KeepsBlank) decoded_ += ' ';
    }
  }
  return decoded_;
}

// What stands behind "=": two digits, or the line end of a soft break, where some writers put
// blanks in front. Anything else is text.
void ValueBytes::takeEscape() {
  const Place behind = source_->place();
  while (isBlank(source_->peek())) source_->skip(1);
  const int c = source_->peek();
  if (c == '\r' || c == '\n') {
    end_ = source_->place();
    goesOnBehind(takeSoftBreak(source_, before_));
    return;
  }
  before_ = Before::Text;
  const int high = hexDigit(c);
  if (high < 0 || source_->place().position != behind.position) {
    source_->moveTo(behind);
    decoded_ += '=';
    return;
  }
  source_->skip(1);
  const int low = hexDigit(source_->peek());
  if (low < 0) {
    decoded_ += '=';
    decoded_ += static_cast<char>(c);
    return;
  }
  source_->skip(1);
  putByte(high, low);
}

void ValueBytes::putByte(int high, int low) {
  const char byte = static_cast<char>(high << 4 | low);
  before_ = byte == '\n' || byte == '\r' ? Before::EncodedLineEnd : Before::Text;
  if (protect_ && byte == ';') decoded_ += '\\';
  decoded_ += byte;
}

std::string_view ValueBytes::nextBase64() {
  for (;;) {
    bool ended;
    std::string_view bytes = source_->readyInLine(&ended);
    const size_t blank = bytes.find_first_of(" \t");
    if (blank == 0) {
      noteEscape(bytes.substr(0, 1));
      source_->skip(1);
      continue;
    }
    bytes = bytes.substr(0, blank);
    source_->skip(bytes.size());
    if (!bytes.empty()) {
      noteEscape(bytes);
      padded_ = padded_ || bytes.find('=') != bytes.npos;
      return bytes;
    }
    if (!endLine() && !goesOnInBase64()) return {};
  }
}

// Whether the line at which the source stands holds nothing but Base64 digits, so that it belongs
// to the value.
bool ValueBytes::goesOnInBase64() {
  if (padded_) return false;
  const Place start = source_->place();
  bool ended = false;
  bool digits = false;
  do {
    const std::string_view bytes = source_->readyInLine(&ended);
    if (bytes.empty()) break;
    digits = std::all_of(bytes.begin(), bytes.end(), isBase64);
    source_->skip(bytes.size());
  } while (digits && !ended);
  source_->moveTo(start);
  ended_ = !digits;
  return digits;
}

}  // namespace px
