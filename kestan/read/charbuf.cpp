#include "kestan/read/charbuf.h"

#include <cstring>

namespace vorrel::kestan {

namespace {

constexpr int kSmallTextsBeforeShrinking = 256;

bool IsSpace(ushort c) {
  if (c < 0x80)
    return c == ' ' || (c >= 0x09 && c <= 0x0D);
  return QChar::isSpace(static_cast<uint>(c));
}

} // namespace

void CharBuf::Reallocate(int capacity) {
  data_ =
      static_cast<ushort*>(Realloc(data_, static_cast<std::size_t>(capacity_) * sizeof(ushort),
                                   static_cast<std::size_t>(capacity) * sizeof(ushort), nullptr));
  capacity_ = capacity;
}

bool CharBuf::GrowBy(int n) {
  if (tooLong_ || n > kMaxSize - size_) {
    tooLong_ = true;
    return false;
  }
  if (n > capacity_ - size_) {
    int capacity = capacity_ ? capacity_ : kMinCapacity;
    while (n > capacity - size_)
      capacity *= 2;
    Reallocate(capacity);
  }
  return true;
}

void CharBuf::append(const ushort* text, int length) {
  if (!GrowBy(length))
    return;
  std::memcpy(data_ + size_, text, static_cast<std::size_t>(length) * sizeof(ushort));
  size_ += length;
}

void CharBuf::append(QLatin1String text) {
  const int length = static_cast<int>(text.size());
  if (!GrowBy(length))
    return;
  for (int i = 0; i < length; ++i)
    data_[size_ + i] = text[i].unicode();
  size_ += length;
}

void CharBuf::append(char c) { append(QLatin1String(&c, 1)); }

void CharBuf::clear() {
  if (capacity_ > kLargeCapacity) {
    smallTexts_ = size_ > capacity_ / 8 ? 0 : smallTexts_ + 1;
    if (smallTexts_ > kSmallTextsBeforeShrinking)
      free();
  }
  size_ = 0;
  tooLong_ = false;
}

void CharBuf::free() {
  doDelete(data_);
  data_ = nullptr;
  size_ = capacity_ = smallTexts_ = 0;
  tooLong_ = false;
}

QStringView CharBuf::GetTrimmed() const {
  int begin = 0;
  int end = size_;
  while (begin < end && IsSpace(data_[begin]))
    ++begin;
  while (end > begin && IsSpace(data_[end - 1]))
    --end;
  return QStringView(constData() + begin, end - begin);
}

void CharBuf::trim() {
  const QStringView text = GetTrimmed();
  if (!text.isEmpty())
    std::memmove(data_, text.data(), static_cast<std::size_t>(text.size()) * sizeof(ushort));
  size_ = static_cast<int>(text.size());
}

QString CharBuf::trimmed() const {
  const QStringView text = GetTrimmed();
  return text.isEmpty() ? QString() : text.toString();
}

} // namespace vorrel::kestan
