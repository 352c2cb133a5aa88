// Bytes to styles and maps that refer to each other, and to edits of them: whatever the graph, each
// feature has the look that its selectors say, and nothing of it outlives its document.
//
// The first byte is the number of maps; two bytes a map follow, then three bytes an edit.

#include "fuzz/support.h"

#include "kestan/core/threadscope.h"
#include "kestan/core/watcher.h"
#include "kestan/feature/document.h"
#include "kestan/feature/placemark.h"
#include "kestan/style/linestyle.h"
#include "kestan/style/style.h"
#include "kestan/style/stylemap.h"
#include "kestan/style/stylemappair.h"

#include <algorithm>
#include <thread>
#include <vector>

using namespace vorrel;
using namespace vorrel::kestan;

namespace {

constexpr std::size_t kMaxMaps = 64;
constexpr std::size_t kMaxEdits = 200;

const char kUrl[] = "http://example.com/fuzz.kml";
const char kFarUrl[] = "http://example.com/far.kml";
const char kPasteUrl[] = "http://example.com/paste.kml";

/// Refers to the other document in a loop.
const char kFarDocument[] =
    "<Document><Style id='s'><LineStyle><width>7</width></LineStyle></Style>"
    "<StyleMap id='m'><Pair><key>normal</key><styleUrl>fuzz.kml#m0</styleUrl></Pair>"
    "<Pair><key>highlight</key><styleUrl>#s</styleUrl></Pair></StyleMap>"
    "<Placemark><styleUrl>fuzz.kml#m1</styleUrl></Placemark>"
    "<Placemark><styleUrl>#m</styleUrl><Style/></Placemark></Document>";

/// What is pasted from it has styles of its own, whose ids are taken where it comes to.
const char kPasteDocument[] =
    "<Document><Style id='s'><LineStyle><width>8</width></LineStyle></Style>"
    "<StyleMap id='m0'><Pair><key>normal</key><styleUrl>#s</styleUrl></Pair></StyleMap>"
    "<Placemark><styleUrl>#s</styleUrl><Style id='m0'><PolyStyle><fill>0</fill></PolyStyle></Style>"
    "</Placemark><Placemark><Style id='i0'><LineStyle><width>9</width></LineStyle></Style>"
    "</Placemark><Placemark><styleUrl>#i0</styleUrl><StyleMap id='m1'><Pair><key>highlight</key>"
    "<styleUrl>#m0</styleUrl></Pair></StyleMap></Placemark></Document>";

/// Maps come first; then a style, nothing, another document, and built-in styles.
QString Target(unsigned choice, std::size_t maps) {
  const char* others[] = {"",
                          "#missing",
                          "far.kml#s",
                          "far.kml#m",
                          "root://styles#hl",
                          "root://styles#default?iconId=0x307",
                          "far.kml#no",
                          "#i0",
                          "#i1",
                          "root://styleMaps#default"};
  const std::size_t target = choice % (maps + 1 + std::size(others));
  return target <= maps ? QStringLiteral("#m%1").arg(target)
                        : QLatin1String(others[target - maps - 1]);
}

QString Pair(const char* key, const QString& target, bool own) {
  const QString reference = "<styleUrl>" + target + "</styleUrl>";
  return QStringLiteral("<Pair><key>%1</key>%2</Pair>")
      .arg(QLatin1String(key),
           own ? "<StyleMap><Pair><key>normal</key>" + reference + "</Pair></StyleMap>"
               : reference);
}

QByteArray MakeDocument(const std::uint8_t* data, std::size_t maps) {
  const QString style = QStringLiteral("<Style id='m%1'/>").arg(maps);
  QString text;
  for (std::size_t i = 0; i < maps; ++i) {
    const unsigned normal = data[2 * i];
    const unsigned highlight = data[2 * i + 1];
    const QString url = QStringLiteral("<styleUrl>#m%1</styleUrl>").arg(i);
    text += QStringLiteral("<StyleMap id='m%1'>").arg(i) +
            Pair("normal", Target(normal, maps), normal >= 192) +
            Pair("highlight", Target(highlight, maps), highlight >= 192) + "</StyleMap>" +
            "<Placemark>" + url + "</Placemark>" + "<Placemark>" + url + "<Style" +
            (normal % 2 != 0 ? QStringLiteral(" id='i%1'").arg(i % 3) : QString()) +
            "><LineStyle><width>5</width></LineStyle></Style></Placemark>" +
            (i == maps / 2 ? style : QString());
  }
  return ("<Document>" + text + "</Document>").toUtf8();
}

void Ask(const AbstractFeature& feature) {
  const StyleSelector* shared = feature.GetReferencedStyleSelector();
  const StyleSelector* own = feature.GetInlineStyleSelector();
  // What a merge of the two gives now, whatever was merged before.
  const RefPtr<StyleSelector> merged =
      shared && own ? shared->InternalFlatten(own, false) : nullptr;
  for (const int mode : {kStyleNormal, kStyleHighlight}) {
    const Style* style = feature.getRenderStyle(mode);
    if (!style || !feature.getRenderStyleSelector()) {
      fuzz::Fail(QStringLiteral("a feature without a style"));
    }
    const Style* expected = merged ? merged->InternalGetSelectedStyle(mode) : style;
    if (!(*style == (expected ? *expected : *Style::GetDefaultStyle(mode)))) {
      fuzz::Fail(QStringLiteral("a look of the past"));
    }
  }
  feature.HasSpecifiedHighlightStyle();
}

/// The default among others.
float MakeWidth(unsigned choice) { return static_cast<float>(choice % 8) / 2.0F; }

/// Two documents, and what is taken out of them.
class World {
public:
  World(const QByteArray& text, std::size_t maps) : maps_(maps), near_(ReadDocument(text, kUrl)) {
    WatchSelectors(near_);
  }

