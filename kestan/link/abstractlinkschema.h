#pragma once

#include "kestan/core/enumfield.h"
#include "kestan/core/phantomfield.h"
#include "kestan/core/schemat.h"
#include "kestan/core/strfield.h"
#include "kestan/link/abstractlink.h"

namespace vorrel::kestan {

/// The view format, which is written whenever it was given: one that says what is the default
/// elsewhere isn't the same as none.
class KESTAN_EXPORT ViewFormatField final : public StrField {
public:
  using StrField::StrField;

  void WriteKml(const SchemaObject& object, WriteState& state) const override;
};

class KESTAN_EXPORT AbstractLinkSchema final
    : public SchemaT<AbstractLink, NoInstancePolicy, NewDerivedPolicy> {
public:
  AbstractLinkSchema();

  StrField href{*this, "href", OffsetOf(&AbstractLink::href_), Field::kElement};
  EnumField refreshMode{*this,
                        "refreshMode",
                        RefreshModes(),
                        AbstractLink::kOnChange,
                        OffsetOf(&AbstractLink::refreshMode_),
                        Field::kElement};
  SimpleField<float> refreshInterval{*this, "refreshInterval",
                                     OffsetOf(&AbstractLink::refreshInterval_), Field::kElement};
  EnumField viewRefreshMode{*this,
                            "viewRefreshMode",
                            ViewRefreshModes(),
                            AbstractLink::kNever,
                            OffsetOf(&AbstractLink::viewRefreshMode_),
                            Field::kElement};
  SimpleField<float> viewRefreshTime{*this, "viewRefreshTime",
                                     OffsetOf(&AbstractLink::viewRefreshTime_), Field::kElement};
  SimpleField<float> viewBoundScale{*this, "viewBoundScale",
                                    OffsetOf(&AbstractLink::viewBoundScale_), Field::kElement};
  ViewFormatField viewFormat{*this, "viewFormat", OffsetOf(&AbstractLink::viewFormat_),
                             Field::kElement};
  StrField httpQuery{*this, "httpQuery", OffsetOf(&AbstractLink::httpQuery_), Field::kElement};
  SimpleField<double> expireTime{*this, "expireTime", OffsetOf(&AbstractLink::expireTime_),
                                 Field::kHidden};
  SimpleField<int> refreshCounter{*this, "refreshCounter", OffsetOf(&AbstractLink::refreshCounter_),
                                  Field::kHidden};
  PhantomField bound{*this, "bound"}; ///< Fires when the view changes.
  PhantomField errorHandle{*this, "errorHandle"};

  /// The fields on which the URL depends, as a mask.
  unsigned GetUrlFields() const { return urlFields_; }

private:
  static Enum& RefreshModes();
  static Enum& ViewRefreshModes();

  unsigned urlFields_;
};

extern template class SchemaT<AbstractLink, NoInstancePolicy, NewDerivedPolicy>;

} // namespace vorrel::kestan
