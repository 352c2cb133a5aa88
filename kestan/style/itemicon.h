#pragma once

#include "kestan/core/schemaobject.h"

#include <QString>

namespace vorrel::kestan {

class ItemIconSchema;

/// The icon of a list entry in one or several states of the entry.
class KESTAN_EXPORT ItemIcon final : public SchemaObject {
public:
  using ClassSchema = ItemIconSchema;
  static const Schema& GetClassSchema();

  /// States; the values of the fetching states share a bit.
  enum State : unsigned {
    kOpen = 1,
    kClosed = 2,
    kError = 4,
    kFetching0 = 48,
    kFetching1 = 80,
    kFetching2 = 144,
    kAnyState = 503, ///< That of an icon without a state.
  };

  ItemIcon(const KmlId& id, const QString& baseUrl, bool notify = true);
  ~ItemIcon() override;

  /// The states that the icon is for, as a mask.
  unsigned GetState() const { return static_cast<unsigned>(state_); }
  void SetState(unsigned mask);
  const QString& GetHref() const { return href_; }
  void SetHref(const QString& href);
  /// The URL to fetch.
  QString GetAbsoluteUrl() const;

  /// How well the icon fits an entry in `state`: the number of bits in common.
  int GetMatchValue(unsigned state) const;
  bool HasEqualValue(const ItemIcon& other) const;

  void WriteKml(WriteState& state) const override;

private:
  friend class ItemIconSchema;

  int state_ = kAnyState;
  mutable QString href_; // stands for another text while it's written
};

} // namespace vorrel::kestan
