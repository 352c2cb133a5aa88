#include "kestan/core/field.h"
#include "kestan/core/schema.h"
#include "tools/kestan/commands.h"
#include "tools/kestan/document.h"

#include <QByteArray>

#include <vector>

using vorrel::kestan::Field;
using vorrel::kestan::SchemaObject;

namespace tool {

namespace {

/// The text on one line, with nothing in it that a terminal would obey.
QString Printable(const QString& text) {
  QString result = text.simplified();
  for (QChar& character : result) {
    if (!character.isPrint() && !character.isSurrogate()) {
      character = QChar::ReplacementCharacter;
    }
  }
  return result;
}

std::vector<SchemaObject*> GetChildren(const SchemaObject& object) {
  std::vector<SchemaObject*> children;
  for (const Field* field : object.GetSchema().GetObjectFields()) {
    const int count = field->IsArray() ? field->getCount(object) : 1;
    for (int i = 0; i < count; ++i) {
      if (SchemaObject* child = field->GetObject(object, i)) {
        children.push_back(child);
      }
    }
  }
  return children;
}

QString GetName(const SchemaObject& object) {
  const Field* field =
      object.FindField(QStringLiteral("name"), vorrel::kestan::Namespace::kKml, nullptr);
  return field && field->GetType() == Field::kElement ? field->toString(object, -1) : QString();
}

/// One object's line: class, id, name, and the lengths of its lists.
QString Describe(const SchemaObject& object, std::size_t children) {
  QString line = object.getType();
  if (!object.GetId().isEmpty()) {
    line += QStringLiteral(" #%1").arg(Printable(object.GetId()));
  }
  const QString name = GetName(object);
  if (!name.isEmpty()) {
    line += QStringLiteral(" \"%1\"").arg(Printable(name));
  }
  if (children > 0) {
    line += QStringLiteral(", children: %1").arg(children);
  }
  for (const Field* field : object.GetSchema().GetSerializedFields()) {
    if (field->IsArray() && !field->GetObjSchema() && field->getCount(object) > 0) {
      line += QStringLiteral(", %1: %2")
                  .arg(field->GetName(), QString::number(field->getCount(object)));
    }
  }
  return line;
}

} // namespace

int Tree(const Arguments& arguments) {
  const Document document = ReadDocument(arguments.files.first());
  if (!document.root) {
    Complain(document.error);
    return kFindings;
  }

  struct Entry {
    const SchemaObject* object;
    int depth;
  };
  std::vector<Entry> pending{{document.root.get(), 0}};
  QByteArray text;
  while (!pending.empty()) {
    const Entry entry = pending.back();
    pending.pop_back();
    const std::vector<SchemaObject*> children = GetChildren(*entry.object);
    text += QByteArray(2 * entry.depth, ' ');
    text += Describe(*entry.object, children.size()).toUtf8();
    text += '\n';
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
      pending.push_back({*child, entry.depth + 1});
    }
    if (text.size() > 65536) {
      if (!Print(text)) {
        return kNoOutput;
      }
      text.clear();
    }
  }
  return Print(text) ? kFine : kNoOutput;
}

} // namespace tool
