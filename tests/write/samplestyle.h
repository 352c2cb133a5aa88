#pragma once

#include "kestan/core/schemat.h"
#include "kestan/style/styleselector.h"

namespace vorrel::kestan {

class SampleStyleSchema;

/// A style selector of the tests.
class SampleStyle final : public StyleSelector {
public:
  using ClassSchema = SampleStyleSchema;
  static const Schema& GetClassSchema();
  static RefPtr<SampleStyle> Make(const char* id, const char* url = "http://a/b.kml");

  SampleStyle(const KmlId& id, const QString& baseUrl, bool notify = true);
  ~SampleStyle() override;

  void InternalCollectStyles(WriteState& state) const override;
};

class SampleStyleSchema final : public SchemaT<SampleStyle, NewInstancePolicy, NoDerivedPolicy> {
public:
  SampleStyleSchema();
};

} // namespace vorrel::kestan
