// What updates cost, by the number of what they change: nothing may be quadratic in changes,
// targets, siblings or edits. Prints microseconds for each of them, and the ratio to the same done
// through the objects' own operations where there is one.

#include "bench/compare.h"
#include "kestan/core/library.h"
#include "kestan/feature/abstractfeatureschema.h"
#include "kestan/feature/folder.h"
#include "kestan/feature/placemark.h"
#include "kestan/geometry/linestring.h"
#include "kestan/read/kmlhandler.h"
#include "kestan/update/update.h"

#include <QString>

#include <cstdio>
#include <cstdlib>
#include <functional>

using namespace vorrel;
using namespace vorrel::kestan;
using bench::Seconds;

namespace {

const QString kUrl = QStringLiteral("http://example.com/doc.kml");

RefPtr<SchemaObject> Read(const QString& text) {
  const QByteArray bytes = text.toUtf8();
  KmlHandler handler(kUrl, 2, nullptr, nullptr, nullptr);
  RefPtr<SchemaObject> object =
      ExpatHandler::LoadXml(handler, reinterpret_cast<const unsigned char*>(bytes.constData()),
                            static_cast<std::size_t>(bytes.size()));
  if (!object) {
    std::fprintf(stderr, "a document of the benchmark can't be read\n");
    std::exit(1);
  }
  return object;
}

/// `count` times the text, with the number in the place of "%1".
QString Repeat(int count, const QString& text) {
  QString all;
  for (int i = 0; i < count; ++i) {
    all += QString(text).replace(QLatin1String("%1"), QString::number(i));
  }
  return all;
}

RefPtr<Folder> MakeFolder(int count) {
  const auto object =
      Read("<Folder id=\"f\">" + Repeat(count, "<Placemark id=\"p%1\"><name>a</name></Placemark>") +
           "</Folder>");
  return RefPtr<Folder>(static_cast<Folder*>(object.get()));
}

RefPtr<Update> MakeUpdate(const QString& content) {
  const auto object = Read("<Update>" + content + "</Update>");
  return RefPtr<Update>(static_cast<Update*>(object.get()));
}

struct Pattern {
  const char* name;
  /// The content of an update of `count` changes.
  QString (*makeContent)(int count);
};

const Pattern kPatterns[] = {
    {"change, one value each",
     [](int count) {
       return "<Change>" +
              Repeat(count, "<Placemark targetId=\"p%1\"><visibility>0</visibility></Placemark>") +
              "</Change>";
     }},
    {"change, all of one object",
     [](int count) {
       return "<Change>" +
              Repeat(count, "<Placemark targetId=\"p0\"><name>n%1</name></Placemark>") +
              "</Change>";
     }},
    {"change, a block each",
     [](int count) {
       return Repeat(count, "<Change><Placemark targetId=\"p%1\"><name>b</name></Placemark>"
                            "</Change>");
     }},
    {"create, behind",
     [](int count) {
       return "<Create><Folder targetId=\"f\">" + Repeat(count, "<Placemark id=\"n%1\"/>") +
              "</Folder></Create>";
     }},
    {"create, a block each",
     [](int count) {
       return Repeat(count, "<Create><Folder targetId=\"f\"><Placemark id=\"n%1\"/></Folder>"
                            "</Create>");
     }},
    {"create, in front",
     [](int count) {
       return "<Create><Folder targetId=\"f\">" +
              Repeat(count, "<Placemark id=\"n%1\" targetIndex=\"0\"/>") + "</Folder></Create>";
     }},
    {"create, by place",
     [](int count) {
       QString content;
       for (int i = 0; i < count; ++i) {
         content += QStringLiteral("<Create><Folder targetId=\"f\"><Placemark id=\"n%1\" "
                                   "targetIndex=\"%2\"/></Folder></Create>")
                        .arg(i)
                        .arg(static_cast<int>(i * 7919LL % (count + i)));
       }
       return content;
     }},
    {"create, by id",
     [](int count) {
       return "<Create><Folder targetId=\"f\">" +
              Repeat(count, "<Placemark id=\"n%1\" targetIdIndex=\"p%1\"/>") + "</Folder></Create>";
     }},
    {"create and delete in turn",
     [](int count) {
       return Repeat(count, "<Delete><Placemark targetId=\"p%1\"/></Delete><Create><Folder "
                            "targetId=\"f\"><Placemark id=\"n%1\" targetIndex=\"0\"/></Folder>"
                            "</Create>");
     }},
    {"move into another folder",
     [](int count) {
       return "<Create><Folder targetId=\"f\"><Folder id=\"g\">" +
              Repeat(count, "<Placemark targetId=\"p%1\"/>") + "</Folder></Folder></Create>";
     }},
    {"delete, a block each",
     [](int count) { return Repeat(count, "<Delete><Placemark targetId=\"p%1\"/></Delete>"); }},
    {"delete and change in turn",
     [](int count) {
       return Repeat(count, "<Delete><Placemark targetId=\"p%1\"/></Delete><Change><Folder "
                            "targetId=\"f\"><open>1</open></Folder></Change>");
     }},
    {"replace",
     [](int count) {
       return "<Replace>" + Repeat(count, "<Placemark targetId=\"p%1\" id=\"r%1\"/>") +
              "</Replace>";
     }},
    {"refuse",
     [](int count) {
       return "<Change>" + Repeat(count, "<Folder targetId=\"p%1\"><name>b</name></Folder>") +
              "</Change>";
     }},
};

void MeasurePatterns(int maxCount) {
  std::printf("%-28s %9s %12s %12s\n", "microseconds each", "count", "create", "apply");
  for (const Pattern& pattern : kPatterns) {
    for (int count = 1000; count <= maxCount; count *= 10) {
      const RefPtr<Folder> folder = MakeFolder(count);
      const RefPtr<Update> update = MakeUpdate(pattern.makeContent(count));
      const double create = Seconds([&] { update->CreateEdits(nullptr); });
      const double apply = Seconds([&] { update->ApplyEdits(1.0F); });
      std::printf("%-28s %9d %12.3f %12.3f\n", pattern.name, count, create * 1e6 / count,
                  apply * 1e6 / count);
    }
  }
}

/// A frame of an animation against the same values set directly.
void MeasureFrames(int maxCount) {
  constexpr int kFrames = 20;
  std::printf("\n%-28s %9s %12s %12s %8s\n", "nanoseconds each", "edits", "a frame", "directly",
              "ratio");
  const auto& opacity = AbstractFeatureSchema::GetSingleton().opacity;
  for (int count = 1000; count <= maxCount; count *= 10) {
    const RefPtr<Folder> folder = MakeFolder(count);
    const RefPtr<Update> update =
        MakeUpdate("<Change>" +
                   Repeat(count, "<Placemark targetId=\"p%1\"><opacity>0.5</opacity></Placemark>") +
                   "</Change>");
    update->SetKeepEdits(true);
    update->CreateEdits(nullptr);
    double frames = 0.0;
    double direct = 0.0;
    for (int frame = 1; frame <= kFrames; ++frame) {
      const float fraction = static_cast<float>(frame) / (kFrames + 1);
      frames += Seconds([&] { update->ApplyEdits(fraction); });
    }
    update->DeleteAllEdits();
    for (int frame = 1; frame <= kFrames; ++frame) {
      const float value = 1.0F - 0.5F * static_cast<float>(frame) / (kFrames + 1);
      direct += Seconds([&] {
        for (int i = 0; i < count; ++i) {
          opacity.SetTypedObject(*folder->GetChild(i), value);
        }
      });
    }
    const double scale = 1e9 / kFrames / count;
    std::printf("%-28s %9d %12.1f %12.1f %8.2f\n", "opacity", count, frames * scale, direct * scale,
                frames / direct);
  }
}

/// Lists of 1,000 tuples half on their way.
void MeasureLists(int maxTuples) {
  constexpr int kTuples = 1000;
  constexpr int kFrames = 5;
  std::printf("\n%-28s %9s %12s %12s\n", "nanoseconds a tuple", "lists", "create", "a frame");
  QString before;
  QString after;
  for (int i = 0; i < kTuples; ++i) {
    before += QStringLiteral("%1,2,3 ").arg(i * 0.1);
    after += QStringLiteral("%1,4,5 ").arg(i * 0.1 + 1);
  }
  for (int lists = 1; lists * kTuples <= maxTuples * 10; lists *= 10) {
    const QString placemark = QStringLiteral("<Placemark><LineString id=\"l%1\"><coordinates>") +
                              before + "</coordinates></LineString></Placemark>";
    const auto document = Read("<Folder>" + Repeat(lists, placemark) + "</Folder>");
    const RefPtr<Update> update =
        MakeUpdate("<Change>" +
                   Repeat(lists, "<LineString targetId=\"l%1\"><coordinates>" + after +
                                     "</coordinates></LineString>") +
                   "</Change>");
    update->SetKeepEdits(true);
    const double create = Seconds([&] { update->CreateEdits(nullptr); });
    double frames = 0.0;
    for (int frame = 0; frame < kFrames; ++frame) {
      frames += Seconds([&] { update->ApplyEdits(0.5F); });
    }
    const double tuples = static_cast<double>(lists) * kTuples;
    std::printf("%-28s %9d %12.2f %12.2f\n", "coordinates", lists, create * 1e9 / tuples,
                frames * 1e9 / kFrames / tuples);
  }
}

} // namespace

int main(int argc, char** argv) {
  const int maxCount = argc > 1 ? std::atoi(argv[1]) : 100000;
  GInitialize();
  MeasurePatterns(maxCount);
  MeasureFrames(maxCount);
  MeasureLists(maxCount);
  GShutdown();
  return 0;
}
