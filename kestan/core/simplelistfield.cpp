#include "kestan/core/simplelistfield.h"

#include "kestan/core/textfaults.h"
#include "kestan/core/typedarrayfield_impl.h"
#include "kestan/host/parse.h"

namespace vorrel::kestan {

namespace {

/// Calls `visit(QString)` for each run of characters that are no white space. The strings lie in
/// `text`: who keeps one makes its own copy.
template <class Visit> void SplitOnWhitespace(const QString& text, Visit visit) {
  const QChar* const end = text.constData() + text.size();
  for (const QChar* at = text.constData(); at != end;) {
    while (at != end && at->isSpace())
      ++at;
    const QChar* const begin = at;
    while (at != end && !at->isSpace())
      ++at;
    if (at != begin)
      visit(QString::fromRawData(begin, static_cast<int>(at - begin)));
  }
}

template <class T> T Entry(const QString& token) {
  if constexpr (std::is_same_v<T, QString>)
    return QString(token.constData(), token.size());
  else
    return ValueFromString<T>(token);
}

} // namespace

template <class T>
SimpleListField<T>::SimpleListField(Schema& schema, const QString& name, unsigned offset,
                                    Field::Type type, unsigned flags)
    : TypedArrayField<T>(schema, name, offset, type, flags) {}

template <class T>
FromStringResult SimpleListField<T>::fromString(SchemaObject& object, const AttributeList* attrs,
                                                const NamespaceList* namespaces,
                                                const QString& text, int, Update* update) const {
  if (update && !this->StartUpdate(object, *update))
    return FromStringResult::kSecurityViolation;
  std::size_t count = 0;
  SplitOnWhitespace(text, [&](const QString&) { ++count; });
  mmvector<T>& array = this->Array(object);
  array.clear();
  array.reserve(count);
  SplitOnWhitespace(text, [&](const QString& token) { array.push_back(Entry<T>(token)); });
  if (attrs && !attrs->empty() && this->KeepsRest(object, update))
    object.SetUnknownFieldAttrs(*this, *attrs, namespaces);
  this->NotifyFieldChanged(object);
  return FromStringResult::kOk;
}

template <class T>
void SimpleListField<T>::FindFaults(const SchemaObject&, const AttributeList*,
                                    TextFaults& faults) const {
  SplitOnWhitespace(faults.GetText(), [&](const QString& token) {
    const ushort* const begin = math::Units(token);
    faults.CheckValue<T>(begin, begin + token.size());
  });
}

template <class T>
void SimpleListField<T>::GetForm(const SchemaObject& object, QString& text, QString&) const {
  text.clear();
  for (const T& value : this->Array(object))
    text += (text.isEmpty() ? QString() : QStringLiteral(" ")) + ValueToString(value);
}

template class SimpleListField<int>;
template class SimpleListField<unsigned int>;
template class SimpleListField<unsigned short>;
template class SimpleListField<float>;
template class SimpleListField<double>;
template class SimpleListField<QString>;
template class SimpleListField<Vec3<double>>;

} // namespace vorrel::kestan
