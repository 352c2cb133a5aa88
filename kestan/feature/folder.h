#pragma once

#include "kestan/feature/abstractfolder.h"

namespace vorrel::kestan {

class FolderSchema;

/// A plain folder of features.
class KESTAN_EXPORT Folder final : public AbstractFolder {
public:
  using ClassSchema = FolderSchema;
  static const Schema& GetClassSchema();
  Folder(const KmlId& id, const QString& baseUrl);
  ~Folder() override;

  void accept(FeatureVisitor& visitor) override;
};

} // namespace vorrel::kestan
