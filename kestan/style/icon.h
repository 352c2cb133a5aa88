#pragma once

#include "kestan/link/abstractlink.h"
#include "kestan/style/iconkey.h"
#include "kestan/style/iconrectangle.h"

namespace vorrel {
struct LegacyScreenVec;
}

namespace vorrel::kestan {

class IconSchema;

/// A link to an image, and the part of it to show.
///
/// The image can also be a tile of one of the old palettes, by the palette's URL and a rectangle or
/// by the tile's own URL. Such a tile stands for a shape that clients have built in: the icon then
/// shows the whole shape, and has its key. What an icon shows depends on its reference and
/// rectangle alone, in whatever order they were set.
class KESTAN_EXPORT Icon final : public AbstractLink {
public:
  using ClassSchema = IconSchema;
  static const Schema& GetClassSchema();

  /// What the URL of an icon led to. A positive value, which is never left behind, is a palette
  /// tile in the form that `MapTexIdToIconFile` takes.
  enum TexId : short {
    kNoImage = 0,
    kUnknownImage = -1, ///< Also a number in the URL that can't be read.
    kImageFile = -2,
    kFlatfileImage = -3,
    kBuiltInImage = -4,
  };

  // A URL resolves against the base, unless `makeAbsolute` is false: then it's the name of a
  // texture. `clientFlag` is the client's own, true where there's none.
  Icon(const KmlId& id, const QString& baseUrl);
  Icon(const KmlId& id, const QString& baseUrl, bool clientFlag);
  Icon(const QString& url, bool makeAbsolute, bool clientFlag);
  Icon(const QString& url, bool clientFlag);
  explicit Icon(bool clientFlag);
  Icon();
  /// A palette tile.
  Icon(unsigned short texId, bool clientFlag);
  ~Icon() override;

  // New icons. Without URL, name or tile they are empty.
  static RefPtr<Icon> CreateEmptyIcon(bool clientFlag = true);
  static RefPtr<Icon> CreateFromTextureName(const QString& name, bool clientFlag = true);
  static RefPtr<Icon> create(const QString& url, bool clientFlag = true);
  static RefPtr<Icon> CreateFromTexId(unsigned short id, bool clientFlag = true);
  static RefPtr<Icon> CreateDefaultIcon();
  /// The shared icons of places and of photos; nobody changes them. Null outside the library's
  /// life.
  static Icon* GetDefaultIcon();
  static Icon* GetDefaultPhotoIcon();
  /// The library's start and stop.
  static void Initialize();
  static void Shutdown();

  /// The reference as written. Hides the document's URL of the base class.
  const QString& GetUrl() const { return GetHref(); }

  /// The part of the image to show, in pixels from its top left; a size of -1 is the whole image.
  int GetX() const { return x_; }
  int GetY() const { return y_; }
  int GetW() const { return w_; }
  int GetH() const { return h_; }
  void SetX(int x);
  void SetY(int y);
  /// A negative size is -1.
  void SetW(int w);
  void SetH(int h);
  bool HasSpecifiedX() const;
  bool HasSpecifiedY() const;
  bool HasSpecifiedW() const;
  bool HasSpecifiedH() const;

  short GetTexId() const { return texId_; }
  /// The palette that the URL names, or -1.
  short GetPaletteNumber() const { return paletteNumber_; }
  int GetUrlType() const { return urlType_; }
  /// True for a built-in shape, of which the whole is shown.
  bool IsWholeImage() const { return wholeImage_; }
  bool GetClientFlag() const { return clientFlag_; }
  /// The text that identifies the image.
  QString GetKeyText() const;
  IconKey CreateIconKey() const { return IconKey(GetKeyText(), x_, y_, w_, h_); }
  /// Icons are equal when they show the same.
  bool operator==(const Icon& other) const;
  bool operator!=(const Icon& other) const { return !(*this == other); }

  /// Where a built-in shape marks its place; null for anything else.
  const LegacyScreenVec* GetHotSpotOverride() const;
  /// The URL with the rectangle in its query; for clients.
  QString AppendPaletteParams(const QString& url) const;
  /// Name of the shape of a palette's icon. The icon shows all of it from now on.
  QString MapPalIconToShape(short palette, int index);

  /// Sets the sides that only the older elements give.
  void AdoptLegacyRectangle();

  // Numbers of old icons. The tile column is in the low bits.
  static unsigned short GetOldNormal(unsigned short old);
  static unsigned short GetOldHighlight(unsigned short old);
  /// The row of a palette in which the tiles of an old row are.
  static int OldRowToNew(int row);
  static unsigned short OldToNew(int palette, int row, int column);
  static unsigned short OldToNew(unsigned short old);

  /// The older form of the element, with the URL as its text.
  FromStringResult fromString(const QString& text) override;
  const Field* GetTextField() const override;
  QString GetResourceUrl() const override;
  void merge(const SchemaObject& a, const SchemaObject& b) override;
  void SetNotGiven(const Field& field) override;
  void NotifyFieldChanged(const Field& field) override;
  void CopyNonFieldStuff(const SchemaObject& src) override;
  void WriteKml(WriteState& state) const override;

  /// Copied with an icon; the client's.
  static unsigned s_refresh_stamp;
  unsigned GetRefreshStamp() const { return refreshStamp_; }

private:
  friend class IconSchema;
  friend class IconSideField;

  enum HotSpotKind : unsigned char { kNoHotSpot, kCentre, kBottomCentre };

  /// The sides of the rectangle in the order x, y, w, h.
  static std::int32_t Icon::*const kSides[IconRectangle::kSideCount];

  Icon(const KmlId& id, const QString& baseUrl, const QString& url, bool makeAbsolute,
       bool clientFlag);

  void init(const QString& url, bool makeAbsolute, bool clientFlag);
  /// Finds out what is shown.
  void update();
  void Resolve();
  /// Shows the part of the image that the rectangle says.
  void ResetRectangle();
  void Classify();
  bool TakeBitmapForm(int palette);
  bool TakeServerForm(const QString& rest);
  bool TakeTile(int palette, int column, int row);
  void MapOldRows();
  /// False when there's no shape for it.
  bool ShowTile();
  void ShowWholeImage();
  void SetSide(int side, int value);
  bool HasSpecified(int side) const;
  /// True for a side that has a value of its own where the URL's query or the older element of that
  /// side could mean another one.
  bool IsSpecifiedAgainstOthers(const Field& field) const;

  std::int32_t x_ = 0;
  std::int32_t y_ = 0;
  std::int32_t w_ = -1;
  std::int32_t h_ = -1;
  // The older elements; kept, and translated by the reader.
  std::int32_t legacyX_ = 0;
  std::int32_t legacyY_ = 0;
  std::int32_t legacyW_ = -1;
  std::int32_t legacyH_ = -1;
  QString keyText_;
  QString resolvedUrl_; // the reference, made absolute, before a tile's own file takes its place
  IconRectangle rectangle_;
  bool isPalette_ = false; // the URL is of a palette or a tile, and decides with the rectangle
  HotSpotKind hotSpotKind_ = kNoHotSpot;
  short texId_ = kNoImage;
  short paletteNumber_ = -1;
  bool fromBitmapForm_ = false; // rows count as they did in the oldest palettes
  bool makeAbsolute_ = true;
  bool clientFlag_ = true;
  bool wholeImage_ = false;
  unsigned refreshStamp_ = s_refresh_stamp;
  int urlType_ = 0;
};

} // namespace vorrel::kestan
