#pragma once

#include "kestan/feature/typedcontainer.h"

namespace vorrel::kestan {

class AbstractFeature;
class AbstractFeatureContainerSchema;
class AbstractFolder;

/// The features of a folder.
class KESTAN_EXPORT AbstractFeatureContainer final
    : public TypedContainer<AbstractFolder, AbstractFeature> {
public:
  using ClassSchema = AbstractFeatureContainerSchema;
  static const Schema& GetClassSchema();
  AbstractFeatureContainer(const KmlId& id, const QString& baseUrl);
  ~AbstractFeatureContainer() override;

private:
  void Add(AbstractFolder& parent, AbstractFeature& element) const override;
  void Remove(AbstractFolder& parent, AbstractFeature& element) const override;
  void Insert(AbstractFolder& parent, int index, AbstractFeature& element) const override;
  int Find(const AbstractFolder& parent, const AbstractFeature& element) const override;
  AbstractFeature* Get(const AbstractFolder& parent, int index) const override;
  int Count(const AbstractFolder& parent) const override;
};

} // namespace vorrel::kestan
