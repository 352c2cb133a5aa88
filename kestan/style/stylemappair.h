#pragma once

#include "kestan/style/stylemap.h"

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
  ~Pair() override;

  const QString& GetKey() const { return key_; }
  void SetKey(const QString& key);
  /// The mode that the key names; -1 for any other key.
  int GetKeyState() const { return keyState_; }
  const QString& GetStyleUrl() const { return styleUrl_; }
  void SetStyleUrl(const QString& url);
  StyleSelector* GetInlineStyleSelector() const { return inlineSelector_.get(); }
  /// What the style URL led to; null while it's open, and beside a selector of its own.
  StyleSelector* GetReferencedStyleSelector() const { return referencedSelector_.get(); }
  /// The one that counts; may be null.
  StyleSelector* GetStyleSelector() const {
    return inlineSelector_ ? inlineSelector_.get() : referencedSelector_.get();
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

  void SetReference(StyleSelector* selector);
  void SetKeepsReference(bool keeps);
  void ReleaseReference();
  void UpdateKeyState();
  void UpdateKeepsReference();
  static bool Keeps(const StyleMap& map, const StyleMap& other);
  void MarkInline();

  QString key_;
  int keyState_ = -1;
  RefPtr<StyleSelector> inlineSelector_;
  RefPtr<StyleSelector> referencedSelector_;
  QString styleUrl_;
  bool keepsReference_ = true; // false where counts could close a loop
};

} // namespace vorrel::kestan
