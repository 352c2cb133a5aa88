#include "kestan/read/xmlnames.h"

#include <cstring>

namespace vorrel::kestan {

namespace {

/// Mixes the length, the first and the last eight bytes: few names agree in all of them.
std::uint32_t Hash(const char* text, std::size_t length) {
  std::uint64_t head = 0;
  std::uint64_t tail = 0;
  if (length >= sizeof head) {
    std::memcpy(&head, text, sizeof head);
    std::memcpy(&tail, text + length - sizeof tail, sizeof tail);
  } else {
    for (std::size_t i = 0; i < length; ++i)
      head = head << 8 | static_cast<unsigned char>(text[i]);
  }
  const std::uint64_t mixed = (head ^ (tail * 0x9E3779B97F4A7C15U) ^ length) * 0xC2B2AE3D27D4EB4FU;
  return static_cast<std::uint32_t>(mixed >> 32);
}

} // namespace

XmlNames::XmlNames() : slots_(kSlots) {}

bool XmlNames::IsName(const ushort* text) {
  for (; *text; ++text) {
    if (*text == 0xAA || *text == 0xB5 || *text == 0xBA)
      return false;
  }
  return true;
}

const QString* XmlNames::Find(const char* utf8) {
  const std::size_t length = std::strlen(utf8);
  const std::uint32_t hash = Hash(utf8, length);
  std::size_t place = hash & (kSlots - 1);
  for (; slots_[place].name; place = (place + 1) & (kSlots - 1)) {
    const Slot& slot = slots_[place];
    if (slot.hash == hash && slot.name->utf8.size() == length &&
        std::memcmp(slot.name->utf8.data(), utf8, length) == 0)
      return &slot.name->text;
  }
  if (names_.size() == kMaxNames)
    return nullptr;
  const QString text = QString::fromUtf8(utf8, static_cast<int>(length));
  if (!IsName(text.utf16()))
    return nullptr;
  names_.push_back(std::make_unique<Name>(Name{std::string(utf8, length), text}));
  slots_[place] = {hash, names_.back().get()};
  return &names_.back()->text;
}

} // namespace vorrel::kestan
