#pragma once

#include "kestan/host/export.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace vorrel::kestan {

/// The part of an image that an icon shows, as far as it was said.
///
/// A side has the value that was set; else the one in the query of the image's reference; else, for
/// the size, that of a tile where the query comes with a place in the image.
class KESTAN_EXPORT IconRectangle {
public:
  enum Side { kX, kY, kW, kH };
  static constexpr int kSideCount = 4;
  /// What stands in front of the value of each side in a query.
  static const char* const kParameters[kSideCount];
  /// Where nothing was said: the whole image.
  static constexpr std::int32_t kNothing[kSideCount] = {0, 0, -1, -1};

  void Set(int side, std::int32_t value) { set_.Set(side, value); }
  void Forget(int side) { set_.given &= static_cast<std::uint8_t>(~Bit(side)); }
  bool IsSet(int side) const { return set_.Has(side); }
  /// Reads the query of `href`, of several values for a side the first. Takes separators off the
  /// end that separate nothing.
  void TakeQuery(QString& href);
  /// Null where nothing was said.
  std::optional<std::int32_t> Get(int side) const;

private:
  static constexpr std::uint8_t Bit(int side) { return static_cast<std::uint8_t>(1U << side); }

  struct Sides {
    std::int32_t values[kSideCount] = {};
    std::uint8_t given = 0; // a bit a side

    bool Has(int side) const { return (given & Bit(side)) != 0; }
    void Set(int side, std::int32_t value) {
      values[side] = value;
      given |= Bit(side);
    }
  };

  Sides set_;
  Sides queried_;
  bool hasQuery_ = false;
};

} // namespace vorrel::kestan