  void AskAll() const {
    for (AbstractFeature* feature : Features()) {
      Ask(*feature);
    }
  }

  /// The same on threads of their own, each of which has some of the features.
  void AskOnThreads() const {
    constexpr std::size_t kThreads = 3;
    const std::vector<AbstractFeature*> features = Features();
    std::vector<std::thread> threads;
    for (std::size_t number = 0; number < kThreads; ++number) {
      threads.emplace_back([&features, number] {
        const ThreadScope scope;
        for (std::size_t i = number; i < features.size(); i += kThreads) {
          Ask(*features[i]);
        }
      });
    }
    for (std::thread& thread : threads) {
      thread.join();
    }
  }

  void Edit(unsigned operation, unsigned a, unsigned b);
  void Paste(unsigned choice);

  /// What was written and is read while the other document is there looks as it did.
  QByteArray WriteAndCompare() const {
    const QByteArray text = fuzz::Write(near_);
    const fuzz::Tree again = ReadDocument(text, kUrl);
    const std::vector<AbstractFeature*> features = FindAllIn<AbstractFeature>(near_);
    const std::vector<AbstractFeature*> readFeatures = FindAllIn<AbstractFeature>(again);
    if (features.size() != readFeatures.size()) {
      fuzz::Fail(QStringLiteral("features lost"));
    }
    // What is read finds the other document as it is now.
    if (!isTree_ || farReads_ > 1 || HasLateReference<AbstractFeature>() ||
        HasLateReference<StyleMap::Pair>()) {
      return text;
    }
    for (std::size_t i = 0; i < features.size(); ++i) {
      for (const int mode : {kStyleNormal, kStyleHighlight}) {
        const Style& style = *features[i]->getRenderStyle(mode);
        const Style& readStyle = *readFeatures[i]->getRenderStyle(mode);
        if (!(style == readStyle)) {
          fuzz::Fail(QStringLiteral("another look, of feature %1:\n%2")
                         .arg(i)
                         .arg(QString::fromUtf8(text)));
        }
      }
    }
    return text;
  }

  /// Nobody holds what is left of the documents.
  void Finish() {
    removed_.clear();
    near_.reset();
    far_.reset();
    source_.reset();
    for (const auto& watcher : watchers_) {
      if (watcher->get()) {
        fuzz::Fail(QStringLiteral("a selector outlives its document"));
      }
    }
  }

