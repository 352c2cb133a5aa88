#pragma once

#include "kestan/core/schema.h"
#include "kestan/core/schemaregistrar.h"

namespace vorrel::kestan {

// Exported, since some compilers give a template no more visibility than its arguments have.

/// An abstract class.
template <class T> struct KESTAN_EXPORT NoInstancePolicy {
  static constexpr bool kAbstract = true;
};

/// A class with instances: `T(KmlId, baseUrl)`.
template <class T> struct KESTAN_EXPORT NewInstancePolicy {
  static constexpr bool kAbstract = false;
};

/// A class that no document can derive from.
template <class T> struct KESTAN_EXPORT NoDerivedPolicy {
  static constexpr bool kDerivable = false;
};

/// A class that documents can derive from: `T(schema, KmlId, baseUrl)`.
template <class T> struct KESTAN_EXPORT NewDerivedPolicy {
  static constexpr bool kDerivable = true;
};

/// Adds typed creation and the singleton to `Schema`.
///
/// The class `T` names its schema class as `T::ClassSchema`. Members are defined in
/// `schemat_impl.h`, which the source of `T` includes to instantiate the template.
template <class T, template <class> class I, template <class> class D>
class KESTAN_EXPORT SchemaT : public Schema, public I<T>, public D<T> {
public:
  using Singleton = typename T::ClassSchema;

  static Singleton& GetSingleton() {
    if (!s_singleton_)
      CreateSingleton();
    return *s_singleton_;
  }
  /// Its place is known before it's built, so that two schemas can refer to each other.
  static void CreateSingleton();
  static void DeleteSingleton();
  static unsigned GetFieldSpecifiedBit(const Field& field) { return field.GetMaskBit(); }

  RefPtr<SchemaObject> CreateInstance(const KmlId& id, const QString& baseUrl,
                                      MemoryManager* manager) const override;
  RefPtr<SchemaObject> CreateInstanceDerived(const Schema& schema, const KmlId& id,
                                             const QString& baseUrl,
                                             MemoryManager* manager) const override;
  bool IsAbstract() const override { return I<T>::kAbstract; }
  bool IsDerivable() const override { return D<T>::kDerivable; }

protected:
  SchemaT(const QString& name, const Schema* base, Namespace ns, bool experimental = false);
  ~SchemaT() override;

private:
  class Registrar final : public SchemaRegistrar {
  public:
    void CreateSingleton() override { SchemaT::CreateSingleton(); }
    void DeleteSingleton() override { SchemaT::DeleteSingleton(); }
  };

  static Singleton* s_singleton_;
  static Registrar s_registrar_;
};

} // namespace vorrel::kestan
