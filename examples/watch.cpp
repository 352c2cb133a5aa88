// Loads a document, edits it as a user of a globe would, and prints what an observer of the
// document hears of that.
//
//   kestan-watch FILE

#include "kestan/core/field.h"
#include "kestan/core/library.h"
#include "kestan/core/objectobserver.h"
#include "kestan/core/schema.h"
#include "kestan/feature/folder.h"
#include "kestan/feature/placemark.h"
#include "kestan/read/readkml.h"
#include "kestan/style/linestyle.h"
#include "kestan/style/style.h"

#include <cstdio>

using namespace vorrel;
using namespace vorrel::kestan;

namespace {

/// The one observer that every client has. It watches the root of a document, and hears of each
/// change in the whole tree: a client marks here what it has to draw anew. It's told before the
/// call that made the change returns, so it should be quick about it.
class DocumentWatcher final : public ObjectObserver {
public:
  explicit DocumentWatcher(SchemaObject& root) : ObjectObserver(root) {
    // Features don't report what changes in them unless somebody wants to know.
    root.SetInheritedShouldNotifySubFieldChanged(true);
  }

  /// A field of the root itself has changed.
  void OnFieldChanged(const FieldChangedEvent& event) override {
    std::printf("  %s, %s\n", Name(event.object).constData(), Name(event.field).constData());
  }

  /// A field of an object below it has changed, however deep. The event also holds the child of
  /// the root by way of which the news came.
  void OnSubFieldChanged(const SubFieldChangedEvent& event) override {
    std::printf("  below: %s, %s\n", Name(event.changed).constData(),
                Name(event.field).constData());
  }

  /// The root is about to go. Whoever has a plain pointer to it lets go of it here.
  void OnPreDelete(const PreDeleteEvent& event) override {
    std::printf("  %s goes\n", Name(event.object).constData());
  }

private:
  static QByteArray Name(const SchemaObject& object) {
    return (object.getType() + ' ' + object.GetId()).trimmed().toUtf8();
  }
  /// A field for children has no name of its own: it goes by their class.
  static QByteArray Name(const Field& field) {
    return (field.GetObjSchema() ? field.GetObjSchema()->GetName() : field.GetName()).toUtf8();
  }
};

/// The first folder below `root`; null when there's none.
Folder* FindFolder(const SchemaObject& root) {
  mmvector<SchemaObject*> folders;
  root.FindBySchema(Folder::GetClassSchema(), folders);
  return folders.empty() ? nullptr : static_cast<Folder*>(folders.front());
}

int Watch(const char* path) {
  // Objects are counted: a `RefPtr` keeps one alive, and the tree goes with its root.
  QString error;
  RefPtr<SchemaObject> root = ReadKmlFile(QString::fromLocal8Bit(path), &error);
  if (!root) {
    std::fprintf(stderr, "%s\n", qUtf8Printable(error));
    return 1;
  }
  const DocumentWatcher watcher(*root);

  std::puts("The document gets another name.");
  if (root->isOfType(AbstractFeature::GetClassSchema()))
    static_cast<AbstractFeature&>(*root).SetName("Watched");

  if (Folder* folder = FindFolder(*root)) {
    std::puts("A folder is hidden.");
    folder->SetVisibility(false);

    std::puts("A placemark comes, changes, and goes.");
    const RefPtr<Placemark> placemark = Placemark::CreatePlacemark();
    placemark->SetName("nobody hears of this"); // not in the tree yet
    folder->AddChild(*placemark);
    placemark->SetName("everybody hears of this");
    folder->RemChild(*placemark);
  }

  std::puts("A shared style makes lines wider. That's heard from the style itself, and by way of "
            "each feature that shows it.");
  mmvector<SchemaObject*> styles;
  root->FindBySchema(Style::GetClassSchema(), styles);
  if (!styles.empty())
    static_cast<Style*>(styles.front())->GetLineStyle()->SetWidth(8.0F);

  std::puts("The document is closed.");
  root.reset();
  return 0;
}

} // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: kestan-watch FILE\n", stderr);
    return 2;
  }
  GInitialize(); // on the main thread, before any object is made
  const int status = Watch(argv[1]);
  GShutdown(); // when all objects are gone
  return status;
}
