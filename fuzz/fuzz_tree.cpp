// Bytes to tree: no input may crash the reader, make it hang or eat memory.

#include "fuzz/support.h"

#include "kestan/core/field.h"
#include "kestan/core/schema.h"

using namespace vorrel;
using namespace vorrel::kestan;

namespace {

/// Reads every value, as a client would that shows the object.
void Visit(const SchemaObject& object) {
  const Schema& schema = object.GetSchema();
  for (const mmvector<Field*>* fields : {&schema.GetAttributes(), &schema.GetSerializedFields()}) {
    for (const Field* field : *fields) {
      if (!field->GetObjSchema()) {
        field->toString(object, field->IsArray() && field->getCount(object) > 0 ? 0 : -1);
      }
    }
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Start();
  const fuzz::Tree tree = fuzz::Read(data, size);
  if (tree) {
    mmvector<SchemaObject*> objects;
    tree->FindBySchema(SchemaObject::GetClassSchema(), objects);
    for (const SchemaObject* object : objects) {
      Visit(*object);
    }
  }
  return 0;
}
