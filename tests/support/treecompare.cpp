#include "tests/support/treecompare.h"

#include "kestan/core/field.h"
#include "kestan/core/schema.h"
#include "kestan/core/unknowndata.h"
#include "kestan/geometry/alias.h"
#include "kestan/host/net.h"
#include "kestan/read/namespaces.h"
#include "kestan/style/icon.h"
#include "kestan/style/styleselector.h"
#include "tests/support/xml.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QRegularExpression>
#include <QUrl>

namespace vorrel::kestan {

namespace {

QString Describe(const QString& what, const QString& a, const QString& b) {
  return QStringLiteral("%1: \"%2\" against \"%3\"").arg(what, a.left(500), b.left(500));
}

QString CompareText(const QString& what, const QString& a, const QString& b) {
  return a == b ? QString() : Describe(what, a, b);
}

/// Preserved attributes and elements as a document of their own, in which what they mean doesn't
/// depend on where the declarations stood.
QString CanonicalUnknown(const UnknownData& data) {
  QMap<QString, QString> uris{{QString(), NamespaceEnumToString(Namespace::kKml)},
                              {QStringLiteral("kml"), NamespaceEnumToString(Namespace::kKml)},
                              {QStringLiteral("gx"), NamespaceEnumToString(Namespace::kExt)},
                              {QStringLiteral("atom"), NamespaceEnumToString(Namespace::kAtom)}};
  for (const RefPtr<UnknownNamespace>& declared : data.namespaces) {
    uris.insert(declared->prefix, declared->uri);
  }
  QString document = QStringLiteral("<r");
  for (auto uri = uris.constBegin(); uri != uris.constEnd(); ++uri) {
    document += QStringLiteral(" xmlns%1%2=\"%3\"")
                    .arg(uri.key().isEmpty() ? QString() : QStringLiteral(":"), uri.key(),
                         uri.value().toHtmlEscaped());
  }
  document += QStringLiteral("><a%1/>").arg(data.attrs) + data.fields;
  QStringList fields; // in an order that isn't that of the document
  for (const auto& [field, attributes] : data.fieldAttrs) {
    fields += QStringLiteral("<%1%2/>").arg(field->GetPrefixedElem(), attributes);
  }
  fields.sort();
  return Canonical((document + fields.join(QString()) + QStringLiteral("</r>")).toUtf8());
}

QString CompareUnknown(const SchemaObject& a, const SchemaObject& b) {
  static const UnknownData none;
  const UnknownData& left = a.GetUnknownData() ? *a.GetUnknownData() : none;
  const UnknownData& right = b.GetUnknownData() ? *b.GetUnknownData() : none;
  if (left.attrs == right.attrs && left.fields == right.fields &&
      left.fieldAttrs == right.fieldAttrs) {
    return QString();
  }
  const QString leftMeaning = CanonicalUnknown(left);
  if (!leftMeaning.isNull() && leftMeaning == CanonicalUnknown(right)) {
    return QString();
  }
  return Describe(QStringLiteral("unknown content"), left.attrs + left.fields,
                  right.attrs + right.fields);
}

/// What a reference leads to: the contents of a local file, also one in an archive, and the URL of
/// anything else. So a document and its archive with a copy of the file agree.
QString GetTarget(const QString& url) {
  QString archive;
  QString inner;
  QByteArray bytes;
  bool isFile = false;
  if (net::Fetcher::FindInKmz(url, &archive, &inner)) {
    bytes = net::Fetcher::GetBytesFromKmz(archive, inner);
    isFile = !bytes.isNull();
  } else {
    const QString unescaped = QUrl::fromPercentEncoding(url.toUtf8());
    for (const QString& path : {url, unescaped, QUrl(url).toLocalFile()}) {
      QFile file(path);
      if (!isFile && QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly)) {
        bytes = file.readAll();
        isFile = true;
      }
    }
  }
  if (!isFile) {
    return url;
  }
  return QStringLiteral("file of %1 bytes, ").arg(bytes.size()) +
         QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex());
}

/// Markup in which the sources of images don't depend on where the document lies.
QString AbsoluteSources(const SchemaObject& object, const QString& text) {
  static const QRegularExpression source(QStringLiteral("(src\\s*=\\s*[\"'])([^\"']*)"),
                                         QRegularExpression::CaseInsensitiveOption);
  QString result;
  decltype(text.size()) end = 0;
  for (auto matches = source.globalMatch(text); matches.hasNext();) {
    const QRegularExpressionMatch match = matches.next();
    result += text.mid(end, match.capturedStart(2) - end);
    result += GetTarget(SchemaObject::MakeAbsoluteUrl(object.GetBaseUrl(), match.captured(2)));
    end = match.capturedEnd(2);
  }
  return result + text.mid(end);
}