  /// False when a selector has been given to a feature beside its document: written, there are two.
  bool IsTree() const { return isTree_; }

private:
  static fuzz::Tree ReadDocument(const QByteArray& text, const char* url) {
    fuzz::Tree tree = fuzz::Read(text, QLatin1String(url));
    if (!tree) {
      fuzz::Fail(QStringLiteral("the document isn't read"));
    }
    return tree;
  }

  template <class T> static std::vector<T*> FindAllIn(const fuzz::Tree& tree) {
    mmvector<SchemaObject*> objects;
    if (tree) {
      tree->FindBySchema(T::GetClassSchema(), objects);
    }
    std::vector<T*> result;
    for (SchemaObject* object : objects) {
      result.push_back(static_cast<T*>(object));
    }
    return result;
  }
  template <class T> std::vector<T*> FindAll() const {
    std::vector<T*> result = FindAllIn<T>(near_);
    for (T* object : FindAllIn<T>(far_)) {
      result.push_back(object);
    }
    return result;
  }
  std::vector<AbstractFeature*> Features() const { return FindAll<AbstractFeature>(); }

  template <class T> T* Pick(unsigned choice) const {
    const std::vector<T*> all = FindAll<T>();
    return all.empty() ? nullptr : all[choice % all.size()];
  }

  /// True when something in the first document gave up what is there now.
  template <class T> bool HasLateReference() const {
    const std::vector<T*> all = FindAllIn<T>(near_);
    return std::any_of(all.begin(), all.end(), [](const T* object) {
      return !object->GetReferencedStyleSelector() &&
             StyleSelector::find(
                 SchemaObject::MakeAbsoluteId(object->GetBaseUrl(), object->GetStyleUrl()));
    });
  }

  void WatchSelectors(const fuzz::Tree& tree) {
    mmvector<SchemaObject*> objects;
    tree->FindBySchema(SchemaObject::GetClassSchema(), objects);
    for (SchemaObject* object : objects) {
      watchers_.push_back(std::make_unique<Watcher<SchemaObject>>(object));
    }
  }

