#include "fuzz/editdocument.h"

#include "kestan/core/field.h"
#include "kestan/core/schemaobject.h"
#include "kestan/read/namespaces.h"

using namespace vorrel::kestan;

namespace fuzz {

namespace {

constexpr int kMaxLevels = 3;
constexpr std::size_t kMaxElements = 5;

void Collect(const Schema& schema, std::vector<const Schema*>& out) {
  if (!schema.IsAbstract())
    out.push_back(&schema);
  for (const Schema* derived : schema.GetDerived())
    Collect(*derived, out);
}

class Maker {
public:
  Maker(const std::function<unsigned(std::size_t)>& number, const std::function<QString()>& text)
      : number_(number), text_(text) {}

  QByteArray MakeDocument() {
    static const QString declarations =
        QStringLiteral(" xmlns=\"%12.2\" xmlns:gx=\"%22.2\" xmlns:atom=\"%3\"")
            .arg(QLatin1String(kKmlNamespaceString), QLatin1String(kExtNamespaceString),
                 QLatin1String(kAtomNamespaceString));
    return MakeObject(SchemaObject::GetClassSchema(), 0, declarations).toUtf8();
  }

private:
  template <class T> const T& Choose(const std::vector<T>& list) {
    return list[number_(list.size())];
  }

  QString MakeUnknownAttribute() {
    return number_(4) == 0 ? QStringLiteral(" q=\"1\"") : QString();
  }

  QString MakeObject(const Schema& base, int level, const QString& declarations) {
    const std::vector<const Schema*> classes = FindClasses(base);
    if (classes.empty())
      return QString();
    const Schema& schema = *Choose(classes);
    if (schema.GetTag().isEmpty())
      return QString();
    QString attributes = declarations + MakeUnknownAttribute();
    for (const Field* field : schema.GetAttributes()) {
      if (number_(4) == 0)
        attributes += QStringLiteral(" %1=\"%2\"").arg(field->GetName(), text_());
    }
    QString content;
    for (std::size_t left = number_(kMaxElements); left > 0; --left)
      content += MakeElement(schema, level);
    return MakeTag(QString::fromUtf8(schema.GetTag()), attributes, content);
  }

  /// A field's element, several times as it may be.
  QString MakeElement(const Schema& schema, int level) {
    const std::vector<Field*> fields(schema.GetSerializedFields().begin(),
                                     schema.GetSerializedFields().end());
    if (fields.empty() || number_(8) == 0)
      return QStringLiteral("<q/>");
    const Field& field = *Choose(fields);
    QString elements;
    for (unsigned left = 1 + number_(3); left > 0; --left) {
      const Schema* const child = field.GetObjSchema();
      const QString content = !child               ? text_()
                              : level < kMaxLevels ? MakeObject(*child, level + 1, QString())
                                                   : QString();
      elements += field.GetName().isEmpty()
                      ? content
                      : MakeTag(field.GetPrefixedElem(), MakeUnknownAttribute(), content);
    }
    return elements;
  }

  static QString MakeTag(const QString& name, const QString& attributes, const QString& content) {
    return QLatin1Char('<') + name + attributes + QLatin1Char('>') + content + QLatin1String("</") +
           name + QLatin1Char('>');
  }

  const std::function<unsigned(std::size_t)>& number_;
  const std::function<QString()>& text_;
};

} // namespace

std::vector<const Schema*> FindClasses(const Schema& schema) {
  std::vector<const Schema*> classes;
  Collect(schema, classes);
  return classes;
}

QByteArray MakeDocument(const std::function<unsigned(std::size_t)>& number,
                        const std::function<QString()>& text) {
  return Maker(number, text).MakeDocument();
}

} // namespace fuzz
