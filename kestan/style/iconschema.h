#pragma once

#include "kestan/core/schemat.h"
#include "kestan/core/simplefield.h"
#include "kestan/style/icon.h"

namespace vorrel::kestan {

/// A side of the rectangle. One that was given is written also when it's the default, where the
/// URL's query or the older element could mean something else.
class KESTAN_EXPORT IconSideField final : public SimpleField<int> {
public:
  using SimpleField::SimpleField;

  void WriteKml(const SchemaObject& object, WriteState& state) const override;
};

class KESTAN_EXPORT IconSchema final : public SchemaT<Icon, NewInstancePolicy, NoDerivedPolicy> {
public:
  IconSchema();

  IconSideField x{*this, "x", OffsetOf(&Icon::x_), Field::kElement, Field::kExtNamespace};
  IconSideField y{*this, "y", OffsetOf(&Icon::y_), Field::kElement, Field::kExtNamespace};
  IconSideField w{*this, "w", OffsetOf(&Icon::w_), Field::kElement, Field::kExtNamespace};
  IconSideField h{*this, "h", OffsetOf(&Icon::h_), Field::kElement, Field::kExtNamespace};
  SimpleField<int> legacyX{*this, "x", OffsetOf(&Icon::legacyX_), Field::kElement};
  SimpleField<int> legacyY{*this, "y", OffsetOf(&Icon::legacyY_), Field::kElement};
  SimpleField<int> legacyW{*this, "w", OffsetOf(&Icon::legacyW_), Field::kElement};
  SimpleField<int> legacyH{*this, "h", OffsetOf(&Icon::legacyH_), Field::kElement};

  /// The extension fields, and the older ones, in the order x, y, w, h.
  static constexpr int kSideCount = 4;
  const IconSideField* const sides[kSideCount] = {&x, &y, &w, &h};
  const SimpleField<int>* const legacySides[kSideCount] = {&legacyX, &legacyY, &legacyW, &legacyH};
};

extern template class SchemaT<Icon, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