/// A reference may be written in another form, as long as it leads to the same place.
bool LeadsToTheSame(const SchemaObject& a, const SchemaObject& b) {
  if (a.isOfType(Icon::GetClassSchema())) {
    return static_cast<const Icon&>(a) == static_cast<const Icon&>(b);
  }
  return a.isOfType(AbstractLink::GetClassSchema()) &&
         static_cast<const AbstractLink&>(a).GetResourceUrl() ==
             static_cast<const AbstractLink&>(b).GetResourceUrl();
}

/// A child that says nothing but its defaults counts like none: shared styles leave them out.
bool SaysNothing(const SchemaObject& object) {
  if (!object.GetId().isEmpty()) {
    return false;
  }
  const auto fresh =
      object.GetSchema().CreateInstance(KmlId(QString(), object.GetUrl()), QString(), nullptr);
  return fresh && FindDifference(object, *fresh).isNull();
}

QString CompareValues(const Field& field, const SchemaObject& a, const SchemaObject& b) {
  const bool isReference = field.GetName() == QLatin1String("href");
  if ((isReference || a.isOfType(Icon::GetClassSchema())) && LeadsToTheSame(a, b)) {
    return QString();
  }
  if (isReference) {
    const auto target = [&field](const SchemaObject& object) {
      return GetTarget(
          SchemaObject::MakeAbsoluteUrl(object.GetBaseUrl(), field.toString(object, -1)));
    };
    return CompareText(field.GetName(), target(a), target(b));
  }
  if (field.GetName() == QLatin1String("targetHref") && a.isOfType(Alias::GetClassSchema())) {
    return CompareText(field.GetName(), GetTarget(static_cast<const Alias&>(a).GetTargetUrl()),
                       GetTarget(static_cast<const Alias&>(b).GetTargetUrl()));
  }
  if (field.GetDataType() == 4 && field.toString(a, -1).contains(QLatin1String("<img"))) {
    return CompareText(field.GetName(), AbsoluteSources(a, field.toString(a, -1)),
                       AbsoluteSources(b, field.toString(b, -1)));
  }
  if (!field.IsArray()) {
    return CompareText(field.GetName(), field.toString(a, -1), field.toString(b, -1));
  }
  const int count = field.getCount(a);
  QString difference = CompareText(field.GetName() + QStringLiteral(" count"),
                                   QString::number(count), QString::number(field.getCount(b)));
  for (int i = 0; i < count && difference.isNull(); ++i) {
    difference = CompareText(field.GetName(), field.toString(a, i), field.toString(b, i));
  }
  return difference;
}

QString CompareChildren(const Field& field, const SchemaObject& a, const SchemaObject& b) {
  const int count = field.IsArray() ? field.getCount(a) : 1;
  // A document takes in the styles that its features refer to elsewhere, behind its own.
  const bool mayGrow = field.GetObjSchema() == &StyleSelector::GetClassSchema();
  if (field.IsArray() && count != field.getCount(b) && !(mayGrow && count < field.getCount(b))) {
    return Describe(QStringLiteral("child count"), QString::number(count),
                    QString::number(field.getCount(b)));
  }
  for (int i = 0; i < count; ++i) {
    const SchemaObject* left = field.GetObject(a, i);
    const SchemaObject* right = field.GetObject(b, i);
    if ((!left && !right) || (!left && SaysNothing(*right)) || (!right && SaysNothing(*left))) {
      continue;
    }
    const QString difference =
        left && right ? FindDifference(*left, *right)
                      : Describe(QStringLiteral("child"), left ? left->getType() : QString(),
                                 right ? right->getType() : QString());
    if (!difference.isNull()) {
      return QStringLiteral("[%1] ").arg(i) + difference;
    }
  }
  return QString();
}

QString CompareFields(const SchemaObject& a, const SchemaObject& b) {
  const Schema& schema = a.GetSchema();
  for (const mmvector<Field*>* fields : {&schema.GetAttributes(), &schema.GetSerializedFields()}) {
    for (const Field* field : *fields) {
      const QString difference =
          field->GetObjSchema() ? CompareChildren(*field, a, b) : CompareValues(*field, a, b);
      if (!difference.isNull()) {
        return difference;
      }
    }
  }
  return QString();
}

} // namespace

QString FindDifference(const SchemaObject& a, const SchemaObject& b) {
  QString difference = CompareText(QStringLiteral("class"), a.getType(), b.getType());
  if (difference.isNull()) {
    difference = CompareText(QStringLiteral("id"), a.GetId(), b.GetId());
  }
  if (difference.isNull()) {
    difference = CompareUnknown(a, b);
  }
  if (difference.isNull()) {
    difference = CompareFields(a, b);
  }
  return difference.isNull() ? QString()
                             : QStringLiteral("%1#%2 ").arg(a.getType(), a.GetId()) + difference;
}

} // namespace vorrel::kestan
