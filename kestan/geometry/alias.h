#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

class AliasSchema;
class Model;

/// Tells where a file is that a model's file names: a texture, mostly.
class KESTAN_EXPORT Alias final : public SchemaObject {
public:
  using ClassSchema = AliasSchema;
  static const Schema& GetClassSchema();
  Alias(const KmlId& id, const QString& baseUrl);
  Alias(const QString& source, const QString& target, const KmlId& id, const QString& baseUrl);
  ~Alias() override;

  /// The name that the model's file uses.
  const QString& GetSourceHref() const { return sourceHref_; }
  const QString& GetTargetHref() const { return targetHref_; }
  void SetTargetHref(const QString& target);
  /// Where the file is. A relative target begins at the model's file; where there's none but one
  /// that begins at the document, it's that. Empty for what can't be made absolute. Looks at the
  /// local files.
  QString GetTargetUrl() const;

  /// An alias without a name or a target says nothing, and isn't written.
  void WriteKml(WriteState& state) const override;
  /// The same. The text isn't used.
  virtual void WriteKml(WriteState& state, const QString& text) const;

private:
  friend class AliasSchema;

  const Model* GetModel() const;
  /// The target in the output, from the model's file there.
  QString GetTargetText(WriteState& state) const;

  QString targetHref_;
  QString sourceHref_;
};

} // namespace vorrel::kestan
