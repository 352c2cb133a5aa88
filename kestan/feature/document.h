#pragma once

#include "kestan/feature/abstractfolder.h"

#include <memory>

namespace vorrel::kestan {

class CustomSchema;
class DocumentSchema;

/// A folder that stands for a file: besides features it holds the styles and the schemas that they
/// share.
class KESTAN_EXPORT Document final : public AbstractFolder {
public:
  using ClassSchema = DocumentSchema;
  static const Schema& GetClassSchema();

  /// What a client keeps with a document; it goes with the document.
  class KESTAN_EXPORT ClientData {
  public:
    virtual ~ClientData() = default;
  };

  Document(const KmlId& id, const QString& baseUrl);
  ~Document() override;

  // Shared styles. One without an id can't be referred to: it becomes the document's own inline
  // style.
  bool AddStyleSelector(StyleSelector& selector);
  /// An index out of range appends.
  bool InsertStyleSelector(int index, StyleSelector& selector);
  bool RemStyleSelector(StyleSelector& selector);
  /// The place of a style, or -1.
  int FindStyleSelector(const StyleSelector& selector) const;
  /// Throws `std::out_of_range` for an index out of range.
  StyleSelector* GetStyleSelector(int index) const;
  int GetStyleSelectorCount() const { return static_cast<int>(styleSelectors_.size()); }
  /// A schema without a name isn't added.
  void AddSchema(CustomSchema& schema);

  ClientData* GetClientData() const { return clientData_.get(); }
  void SetClientData(std::unique_ptr<ClientData> data);

  /// Writes the document with the styles and schemas that `state` has collected, and as content
  /// `feature`, or with null its own children.
  void WriteKmlStylesSchemas(WriteState& state, const AbstractFeature* feature) const;

  /// Nothing: a document inside another stands for itself.
  void CollectStylesAndSchemas(WriteState& state) const override;
  void accept(FeatureVisitor& visitor) override;
  Document* AsDocument() const override { return const_cast<Document*>(this); }
  void WriteKml(WriteState& state) const override;
  /// A document takes its own styles along, and needs no other around it.
  void WriteStylesAndSchemas(WriteState& state, const QString& path) const override;

private:
  friend class DocumentSchema;

  /// Tells `state` of all styles and references in the document, in the order of the output.
  void CollectContents(WriteState& state) const;

  mmvector<RefPtr<StyleSelector>> styleSelectors_;
  mmvector<RefPtr<CustomSchema>> schemas_;
  std::unique_ptr<ClientData> clientData_;
};

} // namespace vorrel::kestan
