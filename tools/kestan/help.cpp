#include "tools/kestan/arguments.h"

namespace tool {

const char kHelpText[] =
    R"(Usage: kestan cat [-o OUT] [--outside] [--relative] [--no-hoist] [--no-hint] FILE
       kestan tree FILE
       kestan check [--json] FILE...
       kestan style [--json] FILE [ID...]
       kestan links [--json] [--base URL] [--view NORTH,SOUTH,EAST,WEST] FILE
       kestan data [--csv | --json] FILE
       kestan apply [-o OUT] [--at FRACTION] [--undo] [--base URL] [--update-base URL]
                    [--diff [--json]] FILE UPDATE...
       kestan tour [--json] [--base URL] [--at SECONDS [-o OUT]] FILE [ID]
       kestan -h | --help | -V | --version

Reads KML and KMZ documents, and writes them. The FILE "-" is standard input; a "file:" URL names a
file too.

Commands:
  cat    write the document as KML to standard output
  tree   show the document's objects, one a line: class, id, name, counts; first what a server says
         with the document, its updates with their targets
  check  report what the reader objects to, changes or can't make sense of, as
         file:line:column: severity: message [code]
  style  show how each feature, or each of those with these ids, is drawn: every property as it is
         and when highlighted, and where its value comes from
  links  show each URL that a client would fetch for the document, as written and absolute, its
         kind, and when it is fetched again; first what a server says about that: cookie, limits,
         expiry
  data   show the table of extended data: a row for each placemark, and for each other feature that
         has data, with id, name, geometry, longitude and latitude, and a column for each name
  apply  change the document by the updates that the other documents hold, one after the other, and
         write it; what can't be applied is reported as file:line: error: message [code]
  tour   show what happens in each tour of the document, or in the one with this id: when each step
         has its turn, for how long, from when on where it's delayed, what it does, and the view
         that is flown to

Options of cat, apply and tour --at:
  -o OUT      write to the file OUT; a name without a suffix gets ".kml". A name that ends in
              ".kmz" makes an archive, with the files that the document refers to at or below its
              own folder, or in its own archive. "-" is standard output

Options of cat:
  --outside   pack files from other folders and archives too
  --relative  keep references to files and documents as they are written, for an output that comes
              to lie where FILE is; without it they come with their folders. An archive's change
              all the same
  --no-hoist  leave shared styles and schemas where they are, outside of the written object
  --no-hint   leave out the "hint" attribute of the root

Options of apply:
  --at FRACTION  stop all values at this part of their way, from 0 to 1
  --undo         take the values back again; objects that came and went stay so
  --base URL, --update-base URL
                 read FILE, and the updates, as if they came from there. An update finds objects
                 where its target is the URL of FILE. Unless both are on one web server, or it names
                 no target, it may only show, hide and open features, and replace them
  --diff         show each change instead of the document: the object, by its id or the way to it,
                 and field: "old" -> "new", or what was created or deleted

Options of tour:
  --at SECONDS   write the document as the tour's updates have made it by then, and tell the view
                 that is being flown to: on standard error, or with -o on standard output
  --base URL     read FILE as if it came from URL. Updates are applied as those of apply

Options of links:
  --base URL  read FILE as if it came from URL
  --view NORTH,SOUTH,EAST,WEST
              the view that servers are told of, in degrees; all zero without it

Options of data:
  --csv       for spreadsheets; without it, columns are parted by tabs

Options of check, style, links, data, tour and apply --diff:
  --json      for programs; see below

Options of all commands:
  --namespace kml=BASE, --namespace gx=BASE
              read elements of namespaces that start with BASE as KML or as its extensions.
              The variable KESTAN_NAMESPACES holds more of them, separated by blanks.

JSON of check: {"files": [FILE...]}
  FILE    {"file", "reports": [REPORT...], "readable"}
  REPORT  {"severity", "code", "line", "column", "path", "message"}, one a line; "severity" is
          "error", "warning" or "remark", "line" and "column" are from 1 and 0 where there's no
          place, "path" leads to the element. Codes stay the same from version to version.

JSON of style: {"features": [FEATURE...]}, one FEATURE a line:
  {"class", "id", "name", "styleUrl", "normal": LOOK, "highlight": LOOK}
  LOOK    {"sources": [SOURCE...], "properties": {NAME: PROPERTY...}}; the uppermost source first
  PROPERTY  SOURCE and "value", always a text; null for a child that isn't there
  SOURCE  {"from"} with "inline", "shared", "styleMap" or "default"; "map" and "style" are the URLs
          of a style map and of a style that aren't inline. In "sources" also "failed" and
          "fetching", for a style that isn't there or lies in another document, and "loop", for
          maps that lead back to themselves; such sources give no property.

JSON of apply --diff: {"changes": [CHANGE...]}, one CHANGE a line:
  {"change", "object", "class", "field", "old", "new"}; "change" is "set", "created" or "deleted";
  the last three are texts for the first, and null for the others

JSON of links: {"control": CONTROL, "links": [LINK...]}, one LINK a line:
  {"kind", "href", "url", "builtIn", "refresh": REFRESH}; "url" is absolute, and empty where that
  can't be had; "builtIn" is true for what clients have without fetching it
  REFRESH  {"refreshMode", "refreshInterval", "viewRefreshMode", "viewRefreshTime"}, modes as in
           KML, times in seconds; null for what is fetched once
  CONTROL  {"cookie", "minRefreshPeriod", "maxSessionLength", "expires"}, texts as in KML; null for
           a document without one

JSON of data: {"columns": [COLUMN...], "rows": [ROW...]}, one of them a line:
  COLUMN  {"name", "displayName", "type"}; "type" is that of a schema, and null for plain texts
  ROW     {"id", "name", "geometry", "longitude", "latitude", "data": {NAME: VALUE...}}; the position
          is that of a point or the middle of a shape, and null without one. A VALUE is a number, a
          truth value or a text, by the type; what isn't of it stays a text

JSON of tour: {"tours": [TOUR...]}
  TOUR  {"id", "name", "duration", "steps": [STEP...]}, one STEP a line; times are in seconds
  STEP  {"class", "begin", "duration", "delay"}, and as texts what its elements say; "view" of a
        flight is a VIEW or null, "target" of an update the URL of the document that it changes
  VIEW  {"class"}, and as texts what its elements say
JSON of tour --at: {"at", "view": VIEW, "fraction"}, the part of the way to the view from 0 to 1

Exit status: 0 all is well, or there are only remarks; 1 there are findings, a document can't be
read, or a file that it refers to isn't packed; 2 wrong usage; 3 the output can't be written.
)";

} // namespace tool
