#include "bench/wideexpat.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include <dlfcn.h>

namespace bench {

namespace {

// The names of <expat.h>, declared here for the wide character type: the header serves one build
// at a time, and the library's is the narrow one.
using Parser = struct ParserStruct*;
using Char = char16_t;

struct Feature { // XML_Feature
  int feature;
  const char* name;
  long value;
};
constexpr int kFeatureUnicode = 1;
constexpr int kFeatureSizeofChar = 6;

[[noreturn]] void Die(const char* message) {
  std::fprintf(stderr, "wide expat: %s\n", message);
  std::exit(1);
}

void IgnoreStart(void* /*user*/, const Char* /*name*/, const Char** /*attributes*/) {}
void IgnoreEnd(void* /*user*/, const Char* /*name*/) {}
void IgnoreText(void* /*user*/, const Char* /*text*/, int /*length*/) {}

struct Seen {
  std::size_t elements = 0;
  bool wide = false;
};

/// A wide "kml" can't be mistaken for a narrow one: its second byte is 0.
void CountStart(void* user, const Char* name, const Char** /*attributes*/) {
  auto& seen = *static_cast<Seen*>(user);
  ++seen.elements;
  seen.wide = seen.wide || (name[0] == u'k' && name[1] == u'm' && name[2] == u'l' && name[3] == 0);
}

} // namespace

struct WideExpat::Api {
  void* library;
  Parser (*create)(const Char*);
  void (*free)(Parser);
  void (*setUserData)(Parser, void*);
  void (*setElementHandler)(Parser, void (*)(void*, const Char*, const Char**),
                            void (*)(void*, const Char*));
  void (*setCharacterDataHandler)(Parser, void (*)(void*, const Char*, int));
  int (*parse)(Parser, const char*, int, int);

  template <class F> void Find(F& function, const char* name) const {
    function = reinterpret_cast<F>(dlsym(library, name));
    if (!function) {
      Die(dlerror());
    }
  }

  void Feed(Parser parser, const std::string& text) const {
    std::size_t done = 0;
    do {
      const std::size_t piece = std::min<std::size_t>(text.size() - done, INT_MAX);
      if (parse(parser, text.data() + done, static_cast<int>(piece), done + piece == text.size()) !=
          1) {
        Die("the text isn't well-formed");
      }
      done += piece;
    } while (done < text.size());
  }
};

WideExpat::WideExpat() : api_(new Api{}) {
  api_->library = dlopen("libexpatw.so.1", RTLD_NOW | RTLD_LOCAL | RTLD_DEEPBIND);
  if (!api_->library) {
    Die(dlerror());
  }
  api_->Find(api_->create, "XML_ParserCreate");
  api_->Find(api_->free, "XML_ParserFree");
  api_->Find(api_->setUserData, "XML_SetUserData");
  api_->Find(api_->setElementHandler, "XML_SetElementHandler");
  api_->Find(api_->setCharacterDataHandler, "XML_SetCharacterDataHandler");
  api_->Find(api_->parse, "XML_Parse");

  const Feature* (*features)() = nullptr;
  api_->Find(features, "XML_GetFeatureList");
  bool unicode = false;
  bool twoBytes = false;
  for (const Feature* feature = features(); feature->feature != 0; ++feature) {
    unicode = unicode || feature->feature == kFeatureUnicode;
    twoBytes = twoBytes || (feature->feature == kFeatureSizeofChar && feature->value == 2);
  }
  if (!unicode || !twoBytes) {
    Die("the library that was loaded isn't the wide build");
  }
  CountElements("<kml/>"); // its functions call each other, not those of the narrow build
}

WideExpat::~WideExpat() {
  dlclose(api_->library);
  delete api_;
}

void WideExpat::Parse(const std::string& text) const {
  const Parser parser = api_->create(nullptr);
  api_->setElementHandler(parser, IgnoreStart, IgnoreEnd);
  api_->setCharacterDataHandler(parser, IgnoreText);
  api_->Feed(parser, text);
  api_->free(parser);
}

std::size_t WideExpat::CountElements(const std::string& text) const {
  const Parser parser = api_->create(nullptr);
  Seen seen;
  api_->setUserData(parser, &seen);
  api_->setElementHandler(parser, CountStart, IgnoreEnd);
  api_->Feed(parser, text);
  api_->free(parser);
  if (!seen.wide) {
    Die("names don't arrive in 16-bit characters");
  }
  return seen.elements;
}

} // namespace bench
