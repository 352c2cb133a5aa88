#include "tests/support/rebinding.h"

#include "kestan/read/namespaces.h"

#include <QMap>
#include <QXmlStreamReader>

#include <iterator>
#include <vector>

namespace vorrel::kestan {

namespace {

using Scope = QMap<QString, QString>;

const char* const kPrefixes[] = {"p", "q", "gx", "kml", "atom", "e"};

QString GetUri(unsigned i) {
  switch (i) {
  case 0:
    return NamespaceEnumToString(Namespace::kKml);
  case 1:
    return NamespaceEnumToString(Namespace::kExt);
  case 2:
    return NamespaceEnumToString(Namespace::kAtom);
  default:
    return QStringLiteral("urn:%1").arg(i);
  }
}

class Maker {
public:
  explicit Maker(const Choose& choose) : choose_(choose) {}

  QString Make() {
    const QString kml = GetUri(0);
    Scope scope{{QString(), kml}};
    QString text = QStringLiteral("<kml xmlns=\"%1\"").arg(kml) + Declare(scope) +
                   Attributes(scope, kOnObject) + QLatin1Char('>');
    text += Elements(scope, 2);
    text += Feature(scope, 3);
    text += Elements(scope, 2);
    return text + QStringLiteral("</kml>");
  }

private:
  enum Where { kOnObject, kOnField, kOnExtensionField, kOnUnknown };

  bool Chance(unsigned count) { return choose_(count) == 0; }

  QString Declare(Scope& scope) {
    QString text;
    Scope own;
    for (unsigned count = choose_(3); count > 0; --count)
      own.insert(QLatin1String(kPrefixes[choose_(unsigned(std::size(kPrefixes)))]),
                 GetUri(choose_(6)));
    for (auto entry = own.constBegin(); entry != own.constEnd(); ++entry) {
      text += QStringLiteral(" xmlns:%1=\"%2\"").arg(entry.key(), entry.value());
      scope.insert(entry.key(), entry.value());
    }
    return text;
  }

  /// One of the prefixes in scope, with its colon.
  QString Prefix(const Scope& scope) {
    const QList<QString> prefixes = scope.keys();
    const QString prefix = prefixes[int(choose_(unsigned(prefixes.size())))];
    return prefix.isEmpty() ? prefix : prefix + QLatin1Char(':');
  }

  QString Attributes(const Scope& scope, Where where) {
    QString text;
    for (unsigned count = choose_(3); count > 0; --count) {
      QString value = Chance(2) ? Prefix(scope) + QStringLiteral("B") : QStringLiteral("1");
      // What an element of ours needs a prefix for isn't given up for a value.
      const bool isTaken = (where == kOnObject && value.startsWith(QLatin1String("kml:"))) ||
                           where == kOnExtensionField;
      text +=
          QStringLiteral(" %1a%2=\"%3\"")
              .arg(Prefix(scope), QString::number(++names_), isTaken ? QStringLiteral("1") : value);
    }
    return text;
  }

  QString Elements(const Scope& scope, unsigned depth) {
    QString text;
    for (unsigned count = choose_(3); count > 0 && depth > 0; --count) {
      Scope inner = scope;
      const QString declarations = Declare(inner);
      const QString name = Prefix(inner) + QStringLiteral("u%1").arg(++names_);
      const QString attributes = Attributes(inner, kOnUnknown);
      QString start = QLatin1Char('<') + name;
      if (Chance(6) && !name.contains(QLatin1Char(':'))) {
        inner.insert(QString(), QStringLiteral("urn:9"));
        start += QStringLiteral(" xmlns=\"urn:9\"");
      }
      text += start + (Chance(2) ? declarations + attributes : attributes + declarations) +
              QLatin1Char('>') + Elements(inner, depth - 1) +
              (Chance(3) ? Prefix(inner) + QStringLiteral("C") : QString()) +
              QStringLiteral("</%1>").arg(name);
    }
    return text;
  }

  QString Field(const Scope& scope, const QString& name, Where where) {
    Scope inner = scope;
    QString declarations = Declare(inner);
    const auto colon = name.indexOf(QLatin1Char(':'));
    if (colon >= 0 && inner.value(name.left(colon)) != scope.value(name.left(colon))) {
      inner = scope;
      declarations.clear();
    }
    return QStringLiteral("<%1%2%3>1</%1>").arg(name, declarations, Attributes(inner, where));
  }

  QString Feature(const Scope& outer, unsigned depth) {
    Scope scope = outer;
    const QString declarations = Declare(scope);
    const bool isFolder = depth > 0 && !Chance(3);
    const QString type = isFolder ? QStringLiteral("Folder") : QStringLiteral("Placemark");
    QString text =
        QLatin1Char('<') + type + declarations + Attributes(scope, kOnObject) + QLatin1Char('>');
    if (Chance(2))
      text += Field(scope, QStringLiteral("name"), kOnField);
    const QString extension = scope.key(GetUri(1));
    if (!extension.isEmpty() && Chance(2))
      text += Field(scope, extension + QStringLiteral(":balloonVisibility"), kOnExtensionField);
    text += Elements(scope, 2);
    for (unsigned count = isFolder ? choose_(4) : 0; count > 0; --count)
      text += Feature(scope, depth - 1);
    text += Elements(scope, 1);
    return text + QStringLiteral("</%1>").arg(type);
  }

  const Choose& choose_;
  int names_ = 0;
};

/// The URI of the prefix in front of "B" or "C"; empty for another text.
QString GetMentioned(const QString& text, const Scope& scope) {
  const auto colon = text.indexOf(QLatin1Char(':'));
  return colon < 0 ? QString() : QStringLiteral(" mentions ") + scope.value(text.left(colon));
}

} // namespace

QByteArray MakeRebindingDocument(const Choose& choose) { return Maker(choose).Make().toUtf8(); }

QStringList GetForeignNames(const QByteArray& document) {
  QXmlStreamReader reader(document);
  QStringList names;
  std::vector<Scope> scopes(1);
  std::vector<QString> texts;
  while (!reader.atEnd()) {
    switch (reader.readNext()) {
    case QXmlStreamReader::StartElement: {
      Scope scope = scopes.back();
      for (const QXmlStreamNamespaceDeclaration& declaration : reader.namespaceDeclarations())
        scope.insert(declaration.prefix().toString(), declaration.namespaceUri().toString());
      for (const QXmlStreamAttribute& attribute : reader.attributes()) {
        const QString name = attribute.name().toString();
        if (name.startsWith(QLatin1Char('a')) && name[name.size() - 1].isDigit()) {
          names += QStringLiteral("%1 %2%3").arg(name, attribute.namespaceUri().toString(),
                                                 GetMentioned(attribute.value().toString(), scope));
        }
      }
      scopes.push_back(scope);
      texts.emplace_back();
      break;
    }
    case QXmlStreamReader::Characters:
      texts.back() += reader.text();
      break;
    case QXmlStreamReader::EndElement: {
      const QString name = reader.name().toString();
      if (name.startsWith(QLatin1Char('u')) && name[name.size() - 1].isDigit()) {
        names += QStringLiteral("%1 %2%3").arg(name, reader.namespaceUri().toString(),
                                               GetMentioned(texts.back(), scopes.back()));
      }
      scopes.pop_back();
      texts.pop_back();
      break;
    }
    default:
      break;
    }
  }
  names.sort();
  return reader.hasError() ? QStringList() : names;
}

} // namespace vorrel::kestan
