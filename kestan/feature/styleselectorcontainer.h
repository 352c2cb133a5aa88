#pragma once

#include "kestan/feature/typedcontainer.h"

namespace vorrel::kestan {

class Document;
class StyleSelector;
class StyleSelectorContainerSchema;

/// The shared styles of a document.
class KESTAN_EXPORT StyleSelectorContainer final : public TypedContainer<Document, StyleSelector> {
public:
  using ClassSchema = StyleSelectorContainerSchema;
  static const Schema& GetClassSchema();
  StyleSelectorContainer(const KmlId& id, const QString& baseUrl);
  ~StyleSelectorContainer() override;

private:
  void Add(Document& parent, StyleSelector& element) const override;
  void Remove(Document& parent, StyleSelector& element) const override;
  void Insert(Document& parent, int index, StyleSelector& element) const override;
  int Find(const Document& parent, const StyleSelector& element) const override;
  StyleSelector* Get(const Document& parent, int index) const override;
  int Count(const Document& parent) const override;
};

} // namespace vorrel::kestan
