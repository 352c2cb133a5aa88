#include "bench/patterns.h"

#include "kestan/core/field.h"
#include "kestan/core/schema.h"
#include "kestan/core/schemaobject.h"
#include "kestan/read/namespaces.h"
#include "kestan/style/styleselector.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

using namespace vorrel::kestan;

namespace bench {

namespace {

/// More nested elements than this, and the reader refuses the document.
constexpr int kMaxLevels = 900;

/// So many times a text that grows along with their number is beyond any limit for what's repeated.
constexpr int kManyTimes = 2500;

/// Texts that mean something to one kind of field or another.
const char* const kValues[] = {"0",          "1",         "a",          "0,0,1 1,1,1",
                               "2007-01-01", "1,1,2",     "#s0",        "#s1",
                               "ffffffff",   "80ffffff",  "x.png?x=%1", "b%1.png",
                               "normal",     "highlight", "1.001",      "relativeToGround",
                               "2008",       "y",         "$[name]",    "0.5"};

std::string Number(int i) { return std::to_string(i); }

std::string Repeat(const std::string& text, int count) {
  std::string all;
  all.reserve(text.size() * static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    all += text;
  }
  return all;
}

/// `make(i)` for each i below `count`.
std::string Each(int count, const std::function<std::string(int)>& make) {
  std::string all;
  for (int i = 0; i < count; ++i) {
    all += make(i);
  }
  return all;
}

std::string Tag(const std::string& name, const std::string& content,
                const std::string& attributes = "") {
  return "<" + name + attributes + ">" + content + "</" + name + ">";
}

std::string Root(const std::string& content, const std::string& attributes = "") {
  return Tag("kml", content,
             " xmlns=\"" + std::string(kKmlNamespaceString) + "2.2\" xmlns:gx=\"" +
                 kExtNamespaceString + "2.2\" xmlns:atom=\"" + kAtomNamespaceString + "\"" +
                 attributes);
}

std::string InDocument(const std::string& content) { return Root(Tag("Document", content)); }

std::string NameOf(const Schema& schema) { return schema.GetTag().toStdString(); }
std::string NameOf(const Field& field) { return field.GetPrefixedElem().toStdString(); }

/// The classes that a document can hold where a field is for `schema`.
void CollectClasses(const Schema& schema, std::vector<const Schema*>& out) {
  if (!schema.IsAbstract() && !schema.GetTag().isEmpty()) {
    out.push_back(&schema);
  }
  for (const Schema* derived : schema.GetDerived()) {
    CollectClasses(*derived, out);
  }
}

std::vector<const Schema*> ClassesOf(const Field& field) {
  std::vector<const Schema*> classes;
  CollectClasses(*field.GetObjSchema(), classes);
  return classes;
}

std::string InField(const Field& field, const std::string& child) {
  return field.GetName().isEmpty() ? child : Tag(NameOf(field), child);
}

/// Where an object of a class stands: what comes in front of it and behind it.
struct Place {
  std::string open;
  std::string close;
  bool isRepeated = false; ///< Its field holds any number.
};

using Places = std::vector<std::pair<const Schema*, Place>>;

/// The shortest way from `top` to each class that it can hold.
Places FindPlaces(const Schema& top, const Place& place) {
  Places places{{&top, place}};
  const auto isKnown = [&](const Schema* schema) {
    return std::any_of(places.begin(), places.end(),
                       [&](const auto& entry) { return entry.first == schema; });
  };
  for (std::size_t i = 0; i < places.size(); ++i) {
    const Schema& parent = *places[i].first;
    const Place at = places[i].second;
    for (const Field* field : parent.GetObjectFields()) {
      for (const Schema* child : ClassesOf(*field)) {
        const std::string wrapper = field->GetName().isEmpty() ? "" : NameOf(*field);
        const std::string start = wrapper.empty() ? "" : "<" + wrapper + ">";
        const std::string end = wrapper.empty() ? "" : "</" + wrapper + ">";
        const bool isRoot = parent.GetName() == QLatin1String("kml");
        if (isKnown(child)) {
          continue;
        }
        places.push_back(
            {child,
             {at.open + (isRoot ? "" : "<" + NameOf(parent) + ">") + start,
              end + (isRoot ? "" : "</" + NameOf(parent) + ">") + at.close, field->IsArray()}});
      }
    }
  }
  return places;
}

/// All that can stand in an object of the class, a list of `count` times `entry` in each value and
/// `count` children in each list, down to `depth` levels. `except` is left out.
std::string Fill(const Schema& schema, int count, int depth, const Field* except,
                 const char* entry = "1,1 ") {
  std::string text;
  for (const Field* field : schema.GetSerializedFields()) {
    if (field == except || field->GetType() == Field::kHidden) {
      continue;
    }
    if (field->GetType() == Field::kElement) {
      if (!field->GetName().isEmpty()) {
        text += Tag(NameOf(*field), Repeat(entry, count));
      }
      continue;
    }
    // Of those that a single place can hold, the one that holds most itself.
    const Schema* largest = nullptr;
    std::size_t size = 0;
    for (const Schema* child : ClassesOf(*field)) {
      if (field->IsArray()) {
        text += InField(*field, Repeat(Tag(NameOf(*child), ""), count));
      } else if (depth > 0) {
        const std::size_t held = Fill(*child, 9, depth - 1, nullptr, "").size();
        if (held > size) {
          largest = child;
          size = held;
        }
      }
    }
    if (largest) {
      text +=
          InField(*field, Tag(NameOf(*largest), Fill(*largest, count, depth - 1, nullptr, entry)));
    }
  }
  return text;
}

using Visit = std::function<void(const Pattern&)>;

/// An element that can stand in an object; `make(i)` is the one of number i.
struct Element {
  std::string name;
  const Field* field;
  std::function<std::string(int)> make;
};

std::vector<Element> ElementsOf(const Schema& schema) {
  std::vector<Element> elements;
  for (const auto* list : {&schema.GetSerializedFields(), &schema.GetAttributes()}) {
    for (const Field* field : *list) {
      if (field->GetType() == Field::kObject) {
        for (const Schema* child : ClassesOf(*field)) {
          const std::string text = InField(*field, Tag(NameOf(*child), ""));
          elements.push_back(
              {(field->GetName().isEmpty() ? "" : NameOf(*field) + "/") + NameOf(*child), field,
               [text](int) { return text; }});
        }
      } else if (!field->GetName().isEmpty()) {
        const std::string name = NameOf(*field);
        elements.push_back(
            {name, field, [name](int i) {
               return Tag(name, QString(kValues[static_cast<std::size_t>(i) % std::size(kValues)])
                                    .replace("%1", QString::number(i))
                                    .toStdString());
             }});
      }
    }
  }
  return elements;
}

/// The same elements again and again in one object, alone and behind all else.
void VisitElements(const Schema& schema, const Place& place, const std::string& where,
                   const Visit& visit) {
  const std::string name = NameOf(schema);
  for (const Element& element : ElementsOf(schema)) {
    const std::string title = where + name + ": " + element.name;
    const auto in = [place, name](const std::string& content) {
      return Root(place.open + Tag(name, content) + place.close);
    };
    visit({title, [=](int n) { return in(Each(n, element.make)); }});
    visit({title + " in a list",
           [=](int n) { return in(InField(*element.field, Each(n, element.make))); }});
    visit({title + " behind all else", [=, &schema](int n) {
             return in(Fill(schema, n, 2, element.field) + Each(n, element.make));
           }});
    visit({title + " behind numbers", [=, &schema](int n) {
             return in(Fill(schema, n, 0, element.field, "1 ") + Each(n, element.make));
           }});
    visit({title + " ahead of all else", [=, &schema](int n) {
             return in(Each(n, element.make) + Fill(schema, n, 2, element.field));
           }});
    visit({title + " with unknown attributes and content", [=](int n) {
             const std::string text = element.make(0);
             const std::size_t end = text.find_first_of(">");
             return in(Each(n, [&](int i) {
               return text.substr(0, end) + " q" + Number(i) + "=\"1\"><q/>" + text.substr(end + 1);
             }));
           }});
  }
}

/// Many objects of a class.
void VisitObjects(const Schema& schema, const Place& place, const Visit& visit) {
  const std::string name = NameOf(schema);
  const auto add = [&](const char* title, const std::function<std::string(int)>& attributes,
                       const std::function<std::string(int)>& content) {
    visit({name + ": " + title, [=](int n) {
             return Root(place.open +
                         Each(n, [&](int i) { return Tag(name, content(i), attributes(i)); }) +
                         place.close);
           }});
    if (!place.isRepeated) {
      visit({name + ": " + title + ", each in its own parent", [=](int n) {
               // The outermost element of the way to the place is what is repeated.
               return InDocument(Each(n, [&](int i) {
                 return place.open + Tag(name, content(i), attributes(i)) + place.close;
               }));
             }});
    }
  };
  const auto nothing = [](int) { return std::string(); };
  const std::string full = Fill(schema, 1, 1, nullptr);
  add("objects", nothing, [full](int) { return full; });
  add(
      "ids", [](int i) { return " id=\"s" + Number(i) + "\""; }, nothing);
  add(
      "one id", [](int) { return " id=\"s0\""; }, nothing);
  add(
      "references", [](int i) { return " id=\"s" + Number(i) + "\""; },
      [](int i) { return Tag("styleUrl", "#s" + Number(i + 1)); });
  add(
      "unknown attributes", [](int i) { return " q" + Number(i) + "=\"1\""; },
      [](int i) { return "<q" + Number(i) + "/>"; });
  add(
      "namespaces",
      [](int i) {
        return " xmlns:q" + Number(i) + "=\"urn:q" + Number(i) + "\" q" + Number(i) + ":a=\"1\"";
      },
      [](int i) { return "<q" + Number(i) + ":b/>"; });
  add(
      "one prefix, many namespaces",
      [](int i) { return " xmlns:q=\"urn:q" + Number(i) + "\" q:a=\"1\""; },
      [](int) { return std::string("<q:b/>"); });
  visit({name + ": unknown attributes of one object", [=](int n) {
           return Root(place.open +
                       Tag(name, "", Each(n, [](int i) { return " q" + Number(i) + "=\"1\""; })) +
                       place.close);
         }});
  visit({name + ": unknown content of one object", [=](int n) {
           return Root(place.open +
                       Tag(name, Each(n, [](int i) { return "a<q" + Number(i) + "/>"; })) +
                       place.close);
         }});
}

/// Objects inside objects of their class, `count` at the bottom, and the same element on each
/// level.
void VisitLevels(const Schema& schema, const Place& place, const Visit& visit) {
  std::string start;
  std::string end;
  for (const Field* field : schema.GetObjectFields()) {
    for (const Schema* child : ClassesOf(*field)) {
      if (child == &schema && start.empty()) {
        start = field->GetName().isEmpty() ? "" : "<" + NameOf(*field) + ">";
        end = field->GetName().isEmpty() ? "" : "</" + NameOf(*field) + ">";
        start += "<" + NameOf(schema) + ">";
        end = "</" + NameOf(schema) + ">" + end;
      }
    }
  }
  if (start.empty()) {
    return;
  }
  const int width = start.find("><") == std::string::npos ? 1 : 2;
  for (const Element& element : ElementsOf(schema)) {
    if (element.field->IsArray()) {
      continue;
    }
    const std::string text = element.make(14);
    visit({NameOf(schema) + ": levels with " + element.name, [=, &schema](int n) {
             const int levels = std::min(n / 4, kMaxLevels / width);
             return Root(place.open + Repeat(start + text, levels) +
                         Fill(schema, n, 0, element.field) + Repeat(text + end, levels) +
                         place.close);
           }});
  }
}

/// What many features share, changed behind them and in front of them.
void VisitShared(const Schema& selector, const Visit& visit) {
  const std::string user = Tag("Placemark", Tag("styleUrl", "#s0"));
  const std::string name = NameOf(selector);
  const Places places = FindPlaces(selector, Place());
  for (const auto& entry : places) {
    const Schema* const schema = entry.first;
    const Place& place = entry.second;
    std::string open = place.open;
    const std::string first = "<" + name + ">";
    if (open.compare(0, first.size(), first) == 0) {
      open.replace(0, first.size(), "<" + name + " id=\"s0\">");
    }
    for (const Element& element : ElementsOf(*schema)) {
      const std::string inner = NameOf(*schema);
      const std::string id = schema == &selector ? " id=\"s0\"" : "";
      const auto style = [open, inner, id, element, close = place.close](int n) {
        return open + Tag(inner, Each(n, element.make), id) + close;
      };
      const std::string title = "shared " + name + "/" + inner + ": " + element.name;
      visit({title + " behind its users",
             [=](int n) { return InDocument(Repeat(user, n) + style(n)); }});
      visit({title + " ahead of its users",
             [=](int n) { return InDocument(style(n) + Repeat(user, n)); }});
    }
  }
}

/// What no table tells: `count` stands for the length of a text as well as for a number.
void VisitTexts(const Visit& visit) {
  const auto add = [&](const char* name, const std::function<std::string(int)>& make) {
    visit({name, make});
  };
  const auto addRepeated = [&](const char* name, const std::function<std::string(int)>& make) {
    visit({name, make, kManyTimes});
  };
  const auto text = [](int n) { return std::string(static_cast<std::size_t>(n) * 20, 'x'); };
  add("long declaration, many unknown elements of the root", [=](int n) {
    return Root(Repeat("<q/>", n) + Tag("Placemark", "", " xmlns:x=\"urn:y\" b=\"1\""),
                " xmlns:x=\"urn:" + text(n) + "\"");
  });
  add("long declaration, many unknown elements", [=](int n) {
    return Root(Tag("Document", Repeat("<Placemark><x:q/></Placemark>", n)),
                " xmlns:x=\"urn:" + text(n) + "\"");
  });
  addRepeated("long default namespace around objects with unknown content", [=](int n) {
    return "<kml:kml xmlns:kml=\"" + std::string(kKmlNamespaceString) +
           "2.2\" xmlns=\"urn:" + text(n) + "\"><kml:Document>" +
           Repeat("<kml:Placemark><q/></kml:Placemark>", n) + "</kml:Document></kml:kml>";
  });
  addRepeated("long declaration that the root can't make", [=](int n) {
    return Root(Tag("Document", Tag("Folder", Repeat("<Placemark><x:q/></Placemark>", n),
                                    " xmlns:x=\"urn:" + text(n) + "\"")),
                " xmlns:x=\"urn:x\" x:a=\"1\"");
  });
  const auto withDefault = [](const std::string& name, const std::string& value, int n) {
    return "<!DOCTYPE kml [<!ATTLIST Placemark " + name + " CDATA \"" + value + "\">]>" +
           InDocument(Repeat("<Placemark/>", n));
  };
  addRepeated("default attribute", [=](int n) { return withDefault("x", text(n), n); });
  addRepeated("default declaration",
              [=](int n) { return withDefault("xmlns:x", "urn:" + text(n), n); });
  addRepeated("entity in a value", [=](int n) {
    return "<!DOCTYPE kml [<!ENTITY e \"" + text(n) + "\">]>" +
           InDocument(Repeat("<Placemark><name>&e;</name></Placemark>", n));
  });
  const auto attributes = [](int n, const std::string& prefix) {
    return Each(n, [&](int i) { return " " + prefix + Number(i) + "=\"urn:" + Number(i) + "\""; });
  };
  for (const char* prefix : {"a", "xmlns:a"}) {
    add((std::string("attributes of root and feature, ") + prefix).c_str(), [=](int n) {
      return Root(Tag("Placemark", "", attributes(n, prefix)), attributes(n, prefix));
    });
  }
  add("comment", [=](int n) { return InDocument("<!--" + Repeat(text(n), 100) + "-->"); });
  add("processing instruction",
      [=](int n) { return InDocument("<?q " + Repeat(text(n), 100) + "?>"); });
  add("attribute", [=](int n) { return InDocument("<q a=\"" + Repeat(text(n), 100) + "\"/>"); });
  add("blanks in a tag", [=](int n) {
    return InDocument("<q " + std::string(static_cast<std::size_t>(n) * 2000, ' ') + "/>");
  });
  add("value", [=](int n) { return InDocument(Tag("name", Repeat(text(n), 100))); });
  add("value in pieces",
      [=](int n) { return InDocument(Tag("name", Repeat("a&amp;<![CDATA[b]]>\n", n))); });
  add("images of a description", [=](int n) {
    return InDocument(Tag("description", "<![CDATA[" + Repeat("<img src=\"a.png\"/>", n) + "]]>"));
  });
  add("unknown levels", [=](int n) {
    const int levels = std::min(n / 4, kMaxLevels);
    return InDocument(Repeat("<q>", levels) + Repeat("<r/>", n) + Repeat("</q>", levels));
  });
  add("errors", [=](int n) { return InDocument(Repeat("<Placemark><nome/></Placemark>", n)); });
  add("positions without a line end", [=](int n) {
    return InDocument(
        Tag("Placemark", Tag("LineString", Tag("coordinates", Repeat("1,1,1 ", 20 * n)))));
  });
}

} // namespace

void ForEachPattern(const std::function<void(const Pattern&)>& visit) {
  VisitTexts(visit);
  const Schema* const kml = Schema::FindNamedSchema(QStringLiteral("kml"), Namespace::kKml);
  const Places places = FindPlaces(*kml, Place());
  for (const auto& [schema, place] : places) {
    VisitElements(*schema, place, "", visit);
    VisitObjects(*schema, place, visit);
    VisitLevels(*schema, place, visit);
  }
  std::vector<const Schema*> selectors;
  CollectClasses(StyleSelector::GetClassSchema(), selectors);
  for (const Schema* selector : selectors) {
    VisitShared(*selector, visit);
  }
}

} // namespace bench
