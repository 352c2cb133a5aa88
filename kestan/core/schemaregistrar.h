#pragma once

#include "kestan/host/export.h"

namespace vorrel::kestan {

/// Static object that brings one schema singleton up and down. All of them form one list, which
/// is complete before the library starts.
class KESTAN_EXPORT SchemaRegistrar {
public:
  SchemaRegistrar();
  SchemaRegistrar(const SchemaRegistrar&) = delete;
  SchemaRegistrar& operator=(const SchemaRegistrar&) = delete;
  virtual ~SchemaRegistrar();

  virtual void CreateSingleton() = 0;
  virtual void DeleteSingleton() = 0;

  static void CreateSingletons();
  static void DeleteSingletons();

private:
  SchemaRegistrar* next_;
  SchemaRegistrar* prev_ = nullptr;

  static SchemaRegistrar* s_head;
};

} // namespace vorrel::kestan
