// A document, and updates that are applied to it in any order, stopped anywhere and taken back,
// while an observer removes what it likes: nothing dangles, and what comes of it is written and
// read again. Before that, each update that only changes values is applied and taken back: then the
// document is what it was.
//
// The parts of an input are divided by lines of "--". The first one is the document; the others are
// a line of operations, one letter each, and below it the content of an update. The updates take
// turns, one operation each.

#include "fuzz/support.h"
#include "kestan/core/objectobserver.h"
#include "kestan/feature/abstractfolder.h"
#include "kestan/update/update.h"
#include "kestan/update/updateedit.h"

#include <algorithm>
#include <memory>
#include <vector>

using namespace vorrel;
using namespace vorrel::kestan;

namespace {

/// Removes a feature, or an update, when it hears of a change.
class Remover final : public ObjectObserver {
public:
  Remover(SchemaObject& root, std::vector<RefPtr<Update>>& updates)
      : ObjectObserver(root), updates_(updates) {}

  /// What to do at a coming notice: 0 nothing, odd numbers remove an update, even ones a feature.
  void Arm(unsigned what) { what_ = what; }

  void OnFieldChanged(const FieldChangedEvent&) override { Act(nullptr); }
  void OnSubFieldChanged(const SubFieldChangedEvent& event) override { Act(&event.changed); }
  void OnPreDelete(const PreDeleteEvent&) override { Act(nullptr); }

private:
  void Act(SchemaObject* changed) {
    const unsigned what = std::exchange(what_, 0U);
    if (what % 2 == 1 && !updates_.empty()) {
      updates_[what / 2 % updates_.size()].reset();
    } else if (what > 0 && changed && changed->isOfType(AbstractFeature::GetClassSchema())) {
      static_cast<AbstractFeature*>(changed)->SetParent(nullptr);
    }
  }

  std::vector<RefPtr<Update>>& updates_;
  unsigned what_ = 0;
};

/// Looks at each edit, as a client would that shows them.
void Look(const Update& update) {
  int count = 0;
  update.ForEachEdit([&](const UpdateEdit& edit) {
    edit.GetField().toString(edit.GetObject(), -1);
    ++count;
  });
  if (count != update.GetEditCount()) {
    fuzz::Fail(QStringLiteral("another number of edits"));
  }
}

RefPtr<Update> ReadUpdate(const QString& content) {
  const QByteArray document = "<Update>" + content.toUtf8() + "</Update>";
  fuzz::Tree object = fuzz::Read(document);
  if (!object) {
    // Content that isn't well-formed can come from a client only.
    object = fuzz::Read(QByteArray("<Update/>"));
    object->unknownData().fields = content;
  }
  return RefPtr<Update>(static_cast<Update*>(object.get()));
}

void Operate(RefPtr<Update>& slot, QChar operation, Remover& remover) {
  Update* const update = slot.get();
  const unsigned letter = operation.unicode();
  if (letter >= 'A' && letter <= 'H') {
    remover.Arm(letter - 'A' + 1);
  } else if (letter >= '0' && letter <= '9') {
    update->ApplyEdits(static_cast<float>(static_cast<int>(letter) - '1') / 7.0F);
  } else if (letter == 'c') {
    update->CreateEdits(nullptr);
  } else if (letter == 'a') {
    update->Apply(nullptr, 1.0F);
  } else if (letter == 'k' || letter == 'n') {
    update->SetKeepEdits(letter == 'k');
  } else if (letter == 'd') {
    update->DeleteAllEdits();
  } else if (letter == 'x') {
    slot.reset();
  } else {
    Look(*update);
  }
}

/// True for an update that makes and removes nothing. The oldest forms of styles and of links set
/// values of other objects, and don't take them back.
bool OnlyChangesValues(const QString& content) {
  for (const char* const other :
       {"Create", "Delete", "Replace", "refreshPeriod", "labelColor", "labelScale",
        "labelPlacement", "geomColor", "geomScale", "polyMode", "falseColorGeom"}) {
    if (content.contains(QLatin1String(other))) {
      return false;
    }
  }
  return true;
}

void CheckUndo(const QByteArray& document, const QString& content) {
  const fuzz::Tree tree = fuzz::Read(document);
  if (!OnlyChangesValues(content) || !tree) {
    return;
  }
  fuzz::Write(tree); // brings old forms up to date
  const QByteArray before = fuzz::Write(tree);
  const RefPtr<Update> update = ReadUpdate(content);
  update->SetKeepEdits(true);
  update->CreateEdits(nullptr);
  for (const float fraction : {0.5F, 1.0F, 0.25F, 0.0F, 1.0F, 0.0F}) {
    update->ApplyEdits(fraction);
  }
  const QByteArray after = fuzz::Write(tree);
  if (after != before) {
    fuzz::Fail(QStringLiteral("not undone:\n%1\nwas\n%2")
                   .arg(QString::fromUtf8(after), QString::fromUtf8(before)));
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Start();
  const QStringList parts =
      fuzz::Lines(data, size).join(QLatin1Char('\n')).split(QStringLiteral("\n--\n"));
  for (const QString& part : parts.mid(1, 8)) {
    CheckUndo(parts.first().toUtf8(), part.section(QLatin1Char('\n'), 1));
  }
  const fuzz::Tree tree = fuzz::Read(parts.first().toUtf8());
  if (!tree || !tree->isOfType(AbstractFeature::GetClassSchema())) {
    return 0;
  }
  std::vector<RefPtr<Update>> updates;
  QStringList operations;
  for (const QString& part : parts.mid(1, 8)) {
    operations += part.section(QLatin1Char('\n'), 0, 0).left(64);
    updates.push_back(ReadUpdate(part.section(QLatin1Char('\n'), 1)));
  }
  Remover remover(*tree, updates);
  for (int turn = 0; turn < 64; ++turn) {
    for (std::size_t i = 0; i < updates.size(); ++i) {
      const QString& line = operations[static_cast<int>(i)];
      if (updates[i] && turn < line.size()) {
        Operate(updates[i], line[turn], remover);
      }
    }
  }
  remover.Arm(0);
  for (const RefPtr<Update>& update : updates) {
    if (update) {
      Look(*update);
      update->ApplyEdits(0.0F);
    }
  }
  fuzz::CheckOutput(tree);
  return 0;
}
