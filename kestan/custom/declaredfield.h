#pragma once

#include "kestan/core/convertfromstring.h"
#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/schemaobject.h"
#include "kestan/core/simplefield_impl.h"
#include "kestan/core/textfaults.h"

#include <type_traits>
#include <utility>

namespace vorrel::kestan {

/// A single value that a document declares, by the field class `F` for a `T`.
///
/// There's no telling which value could stand for none, so that each instance notes whether it has
/// been given one. A text that doesn't convert gives none, and is kept.
template <class F, class T> class DeclaredField final : public F {
public:
  DeclaredField(Schema& schema, const QString& name, unsigned flags)
      : F(schema, name, 0, Field::kElement, flags, kSize, alignof(T)) {}

  unsigned getSize() const override { return kSize; }
  void construct(SchemaObject& object) const override {
    F::construct(object);
    Given(object) = false;
  }
  bool IsGiven(const SchemaObject& object) const override { return Given(object); }
  bool SetGiven(SchemaObject& object, bool isGiven) const override {
    Given(object) = isGiven;
    return true;
  }
  bool IsUndefined(const SchemaObject& object) const override {
    return !IsGiven(object) || (!std::is_same_v<T, QString> && F::IsUndefined(object));
  }
  void SetTypedObject(SchemaObject& object, T value) const override {
    Given(object) = true;
    F::SetTypedObject(object, std::move(value));
  }
  void copy(SchemaObject& dst, const SchemaObject& src, bool deep) const override {
    if (IsGiven(src))
      F::copy(dst, src, deep);
    else if (IsGiven(dst))
      Clear(dst);
  }
  FromStringResult fromString(SchemaObject& object, const AttributeList* attrs,
                              const NamespaceList* namespaces, const QString& text, int index,
                              Update* update) const override {
    if (IsValue(text) || !this->KeepsRest(object, update))
      return F::fromString(object, attrs, namespaces, text, index, update);
    const DeletionDeferrer deferrer;
    Clear(object);
    this->KeepText(object, attrs, namespaces, text);
    return FromStringResult::kOk;
  }

private:
  static constexpr unsigned kSize = sizeof(T) + 1;

  static bool IsValue(const QString& text) {
    if constexpr (std::is_same_v<T, bool>) { // of which any other text is false
      const QString word = text.trimmed().toLower();
      return word == QLatin1String("true") || word == QLatin1String("false") ||
             word == QLatin1String("0") || word == QLatin1String("1");
    } else {
      T value{};
      return ConvertFromString(text, value);
    }
  }

  bool& Given(const SchemaObject& object) const {
    return this->template Member<bool>(object, this->GetOffset() + sizeof(T));
  }
  void Clear(SchemaObject& object) const {
    this->template Member<T>(object) = T{};
    Given(object) = false;
    this->NotifyFieldChanged(object);
  }
};

/// Many values that a document declares, by the field class `F`. A text of which not all converts
/// is kept.
template <class F> class DeclaredValues final : public F {
public:
  DeclaredValues(Schema& schema, const QString& name, unsigned flags)
      : F(schema, name, 0, Field::kElement, flags) {}

  FromStringResult fromString(SchemaObject& object, const AttributeList* attrs,
                              const NamespaceList* namespaces, const QString& text, int index,
                              Update* update) const override {
    const DeletionDeferrer deferrer;
    const int place = index < 0 ? this->getCount(object) : index;
    const FromStringResult result = F::fromString(object, attrs, namespaces, text, index, update);
    TextFaults faults(text);
    this->FindFaults(object, attrs, faults);
    if (faults.IsEmpty() || result != FromStringResult::kOk || !this->KeepsRest(object, update))
      return result;
    if (this->IsRepeatable())
      object.KeepEntry(*this, place, text);
    else
      object.KeepText(*this, text);
    return result;
  }
};

} // namespace vorrel::kestan
