#pragma once

#include "kestan/core/color32.h"
#include "kestan/core/schemaobject.h"
#include "kestan/host/datetime.h"
#include "kestan/host/memory.h"
#include "kestan/host/vec3.h"

#include <atomic>

namespace vorrel::kestan {

class ProbeSchema;

/// A class of the tests with a member of every kind, as a client would add one.
class Probe : public SchemaObject {
public:
  using ClassSchema = ProbeSchema;
  static const Schema& GetClassSchema();
  static RefPtr<Probe> Make(const QString& id = QString());
  static std::atomic<int> s_alive; ///< Instances that exist.

  Probe(const KmlId& id, const QString& baseUrl, bool notify = true);
  ~Probe() override;

  unsigned GetFieldsSpecified() const override { return specified_; }
  void NotifyFieldChanged(const Field& field) override;
  void CopyNonFieldStuff(const SchemaObject& src) override;

  unsigned specified_ = 0;
  int notices_ = 0; ///< Field changes that this object was told of.

private:
  friend class ProbeSchema;

  QString label_;
  int count_ = 0;
  unsigned mask_ = 0;
  unsigned short port_ = 0;
  long long size_ = 0;
  bool flag_ = false;
  float ratio_ = 0.5F;
  double angle_ = 0.0;
  QString plain_;
  Color32 color_;
  DateTime when_;
  Vec3<double> axis_;
  Vec3<double> place_;
  int mode_ = 0;
  int sides_ = 0;
  RefPtr<Probe> child_;
  mmvector<RefPtr<Probe>> kids_;
  mmvector<int> ints_;
  mmvector<QString> words_;
  mmvector<double> doubles_;
  mmvector<Vec3<double>> track_;
  mmvector<Vec3<float>> turns_;
  mmvector<QString> values_;
  mmvector<bool> undefined_;
};

} // namespace vorrel::kestan
