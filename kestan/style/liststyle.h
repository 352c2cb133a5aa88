#pragma once

#include "kestan/core/color32.h"
#include "kestan/host/refptr.h"
#include "kestan/style/itemicon.h"
#include "kestan/style/substyle.h"

namespace vorrel::kestan {

class ListStyleSchema;

/// How a feature shows in a list.
class KESTAN_EXPORT ListStyle final : public SubStyle {
public:
  using ClassSchema = ListStyleSchema;
  static const Schema& GetClassSchema();
  /// Stands in where a style has none.
  static ListStyle* GetDefaultListStyle();

  enum ListItemType { kCheck = 1, kCheckOffOnly = 2, kCheckHideChildren = 3, kRadioFolder = 5 };

  ListStyle(const KmlId& id, const QString& baseUrl, bool notify = true);
  ~ListStyle() override;

  ListItemType GetListItemType() const { return static_cast<ListItemType>(listItemType_); }
  void SetListItemType(ListItemType type);
  Color32 GetBgColor() const { return bgColor_; }
  void SetBgColor(const Color32& color);
  int GetMaxSnippetLines() const { return maxSnippetLines_; }
  void SetMaxSnippetLines(int lines);

  const mmvector<RefPtr<ItemIcon>>& GetItemIcons() const { return itemIcons_; }
  /// The icon takes its states away from those in front; one that has none left goes.
  void AddItemIcon(ItemIcon& icon);
  void ClearItemIcons();
  /// The icon for an entry in `state`, a mask of `ItemIcon::State`. Null for an empty list.
  ItemIcon* FindBestIcon(unsigned state) const;

  /// True when nothing was given; the values aren't compared.
  bool UnspecifyRedundantFields(const ListStyle& other);

  void NotifyFieldChanged(const Field& field) override;

  bool operator==(const ListStyle& other) const;

private:
  friend class ListStyleSchema;

  void SimplifyItemIcons();

  int listItemType_ = kCheck;
  mmvector<RefPtr<ItemIcon>> itemIcons_;
  Color32 bgColor_{0x00FFFFFFU};
  int maxSnippetLines_ = 2;
};

} // namespace vorrel::kestan
