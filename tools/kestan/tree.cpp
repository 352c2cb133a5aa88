#include "kestan/core/field.h"
#include "kestan/core/schema.h"
#include "kestan/link/networklinkcontrol.h"
#include "kestan/update/update.h"
#include "tools/kestan/commands.h"
#include "tools/kestan/document.h"
#include "tools/kestan/output.h"
#include "tools/kestan/walk.h"

using vorrel::kestan::Field;
using vorrel::kestan::SchemaObject;
using vorrel::kestan::Update;

namespace tool {

namespace {

/// One object's line: class, id, name, and the lengths of its lists.
QString Describe(const SchemaObject& object, std::size_t children) {
  QString line = GetTitle(object);
  if (object.isOfType(Update::GetClassSchema())) {
    const QString& target = static_cast<const Update&>(object).GetTargetHref();
    line += QStringLiteral(", target: ") + Printable(target);
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

void WriteTree(const SchemaObject& root, Output& output) {
  Walk walk(root);
  while (const SchemaObject* object = walk.Next()) {
    const QString line = Describe(*object, walk.GetChildCount());
    if (!output.Write(QByteArray(2 * static_cast<int>(walk.GetDepth()), ' ') + line.toUtf8() +
                      '\n')) {
      break;
    }
  }
}

} // namespace

int Tree(const Arguments& arguments) {
  const Document document = ReadDocument(arguments.GetFile());
  if (!document.root) {
    Complain(document.GetErrorLine());
    return kFindings;
  }
  Output output;
  const SchemaObject* const control = document.GetControl();
  if (control && control != document.root) {
    WriteTree(*control, output);
  }
  WriteTree(*document.root, output);
  return output.Finish(kFine);
}

} // namespace tool