  std::size_t maps_;
  bool isTree_ = true;
  int copies_ = 0;
  int farReads_ = 0;
  fuzz::Tree near_;
  fuzz::Tree far_;
  fuzz::Tree source_; ///< What is pasted comes from it.
  std::vector<RefPtr<StyleSelector>> removed_;
  std::vector<std::unique_ptr<Watcher<SchemaObject>>> watchers_;
};

/// Takes a feature out of the document that is pasted from, or a copy of it. That document stays:
/// what is pasted may refer to what is left there.
void World::Paste(unsigned choice) {
  if (!source_) {
    source_ = ReadDocument(kPasteDocument, kPasteUrl);
    WatchSelectors(source_);
  }
  const std::vector<Placemark*> left = FindAllIn<Placemark>(source_);
  if (left.empty())
    return;
  RefPtr<SchemaObject> pasted(left[choice % left.size()]);
  if (choice / 4 % 2 == 0)
    pasted = pasted->clone(true, nullptr);
  auto& document = static_cast<Document&>(*near_);
  document.InsertChild(static_cast<int>(choice / 8) % document.GetChildCount(),
                       static_cast<Placemark&>(*pasted));
}

void World::Edit(unsigned operation, unsigned a, unsigned b) {
  auto& document = static_cast<Document&>(*near_);
  AbstractFeature* feature = Pick<AbstractFeature>(a);
  // Among a document's styles, nothing tells its own look from a shared one with an id.
  auto* placemark = Pick<Placemark>(a);
  auto* pair = Pick<StyleMap::Pair>(a);
  const RefPtr<StyleSelector> selector(Pick<StyleSelector>(b));
  switch (operation % 20) {
  case 0:
    feature->SetStyleUrl(Target(b, maps_));
    break;
  case 1:
    if (pair) {
      pair->SetStyleUrl(Target(b, maps_));
    }
    break;
  case 2:
    if (selector && document.RemStyleSelector(*selector)) {
      removed_.push_back(selector);
    }
    break;
  case 3:
    if (!removed_.empty()) {
      document.AddStyleSelector(*removed_.back());
      removed_.pop_back();
    }
    break;
  case 4:
    removed_.clear();
    break;
  case 5:
    if (auto* style = Pick<Style>(a)) {
      style->GetLineStyle()->SetWidth(MakeWidth(b));
    }
    break;
  case 6:
    if (pair && selector) {
      pair->SetStyleSelector(selector.get());
    }
    break;
  case 7:
    feature->SetReferencedStyleSelector(selector.get());
    break;
  case 8:
    placemark->SetInlineStyleSelector(b % 2 != 0 ? selector.get() : nullptr);
    isTree_ = isTree_ && b % 2 == 0;
    break;
  case 9:
    placemark->InlineStyle()->GetLineStyle()->SetWidth(MakeWidth(b));
    break;
  case 10:
    if (selector) {
      // With its source's id, the copy would answer to what awaits the source, once it is read.
      const KmlId id(QStringLiteral("copy%1").arg(copies_++), QString());
      const RefPtr<SchemaObject> copy = selector->clone(id, true, nullptr);
      placemark->SetInlineStyleSelector(static_cast<StyleSelector*>(copy.get()));
    }
    break;
  case 11: {
    const RefPtr<SchemaObject> copy = feature->clone(true, nullptr);
    Ask(static_cast<AbstractFeature&>(*copy));
    break;
  }
  case 12:
    document.AddChild(*placemark); // from wherever it is
    break;
  case 13: {
    const RefPtr<SchemaObject> copy = placemark->clone(true, nullptr);
    document.AddChild(static_cast<Placemark&>(*copy));
    break;
  }
  case 14: {
    const RefPtr<SchemaObject> copy = placemark->clone(true, nullptr);
    document.InsertChild(static_cast<int>(b) % document.GetChildCount(),
                         static_cast<Placemark&>(*copy));
    static_cast<Placemark&>(*copy).InlineStyle()->GetLineStyle()->SetWidth(MakeWidth(b));
    break;
  }
  case 15:
    document.InsertChild(0, *placemark);
    break;
  case 16:
    Paste(b);
    break;
  case 17:
    if (auto* style = Pick<Style>(a)) {
      // What it is already, also where nobody said so.
      LineStyle& line = *style->GetLineStyle();
      line.SetWidth(line.GetWidth());
      line.setColor(line.GetColor());
    }
    break;
  case 18:
    AskOnThreads();
    break;
  default:
    far_ = b % 2 != 0 ? ReadDocument(kFarDocument, kFarUrl) : fuzz::Tree();
    if (far_) {
      ++farReads_;
      WatchSelectors(far_);
    }
  }
  feature = Pick<AbstractFeature>(b);
  Ask(*feature);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Start();
  const std::size_t maps = size == 0 ? 0 : std::min<std::size_t>({data[0], kMaxMaps, size / 2});
  if (2 * maps + 1 > size || maps == 0) {
    return 0;
  }
  World world(MakeDocument(data + 1, maps), maps);
  world.AskAll();
  const std::uint8_t* edit = data + 1 + 2 * maps;
  const std::size_t edits = std::min((size - 1 - 2 * maps) / 3, kMaxEdits);
  for (std::size_t i = 0; i < edits; ++i, edit += 3) {
    world.Edit(edit[0], edit[1], edit[2]);
  }
  world.AskOnThreads();
  world.AskAll();
  const QByteArray text = world.WriteAndCompare();
  const bool isTree = world.IsTree();
  world.Finish();
  const QByteArray again = fuzz::Write(fuzz::Read(text, QLatin1String(kUrl)));
  if (isTree && again != text) {
    fuzz::Fail(QStringLiteral("no fixed point:\n%1\n%2")
                   .arg(QString::fromUtf8(text), QString::fromUtf8(again)));
  }
  return 0;
}
