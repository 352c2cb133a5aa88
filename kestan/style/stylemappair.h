#pragma once

#include "kestan/style/stylemap.h"
#include "kestan/style/stylereference.h"

namespace vorrel::kestan {

class StyleMapPairSchema;

/// One look of a map: a selector of its own, or a reference to a shared one.
class KESTAN_EXPORT StyleMap::Pair final : public SchemaObject {
public:
  using ClassSchema = StyleMapPairSchema;
  static const Schema& GetClassSchema();

  Pair(const KmlId& id, const QString& baseUrl, bool notify = true);
  /// A new look of `map`, which keeps it.
  Pair(const QString& key, Style& style, StyleMap& map);
  /// The same without a style yet.
  Pair(const QString& key, StyleMap& map);
  ~Pair() override;

  const QString& GetKey() const { return key_; }
  void SetKey(const QString& key);
  /// The mode that the key names; -1 for any other key.
  int GetKeyState() const { return keyState_; }
  const QString& GetStyleUrl() const { return styleUrl_; }
  void SetStyleUrl(const QString& url);
  StyleSelector* GetInlineStyleSelector() const { return inlineSelector_.get(); }
  /// What the style URL led to; null while it's open, and beside a selector of its own.
  StyleSelector* GetReferencedStyleSelector() const { return reference_.get(); }
  /// The one that counts; may be null.
  StyleSelector* GetStyleSelector() const {
    return inlineSelector_ ? inlineSelector_.get() : reference_.get();
  }
  /// Takes a selector in place of the present one: as a reference if it can be named, else as its
  /// own. A map that the pair lies in can't be its own: nothing changes.
  void SetStyleSelector(StyleSelector* selector);
  /// True for a selector that could be the pair's own: any but a map that the pair lies in.
  bool MayOwn(const StyleSelector& selector) const;
  /// What is shown while there's no selector.
  const Style* GetStandIn() const;
  /// A selector that this pair refers to, without keeping it, goes away.
  void ForgetReference();

  void OnUrlLoad(const StrField& field, SchemaObject* loaded) override;
  const Field* FindObject(const SchemaObject& child, int* index) const override;
  void NotifyFieldChanged(const Field& field) override;
  void NotifyOwnerChanged() override;
  void CopyNonFieldStuff(const SchemaObject& src) override;

private:
  friend class StyleMapPairSchema;
  friend class StyleMap;

  Pair(const QString& key, Style* style, StyleMap& map);

  void SetReference(StyleSelector& selector);
  void ReleaseReference();
  void UpdateKeyState();
  void UpdateKeepsReference();
  bool Keeps(const StyleMap& map) const;
  void MarkInline();

  QString key_;
  int keyState_ = -1;
  RefPtr<StyleSelector> inlineSelector_;
  StyleReference reference_; // what the style URL led to
  QString styleUrl_;
  bool keepsRing_ = false; // the reference keeps its target though that may close a ring
};

} // namespace vorrel::kestan
