#pragma once

#include "kestan/core/bitfield.h"
#include "kestan/core/cdatafield.h"
#include "kestan/core/objfield.h"
#include "kestan/core/objurlfield.h"
#include "kestan/core/phantomfield.h"
#include "kestan/core/schemat.h"
#include "kestan/feature/abstractfeature.h"
#include "kestan/feature/snippetfield.h"

#include <array>

namespace vorrel::kestan {

class KESTAN_EXPORT AbstractFeatureSchema final
    : public SchemaT<AbstractFeature, NoInstancePolicy, NoDerivedPolicy> {
public:
  AbstractFeatureSchema();

  StrField name{*this, "name", OffsetOf(&AbstractFeature::name_), Field::kElement};
  BitField visibility{
      *this,           "visibility",          kBitVisibility, true, SchemaObject::GetBitsOffset(),
      Field::kElement, Field::kUpdateAnywhere};
  BitField open{*this,
                "open",
                kBitOpen,
                false,
                SchemaObject::GetBitsOffset(),
                Field::kElement,
                Field::kUpdateAnywhere};
  StrField address{*this, "address", OffsetOf(&AbstractFeature::address_), Field::kElement};
  StrField phoneNumber{*this, "phoneNumber", OffsetOf(&AbstractFeature::phoneNumber_),
                       Field::kElement};
  SnippetField snippet{*this, "snippet", OffsetOf(&AbstractFeature::snippet_), Field::kElement};
  // Child objects are initialised by the constructor, since their classes lie above this folder.
  ObjField<Snippet> snippetObject;
  CdataField description{*this, "description", OffsetOf(&AbstractFeature::description_),
                         Field::kElement};
  ObjField<AbstractView> abstractView;
  ObjField<TimePrimitive> timePrimitive;
  ObjUrlField<StyleSelector> styleUrl{
      *this,           "styleUrl", OffsetOf(&AbstractFeature::styleUrl_),
      Field::kElement, 0,          OffsetOf(&AbstractFeature::referencedStyleSelector_)};
  ObjField<StyleSelector> inlineStyleSelector;
  ObjField<Region> region;
  ObjField<ExtendedData> extendedData;
  BitField balloonVisibility{*this,
                             "balloonVisibility",
                             kBitBalloonVisibility,
                             false,
                             SchemaObject::GetBitsOffset(),
                             Field::kElement,
                             Field::kUpdateAnywhere | Field::kExtNamespace};
  PhantomField styleMode{*this, "styleMode"};
  SimpleField<float> opacity{*this, "opacity", OffsetOf(&AbstractFeature::opacity_),
                             Field::kElement, Field::kNoWrite};

private:
  friend class AbstractFeature;

  using Reaction = void (AbstractFeature::*)();

  /// What a change of a field brings about, by the field's index; null for most of them. Looked up
  /// for each field that is read.
  std::array<Reaction, 32> reactions_{};
};

extern template class SchemaT<AbstractFeature, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
