#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/core/schemat.h"

#include <new>
#include <type_traits>

namespace vorrel::kestan {

template <class T, template <class> class I, template <class> class D>
typename SchemaT<T, I, D>::Singleton* SchemaT<T, I, D>::s_singleton_ = nullptr;

template <class T, template <class> class I, template <class> class D>
typename SchemaT<T, I, D>::Registrar SchemaT<T, I, D>::s_registrar_;

template <class T, template <class> class I, template <class> class D>
SchemaT<T, I, D>::SchemaT(const QString& name, const Schema* base, Namespace ns, bool experimental)
    : Schema(name, sizeof(T), base, ns, experimental) {
  static_assert(std::is_base_of_v<SchemaT, Singleton>, "T::ClassSchema is another class's schema");
}

template <class T, template <class> class I, template <class> class D>
SchemaT<T, I, D>::~SchemaT() {
  s_singleton_ = nullptr;
}

template <class T, template <class> class I, template <class> class D>
void SchemaT<T, I, D>::CreateSingleton() {
  if (s_singleton_)
    return;
  void* storage = doNew(sizeof(Singleton), HeapManager::GetStaticHeap());
  s_singleton_ = static_cast<Singleton*>(storage);
  new (storage) Singleton();
}

template <class T, template <class> class I, template <class> class D>
void SchemaT<T, I, D>::DeleteSingleton() {
  delete s_singleton_;
}

template <class T, template <class> class I, template <class> class D>
RefPtr<SchemaObject> SchemaT<T, I, D>::CreateInstance(const KmlId& id, const QString& baseUrl,
                                                      MemoryManager* manager) const {
  if constexpr (I<T>::kAbstract) {
    return {};
  } else {
    return RefPtr<SchemaObject>(new (manager) T(id, baseUrl));
  }
}

template <class T, template <class> class I, template <class> class D>
RefPtr<SchemaObject> SchemaT<T, I, D>::CreateInstanceDerived(const Schema& schema, const KmlId& id,
                                                             const QString& baseUrl,
                                                             MemoryManager* manager) const {
  if constexpr (D<T>::kDerivable) {
    // The run-time class has its fields behind the members of T.
    void* storage = doNew(schema.GetSize(), manager);
    return RefPtr<SchemaObject>(::new (storage) T(schema, id, baseUrl));
  } else {
    return {};
  }
}

} // namespace vorrel::kestan
