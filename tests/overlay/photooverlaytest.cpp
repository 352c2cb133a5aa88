#include "kestan/overlay/photooverlay.h"

#include "kestan/core/library.h"
#include "kestan/host/kmz.h"
#include "kestan/overlay/imagepyramid.h"
#include "kestan/overlay/photooverlayschema.h"
#include "kestan/spacetime/viewvolumeschema.h"
#include "kestan/style/icon.h"
#include "tests/support/kmltest.h"

#include <QFile>
#include <QTemporaryDir>

#include <limits>

namespace vorrel::kestan {

class PhotoOverlayTest : public KmlTest {
protected:
  RefPtr<PhotoOverlay> ReadPhoto(const QString& content) {
    return Read<PhotoOverlay>("<PhotoOverlay>" + content + "</PhotoOverlay>");
  }
  RefPtr<PhotoOverlay> ReadPyramid(const QString& fields) {
    return ReadPhoto("<Icon><href>t/$[level]/$[x]_$[y]_$[X].jpg</href></Icon><ImagePyramid>" +
                     fields + "</ImagePyramid>");
  }
};

TEST_F(PhotoOverlayTest, AThumbnailIsThePhotoInItsCoarsestTile) {
  constexpr long long kMost = std::numeric_limits<long long>::max();
  const struct {
    int tileSize;
    long long width, height;
    const char* lower; // x,y,w,h with rows from below
    int upper;         // y with rows from above
  } cases[] = {
      {256, 1000, 500, "0,0,250,125", 131}, {256, 500, 1000, "0,0,125,250", 6},
      {256, 256, 256, "0,0,256,256", 0},    {256, 257, 257, "0,0,128,128", 128},
      {100, 30, 20, "0,0,30,20", 80},       {256, kMost, 1, "0,0,255,0", 256},
      {256, -5, 1000, "0,0,-1,250", 6},     {2147483647, 7, -9, "0,0,7,-1", 2147483647},
      {256, -4, -2, "0,0,-1,-1", 0},        {0, 100, 100, "0,0,-1,-1", 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.lower);
    const QString fields =
        QStringLiteral("<tileSize>%1</tileSize><maxWidth>%2</maxWidth><maxHeight>%3</maxHeight>")
            .arg(c.tileSize)
            .arg(c.width)
            .arg(c.height);
    const RefPtr<Icon> lower = ReadPyramid(fields)->CreateThumbnail();
    EXPECT_EQ(c.lower, QStringLiteral("%1,%2,%3,%4")
                           .arg(lower->GetX())
                           .arg(lower->GetY())
                           .arg(lower->GetW())
                           .arg(lower->GetH()));
    EXPECT_FALSE(lower->GetClientFlag());
    EXPECT_EQ("http://example.com/dir/t/0/0_0_$[X].jpg", lower->GetAbsoluteUrl());
    const auto photo = ReadPyramid(fields + "<gridOrigin>upperLeft</gridOrigin>");
    EXPECT_EQ(c.upper, photo->CreateThumbnail()->GetY());
    EXPECT_EQ(c.width, photo->GetPhotoSize().x);
    EXPECT_EQ(c.height, photo->GetPhotoSize().y);
  }
  const auto whole = ReadPhoto("<Icon><href>http://h/a.jpg?x=$[x]</href></Icon>");
  EXPECT_EQ("http://h/a.jpg?x=$[x]", whole->GetThumbnailUrl());
  EXPECT_EQ(whole->GetThumbnailUrl(), whole->CreateThumbnail()->GetAbsoluteUrl());
  whole->SetImageSize({30, 40});
  EXPECT_EQ((Vec2<long long>{30, 40}), whole->GetPhotoSize());
  for (const char* none : {"", "<Icon/><ImagePyramid/>"}) {
    const auto photo = ReadPhoto(none);
    EXPECT_TRUE(photo->GetThumbnailUrl().isEmpty());
    EXPECT_TRUE(photo->CreateThumbnail()->GetHref().isEmpty());
  }
}

TEST_F(PhotoOverlayTest, NegativeSizesCountTiles) {
  constexpr long long kMost = std::numeric_limits<long long>::max();
  const long long cases[][3] = {{256, -3, 768},         {256, 5, 5},          {-2, -3, -6},
                                {1, -kMost - 1, kMost}, {256, -kMost, kMost}, {0, -9, 0}};
  for (const auto& [tileSize, stored, pixels] : cases) {
    const auto photo = ReadPyramid(QStringLiteral("<tileSize>%1</tileSize>").arg(tileSize));
    EXPECT_EQ(pixels, photo->GetImagePyramid()->GetPixelValue(stored)) << stored;
  }
}

TEST_F(PhotoOverlayTest, AViewVolumeThatIsOnlyLookedAtIsNotWritten) {
  const auto photo = ReadPhoto("<rotation>1</rotation>");
  const QString before = Write(*photo);
  ViewVolume* const volume = photo->viewVolume();
  ASSERT_TRUE(volume);
  EXPECT_EQ(photo.get(), volume->GetOwner(0));
  EXPECT_EQ(volume, photo->viewVolume());
  const auto copy = Cast<PhotoOverlay>(photo->clone(true, nullptr).get(), "clone");
  EXPECT_EQ(before, Write(*photo));
  EXPECT_EQ(before, Write(*copy));
  ViewVolumeSchema::GetSingleton().topFov.SetTypedObject(*volume, 0.0F);
  EXPECT_TRUE(Write(*photo).contains("<ViewVolume>"));
  EXPECT_EQ(before, Write(*copy));
  EXPECT_TRUE(
      RoundTrip("<PhotoOverlay><ViewVolume></ViewVolume></PhotoOverlay>").contains("<ViewVolume>"));
}

TEST_F(PhotoOverlayTest, PhotosAreCompatibleThatAreShownAlike) {
  const char* const kinds[] = {
      "",
      "<shape>sphere</shape>",
      "<ViewVolume/>",
      "<ViewVolume><leftFov>-1</leftFov></ViewVolume>",
      "<ImagePyramid/>",
      "<ImagePyramid><maxWidth>9</maxWidth></ImagePyramid>",
      "<ImagePyramid><gridOrigin>upperLeft</gridOrigin></ImagePyramid>",
  };
  for (const char* a : kinds) {
    for (const char* b : kinds)
      EXPECT_EQ(a == b, ReadPhoto(a)->IsCompatible(*ReadPhoto(b))) << a << b;
  }
  EXPECT_TRUE(ReadPhoto("<ImagePyramid><existenceMapHref>m</existenceMapHref></ImagePyramid>")
                  ->IsCompatible(*ReadPhoto("<name>n</name><ImagePyramid/>")));
}

TEST_F(PhotoOverlayTest, APanoramaIsExperimental) {
  const QString text = "<PhotoOverlay><shape>panorama</shape></PhotoOverlay>";
  for (const bool isOn : {false, true}) {
    GShutdown();
    KestanCreationParams params;
    params.set_enable_experimental_kml(isOn);
    GInitialize(params);
    const auto photo = Read<PhotoOverlay>(text);
    EXPECT_EQ(isOn ? PhotoOverlay::kPanorama : PhotoOverlay::kRectangle, photo->GetShape());
    EXPECT_EQ(text, Squeezed(Element(Write(*photo), "PhotoOverlay")));
  }
}

TEST_F(PhotoOverlayTest, ImageAndExistenceMapTravelInAnArchive) {
  const QTemporaryDir folder;
  for (const char* name : {"a.jpg", "map.txt"}) {
    QFile file(folder.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(name) > 0);
  }
  const auto photo = ReadAt(folder.filePath("doc.kml"),
                            "<PhotoOverlay><Icon><href>a.jpg</href></Icon><ImagePyramid>"
                            "<existenceMapHref>map.txt</existenceMapHref></ImagePyramid>"
                            "</PhotoOverlay>");
  const QString archive = folder.filePath("out.kmz");
  ASSERT_EQ("", photo->WriteKmlFile(archive));
  const QString written = QString::fromUtf8(kmz::UnzipFile(archive, QString()));
  EXPECT_TRUE(written.contains("<href>files/a.jpg</href>"));
  EXPECT_TRUE(written.contains("<existenceMapHref>files/map.txt</existenceMapHref>"));
  EXPECT_EQ("map.txt", kmz::UnzipFile(archive, "files/map.txt"));
}

} // namespace vorrel::kestan
