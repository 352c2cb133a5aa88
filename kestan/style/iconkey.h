#pragma once

#include "kestan/host/export.h"

#include <QString>

#include <cstdint>

namespace vorrel::kestan {

/// What tells the images of icons apart: a renderer shares a texture between icons of one key.
struct KESTAN_EXPORT IconKey {
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t w = 0;
  std::int32_t h = 0;
  QString text;

  IconKey() = default;
  IconKey(const QString& imageText, std::int32_t left, std::int32_t top, std::int32_t width,
          std::int32_t height)
      : x(left), y(top), w(width), h(height), text(imageText) {}

  void CopyFrom(const IconKey& other) { *this = other; }
  std::uint32_t MakeHash() const;

  bool operator==(const IconKey& other) const {
    return x == other.x && y == other.y && w == other.w && h == other.h && text == other.text;
  }
  bool operator!=(const IconKey& other) const { return !(*this == other); }
};

} // namespace vorrel::kestan
