#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/host/memory.h"
#include "kestan/host/vec3.h"

namespace vorrel::kestan {

class SampleSchema;

/// A class of the tests, in the extension namespace, with the kinds of member that no element has
/// yet or that are rare.
class Sample final : public SchemaObject {
public:
  using ClassSchema = SampleSchema;
  static const Schema& GetClassSchema();

  Sample(const KmlId& id, const QString& baseUrl, bool notify = true);
  ~Sample() override;

  QString raw_; ///< The reference as it stood in a file.

private:
  friend class SampleSchema;

  QString label_;
  QString note_;
  QString reference_;
  int secret_ = 0;
  mmvector<Vec3<float>> angles_;
  RefPtr<Sample> part_;
};

} // namespace vorrel::kestan
