// A document with classes of its own and with data, and operations on it: instances are made, set,
// cloned and held while updates and edits change what is declared. Nothing dangles, instances keep
// their values, and what comes of it is written and read again.
//
// The parts of an input are divided by lines of "--". The first one is the document, the second one
// a line of operations, one letter each, and a line of texts, which are set in turn; the others are
// contents of updates, which are applied in turn.

#include "fuzz/support.h"
#include "kestan/core/objarrayfield.h"
#include "kestan/custom/arraydata.h"
#include "kestan/custom/customfieldschema.h"
#include "kestan/custom/customschema.h"
#include "kestan/custom/customschemaschema.h"
#include "kestan/custom/schemadata.h"
#include "kestan/custom/simplearraydata.h"
#include "kestan/update/update.h"

#include <algorithm>
#include <utility>
#include <vector>

using namespace vorrel;
using namespace vorrel::kestan;

namespace {

class World {
public:
  World(fuzz::Tree root, const QStringList& texts) : root_(std::move(root)), texts_(texts) {}

  std::vector<QByteArray> updates;

  void Operate(QChar operation);
  /// Instances still have what they were given.
  void Check() const;
  const fuzz::Tree& GetRoot() const { return root_; }

private:
  struct Instance {
    fuzz::Tree object;
    const Field* field; ///< That was set last; null for none.
    QString value;
  };

  template <class T> std::vector<RefPtr<T>> Find() const {
    mmvector<SchemaObject*> objects;
    root_->FindBySchema(T::GetClassSchema(), objects);
    std::vector<RefPtr<T>> found;
    for (SchemaObject* object : objects) {
      found.emplace_back(static_cast<T*>(object));
    }
    return found;
  }
  QString NextText() { return texts_.isEmpty() ? QString() : texts_[turn_++ % texts_.size()]; }
  void Hold(const fuzz::Tree& object);
  void MakeInstances();
  void SetFields();
  void Declare();
  void Redeclare(QChar operation);
  void Ask();
  void ApplyNext();

  fuzz::Tree root_;
  const QStringList texts_;
  int turn_ = 0;
  std::vector<Instance> instances_;
};

void World::Hold(const fuzz::Tree& object) {
  const bool isHeld = std::any_of(instances_.begin(), instances_.end(),
                                  [&](const Instance& held) { return held.object == object; });
  if (object && !isHeld && instances_.size() < 64) {
    instances_.push_back({object, nullptr, QString()});
  }
}

void World::MakeInstances() {
  for (const RefPtr<CustomSchema>& schema : Find<CustomSchema>()) {
    Hold(schema->CreateInstance(KmlId(), schema->GetUrl(), nullptr));
  }
}

void World::SetFields() {
  for (Instance& instance : instances_) {
    for (const Field* field : instance.object->GetSchema().GetFields()) {
      if (field->getCount(*instance.object) > 64) {
        field->setCount(*instance.object, 0);
      }
      field->fromString(*instance.object, nullptr, nullptr, NextText(), -1, nullptr);
      instance.field = field;
      instance.value = field->toString(*instance.object, 0);
    }
  }
}

void World::Declare() {
  const Schema* const kinds[] = {
      &SimpleFieldSchema::GetSingleton(), &SimpleArrayFieldSchema::GetSingleton(),
      &SimpleListFieldSchema::GetSingleton(), &ObjFieldSchema::GetSingleton()};
  for (const RefPtr<CustomSchema>& schema : Find<CustomSchema>()) {
    const int number = turn_++;
    new CustomField(*kinds[number % 4], *schema, NextText(),
                    static_cast<CustomField::Type>(number / 4 % 12));
  }
}

void World::Redeclare(QChar operation) {
  const CustomFieldSchema& fields = CustomFieldSchema::GetSingleton();
  for (const RefPtr<CustomSchema>& schema : Find<CustomSchema>()) {
    if (operation == 'n') {
      schema->SetName(NextText());
    } else if (operation == 'p') {
      schema->SetParent(NextText());
    } else if (operation == 'r') {
      CustomSchemaSchema::GetSingleton().customFields.reverse(*schema);
    } else if (operation == 'd') {
      CustomSchemaSchema::GetSingleton().customFields.remove(*schema, 0);
    } else if (operation == 'x') {
      if (SchemaObject* const owner = schema->GetOwner(0)) {
        owner->stolen(*schema);
      }
    } else if (!schema->GetCustomFields().empty()) {
      CustomField& field = *schema->GetCustomFields().front();
      (operation == 't' ? static_cast<const StrField&>(fields.type) : fields.name)
          .SetTypedObject(field, NextText());
    }
  }
}

void World::Ask() {
  for (Instance& instance : instances_) {
    instance.field = nullptr; // the data have the word
  }
  for (const RefPtr<SchemaData>& data : Find<SchemaData>()) {
    Hold(fuzz::Tree(data->GetCustomObject()));
  }
  for (const RefPtr<SimpleArrayData>& data : Find<SimpleArrayData>()) {
    data->GetIndexedValue(data->GetCount() - 1);
  }
  for (const RefPtr<ArrayData>& data : Find<ArrayData>()) {
    data->GetIndexedValue(0);
  }
}

void World::ApplyNext() {
  if (updates.empty()) {
    return;
  }
  const QByteArray& content = updates[static_cast<std::size_t>(turn_++) % updates.size()];
  const fuzz::Tree object = fuzz::Read("<Update>" + content + "</Update>");
  if (object && object->isOfType(Update::GetClassSchema())) {
    auto& update = static_cast<Update&>(*object);
    update.SetKeepEdits(turn_ % 2 == 0);
    update.Apply(nullptr, 1.0F);
    update.ApplyEdits(0.0F);
  }
  for (Instance& instance : instances_) {
    instance.field = nullptr; // it may be what was changed
  }
}

void World::Operate(QChar operation) {
  switch (operation.unicode()) {
  case 'i':
    return MakeInstances();
  case 's':
    return SetFields();
  case 'f':
    return Declare();
  case 'q':
    return Ask();
  case 'u':
    return ApplyNext();
  case 'c':
    if (const fuzz::Tree copy = root_->clone(true, nullptr)) {
      fuzz::Write(copy);
    }
    return;
  case 'm':
    for (Instance& instance : instances_) {
      if (const fuzz::Tree copy = instance.object->clone(true, nullptr)) {
        instance.object->copy(*copy, true, nullptr);
      }
    }
    return;
  case 'z':
    return instances_.clear();
  default:
    return Redeclare(operation);
  }
}

void World::Check() const {
  for (const Instance& instance : instances_) {
    if (instance.field && instance.field->toString(*instance.object, 0) != instance.value) {
      fuzz::Fail(QStringLiteral("an instance has lost its value"));
    }
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Start();
  const QStringList parts =
      fuzz::Lines(data, size).join(QLatin1Char('\n')).split(QStringLiteral("\n--\n"));
  const fuzz::Tree tree = fuzz::Read(parts.first().toUtf8());
  if (!tree) {
    return 0;
  }
  const QString second = parts.value(1);
  World world(tree, second.section(QLatin1Char('\n'), 1).split(QLatin1Char(' ')));
  for (const QString& part : parts.mid(2, 8)) {
    world.updates.push_back(part.toUtf8());
  }
  for (const QChar operation : second.section(QLatin1Char('\n'), 0, 0).left(64)) {
    world.Operate(operation);
    world.Check();
  }
  fuzz::CheckOutput(world.GetRoot());
  return 0;
}
