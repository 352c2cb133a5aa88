#pragma once

#include "kestan/feature/abstractfeature.h"

namespace vorrel::kestan {

class WindowSchema;

/// A feature without a place on the globe, for what a client shows in a window.
class KESTAN_EXPORT Window : public AbstractFeature {
public:
  using ClassSchema = WindowSchema;
  static const Schema& GetClassSchema();
  Window(const KmlId& id, const QString& baseUrl);
  /// For classes that derive from this one, which give the creation notice themselves.
  Window(const Schema& schema, const KmlId& id, const QString& baseUrl);
  ~Window() override;

  void Accept(GeometryVisitorConst* visitor) const override;
  void Accept(GeometryVisitor* visitor) override;
};

} // namespace vorrel::kestan
