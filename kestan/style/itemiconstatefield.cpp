#include "kestan/style/itemiconstatefield.h"

#include "kestan/core/enum.h"
#include "kestan/core/textfaults.h"
#include "kestan/style/liststyle.h"
#include "kestan/write/writestate.h" // the text of a state depends on the icons behind

#include <QStringList>

namespace vorrel::kestan {

namespace {

constexpr unsigned kNamedStates[] = {ItemIcon::kOpen,      ItemIcon::kClosed,
                                     ItemIcon::kError,     ItemIcon::kFetching0,
                                     ItemIcon::kFetching1, ItemIcon::kFetching2};

/// The states that the icons behind this one take away from it when they are read.
unsigned GetClaimedBehind(const ItemIcon& icon) {
  const SchemaObject* owner = icon.GetOwner(0);
  if (!owner || !owner->isOfType(ListStyle::GetClassSchema()))
    return 0;
  unsigned claimed = 0;
  const auto& icons = static_cast<const ListStyle*>(owner)->GetItemIcons();
  for (std::size_t i = icons.size(); i-- > 0 && icons[i] != &icon;)
    claimed |= icons[i] ? icons[i]->GetState() : 0;
  return claimed;
}

} // namespace

FromStringResult ItemIconStateField::fromString(SchemaObject& object, const AttributeList* attrs,
                                                const NamespaceList* namespaces,
                                                const QString& text, int, Update* update) const {
  const QStringList words = text.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
  unsigned state = 0;
  for (const QString& word : words) {
    int named = 0;
    if (GetEnum().GetSingleEnum(word, named))
      state |= static_cast<unsigned>(named);
    else
      state |= word.toUInt();
  }
  if (words.isEmpty())
    state = ItemIcon::kAnyState;
  else if (state == 0)
    return KeepUnknownName(object, attrs, namespaces, text, update);
  return Store(object, static_cast<int>(state), attrs, namespaces, update);
}

void ItemIconStateField::FindFaults(const SchemaObject&, const AttributeList*,
                                    TextFaults& faults) const {
  faults.CheckWords([this](const QString& word) {
    int value = 0;
    return GetEnum().GetSingleEnum(word, value) || word.toUInt() != 0;
  });
}

QString ItemIconStateField::toString(const SchemaObject& object, int) const {
  const auto& icon = static_cast<const ItemIcon&>(object);
  const unsigned claimed = GetClaimedBehind(icon);
  unsigned left = icon.GetState();
  if (left == (ItemIcon::kAnyState & ~claimed))
    return QString();
  const unsigned allowed = left | claimed;
  QStringList words;
  for (const unsigned named : kNamedStates) {
    if ((named & ~allowed) == 0 && (named & icon.GetState()) != 0) {
      words.append(GetEnum().getString(static_cast<int>(named)));
      left &= ~named;
    }
  }
  if (left != 0)
    words.append(QString::number(left));
  return words.join(QLatin1Char(' '));
}

void ItemIconStateField::WriteKml(const SchemaObject& object, WriteState& state) const {
  if (!toString(object, -1).isEmpty() || object.KeepsElement(*this))
    WriteValue(object, state, true);
}

void ItemIconStateField::WriteKmlString(const SchemaObject& object, WriteState& state) const {
  state.xml() << toString(object, -1);
}

} // namespace vorrel::kestan
