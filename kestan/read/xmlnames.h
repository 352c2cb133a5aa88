#pragma once

#include "kestan/host/memory.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <string>

namespace vorrel::kestan {

/// The element names of one document, each kept once as 16-bit text: a name that comes again has
/// the same address, so that what has been found out about it can be looked up by that.
class XmlNames {
public:
  XmlNames();

  /// The kept name, good as long as this table; null when the table holds as many names as it
  /// takes, as for a document that is made of different ones.
  const QString* Find(const char* utf8);

private:
  static constexpr std::size_t kSlots = 1024; // a power of two
  static constexpr std::size_t kMaxNames = kSlots / 2;

  struct Name {
    std::string utf8;
    QString text;
  };
  struct Slot {
    std::uint32_t hash = 0;
    const Name* name = nullptr;
  };

  mmvector<Slot> slots_;
  mmvector<std::unique_ptr<Name>> names_;
};

} // namespace vorrel::kestan
