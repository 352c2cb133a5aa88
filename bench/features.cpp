// What goes over all features costs, by their number, and what the files of a model cost that are
// packed with it. Prints nanoseconds, or microseconds, each: nothing may grow with the number.

#include "bench/compare.h"
#include "kestan/core/library.h"
#include "kestan/feature/featureiterator.h"
#include "kestan/feature/folder.h"
#include "kestan/feature/placemark.h"
#include "kestan/geometry/alias.h"
#include "kestan/geometry/model.h"
#include "kestan/geometry/resourcemap.h"
#include "kestan/host/datetime.h"
#include "kestan/host/resourcedictionary.h"
#include "kestan/link/link.h"
#include "kestan/spacetime/timestamp.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

using namespace vorrel;
using namespace vorrel::kestan;
using bench::Seconds;

namespace {

using Iterator = AbstractFeature::Iterator;

constexpr int kFolderSize = 100;

RefPtr<Folder> MakeTree(int count, std::vector<AbstractFeature*>& placemarks) {
  RefPtr<Folder> root(new Folder(KmlId(), QString()));
  for (int i = 0; i < count; ++i) {
    if (i % kFolderSize == 0) {
      root->AddChild(*RefPtr<Folder>(new Folder(KmlId(), QString())));
    }
    const RefPtr<Placemark> placemark = Placemark::CreatePlacemark();
    static_cast<AbstractFolder*>(root->GetChild(i / kFolderSize))->AddChild(*placemark);
    placemarks.push_back(placemark.get());
  }
  return root;
}

double WalkOver(AbstractFeature* root, Iterator::FilterOp& filter) {
  int count = 0;
  const double seconds = Seconds([&] {
    for (Iterator at(root, filter); at.GetFeature(); at.next()) {
      ++count;
    }
  });
  return seconds * 1e9 / count;
}

void MeasureFeatures(int maxCount) {
  std::printf("%-12s %9s %9s %9s %9s %9s\n", "ns each", "walk", "leaves", "register", "range",
              "leave");
  for (int count = 1000; count <= maxCount; count *= 10) {
    std::vector<AbstractFeature*> placemarks;
    const RefPtr<Folder> root = MakeTree(count, placemarks);
    std::vector<RefPtr<TimePrimitive>> times;
    for (int i = 0; i < count; ++i) {
      const RefPtr<TimeStamp> time(new TimeStamp(KmlId(), QString()));
      time->SetWhen(DateTime::FromString(QString::number(1000 + i % 1000)));
      times.push_back(time);
    }
    Iterator::BasicFilter leaves(Iterator::BasicFilter::kLeavesOnly);
    const double all = WalkOver(root.get(), Iterator::s_default_no_filter);
    const double some = WalkOver(root.get(), leaves);
    const auto set = [&](bool given) {
      return Seconds([&] {
        for (std::size_t i = 0; i < placemarks.size(); ++i) {
          placemarks[i]->SetTimePrimitive(given ? times[i].get() : nullptr);
        }
      });
    };
    const double enter = set(true);
    bool any = false;
    const double range = Seconds([&] {
      DateTime begin;
      DateTime end;
      any = AbstractFeature::GetWorldTimeRange(begin, end, nullptr, nullptr);
    });
    const double leave = set(false);
    if (!any) {
      std::fprintf(stderr, "no feature has a time\n");
      std::exit(1);
    }
    const double scale = 1e9 / count;
    std::printf("%-12d %9.1f %9.1f %9.1f %9.1f %9.1f\n", count, all, some, enter * scale,
                range * scale, leave * scale);
  }
}

/// Files of a few bytes, named by one model.
void MeasureArchives(int maxCount) {
  std::printf("\n%-12s %9s %9s\n", "us each", "pack", "set");
  for (int count = 1000; count <= std::min(maxCount, 16000); count *= 4) {
    const QTemporaryDir folder;
    ResourceDictionary dictionary;
    for (int i = -1; i < count; ++i) {
      const QString name = i < 0 ? QStringLiteral("m.dae") : QStringLiteral("%1.png").arg(i);
      QFile file(folder.filePath(name));
      if (!file.open(QIODevice::WriteOnly) || file.write("bytes") < 0) {
        std::exit(1);
      }
      if (i >= 0) {
        dictionary.Insert(name, QString(), name);
      }
    }
    const QString base = folder.filePath(QStringLiteral("doc.kml"));
    const RefPtr<Placemark> placemark = Placemark::CreatePlacemark();
    const RefPtr<Model> model(
        new Model(Vec3<double>(), placemark.get(), KmlId(QString(), base), base));
    model->GetModelDataLink()->SetHref(QStringLiteral("m.dae"));
    const double set = Seconds([&] { model->SetReferencedTexturePaths(dictionary); });
    QString error;
    const double pack =
        Seconds([&] { error = placemark->WriteKmlFile(folder.filePath(QStringLiteral("o.kmz"))); });
    if (!error.isEmpty()) {
      std::fprintf(stderr, "%s\n", qPrintable(error));
      std::exit(1);
    }
    std::printf("%-12d %9.1f %9.2f\n", count, pack * 1e6 / count, set * 1e6 / count);
  }
}

} // namespace

int main(int argc, char** argv) {
  const int maxCount = argc > 1 ? std::atoi(argv[1]) : 1000000;
  GInitialize();
  MeasureFeatures(maxCount);
  MeasureArchives(maxCount);
  GShutdown();
  return 0;
}
