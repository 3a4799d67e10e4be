#include "fdd_parser.h"

#include "text.h"

#include "core_types.h"
#include "fom_modules.h"

#include <pugixml.hpp>

#include <sys/stat.h>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

namespace vcrti {

namespace {

struct FddError {
  std::string what;
};

// Element names may carry a namespace prefix; only the local part matters.
const char* localName(const pugi::xml_node& n) {
  const char* name = n.name();
  const char* colon = std::strrchr(name, ':');
  return colon ? colon + 1 : name;
}

bool is(const pugi::xml_node& n, const char* name) {
  return n.type() == pugi::node_element && std::strcmp(localName(n), name) == 0;
}

pugi::xml_node child(const pugi::xml_node& parent, const char* name) {
  for (pugi::xml_node c : parent.children())
    if (is(c, name)) return c;
  return {};
}

std::wstring trimmed(const char* text) {
  const std::string s(text);
  auto b = s.find_first_not_of(" \t\r\n");
  auto e = s.find_last_not_of(" \t\r\n");
  return b == std::string::npos ? std::wstring() : fromUtf8(s.substr(b, e - b + 1));
}

// The 2000 format gives properties as attributes; the later one as child elements. Both
// are accepted so that a FOM written for either reads.
std::wstring prop(const pugi::xml_node& n, const char* key) {
  if (pugi::xml_attribute a = n.attribute(key)) return trimmed(a.value());
  if (pugi::xml_node c = child(n, key)) return trimmed(c.text().get());
  return {};
}

std::wstring nameOf(const pugi::xml_node& n) {
  return prop(n, "name");
}

void readClass(const pugi::xml_node& node, std::uint32_t parent, FddTree& tree,
               const char* classTag, const char* memberTag, std::uint32_t depth = 0) {
  // Each level is a call: the nesting a file may have is bounded before the stack is.
  if (depth > kMaxClassDepth)
    throw FddError{std::string("<") + classTag + "> nested more than " +
                   std::to_string(kMaxClassDepth) + " deep"};
  const auto index = static_cast<std::uint32_t>(tree.classes.size());
  tree.classes.emplace_back();
  FddClass& cls = tree.classes[index];
  cls.name = nameOf(node);
  cls.parent = parent;
  cls.transportation = prop(node, "transportation");
  cls.order = prop(node, "order");
  // A class that states nothing but its name only carries its subclasses: another
  // module defines it.
  const bool defined = !cls.transportation.empty() || !cls.order.empty() ||
                       !prop(node, "sharing").empty() || child(node, memberTag);
  cls.module = defined ? 0 : kNoClass;
  if (cls.name.empty()) throw FddError{std::string("<") + classTag + "> without a name"};
  for (pugi::xml_node c : node.children()) {
    if (!is(c, memberTag)) continue;
    FddMember m;
    m.name = nameOf(c);
    m.owner = index;
    m.dataType = prop(c, "dataType");
    m.transportation = prop(c, "transportation");
    m.order = prop(c, "order");
    if (m.name.empty())
      throw FddError{std::string("<") + memberTag + "> without a name in class '" +
                     toUtf8(tree.classes[index].name) + "'"};
    tree.classes[index].declared.push_back(static_cast<std::uint32_t>(tree.members.size()));
    tree.members.push_back(std::move(m));
  }
  for (pugi::xml_node c : node.children())
    if (is(c, classTag)) readClass(c, index, tree, classTag, memberTag, depth + 1);
}

void readTree(const pugi::xml_node& section, FddTree& tree, const char* classTag,
              const char* memberTag, const wchar_t* rootName) {
  int roots = 0;
  if (section) {
    for (pugi::xml_node c : section.children()) {
      if (!is(c, classTag)) continue;
      if (++roots > 1) throw FddError{std::string("more than one root <") + classTag + ">"};
      readClass(c, kNoClass, tree, classTag, memberTag);
    }
  }
  if (roots == 0) {
    // A model without this section still has the root class.
    tree.classes.emplace_back();
    tree.classes[0].name = rootName;
  }
}

struct DataTypeGroup {
  const char* group;
  const char* entry;
  FddDataType::Kind kind;
  std::vector<const char*> properties;
  const char* item;  // element of the items, or null
};

const DataTypeGroup kDataTypeGroups[] = {
    {"basicDataRepresentations",
     "basicData",
     FddDataType::Kind::Basic,
     {"size", "endian"},
     nullptr},
    {"simpleDataTypes", "simpleData", FddDataType::Kind::Simple, {"representation"}, nullptr},
    {"enumeratedDataTypes",
     "enumeratedData",
     FddDataType::Kind::Enumerated,
     {"representation"},
     "enumerator"},
    {"arrayDataTypes",
     "arrayData",
     FddDataType::Kind::Array,
     {"dataType", "cardinality", "encoding"},
     nullptr},
    {"fixedRecordDataTypes",
     "fixedRecordData",
     FddDataType::Kind::FixedRecord,
     {"encoding"},
     "field"},
    {"variantRecordDataTypes",
     "variantRecordData",
     FddDataType::Kind::VariantRecord,
     {"discriminant", "dataType", "encoding"},
     "alternative"},
};

// The values of an enumerator: one <value> element each in the later format.
std::wstring enumeratorValues(const pugi::xml_node& n) {
  std::wstring values;
  for (pugi::xml_node c : n.children()) {
    if (!is(c, "value")) continue;
    if (!values.empty()) values += L',';
    values += trimmed(c.text().get());
  }
  return values;
}

// Only the later format's datatypes are kept, named by a <name> element: a 2000-format
// model states its datatypes in another shape, which would never compare equal to a
// module's, and the RTI needs them only to check modules against each other.
void readDataTypes(const pugi::xml_node& section, FddModel& model) {
  if (!section) return;
  for (const DataTypeGroup& g : kDataTypeGroups) {
    for (pugi::xml_node group : section.children()) {
      if (!is(group, g.group)) continue;
      for (pugi::xml_node e : group.children()) {
        if (!is(e, g.entry) || !child(e, "name")) continue;
        FddDataType d;
        d.kind = g.kind;
        d.name = nameOf(e);
        if (d.name.empty()) throw FddError{std::string("<") + g.entry + "> without a name"};
        for (const char* key : g.properties) d.properties.push_back(prop(e, key));
        if (g.item) {
          for (pugi::xml_node i : e.children()) {
            if (!is(i, g.item)) continue;
            FddItem item;
            item.name = nameOf(i);
            if (g.kind == FddDataType::Kind::Enumerated) {
              item.value = enumeratorValues(i);
            } else {
              item.dataType = prop(i, "dataType");
              item.value = prop(i, "enumerator");
            }
            d.items.push_back(std::move(item));
          }
        }
        model.dataTypes.push_back(std::move(d));
      }
    }
  }
}

std::size_t lineOf(const std::string& text, std::ptrdiff_t offset) {
  if (offset < 0) return 0;
  const auto end = std::min<std::size_t>(static_cast<std::size_t>(offset), text.size());
  std::size_t line = 1;
  for (std::size_t i = 0; i < end; ++i)
    if (text[i] == '\n') ++line;
  return line;
}

}  // namespace

FddModel parseFddText(const std::string& xml, const std::wstring& name) {
  auto fail = [&](const std::string& why) {
    return RtiError(Fault::ErrorReadingFDD,
                    L"error reading FDD file '" + name + L"': " + fromUtf8(why));
  };
  if (xml.size() > kMaxFddBytes)
    throw fail("larger than " + std::to_string(kMaxFddBytes >> 20) + " MiB");
  pugi::xml_document doc;
  // The document type is parsed only to be refused: it is where entities that expand to
  // gigabytes, or to files of the host, are declared, and no object model needs one.
  pugi::xml_parse_result res = doc.load_buffer(
      xml.data(), xml.size(), pugi::parse_default | pugi::parse_doctype, pugi::encoding_auto);
  if (!res) {
    std::ostringstream os;
    os << "not well-formed XML (" << res.description() << ") at line " << lineOf(xml, res.offset);
    throw fail(os.str());
  }
  for (pugi::xml_node n : doc.children())
    if (n.type() == pugi::node_doctype)
      throw fail("has a document type declaration (<!DOCTYPE>), which an object model may not");
  pugi::xml_node root = doc.document_element();
  if (!is(root, "objectModel"))
    throw fail(std::string("root element is <") + root.name() + ">, expected <objectModel>");

  FddModel model;
  model.fileName = name;
  model.modules.push_back(name);
  try {
    readDataTypes(child(root, "dataTypes"), model);
    readTree(child(root, "interactions"), model.interactions, "interactionClass", "parameter",
             L"HLAinteractionRoot");
    readTree(child(root, "objects"), model.objects, "objectClass", "attribute", L"HLAobjectRoot");
  } catch (const FddError& e) {
    throw fail(e.what);
  }
  std::string err = model.index();
  if (!err.empty()) throw fail(err);
  return model;
}

FddModel parseFddFile(const std::wstring& path) {
  const std::string native = toUtf8(path);
  struct stat st;
  if (path.empty() || ::stat(native.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) {
    const std::string why = path.empty()                         ? "no file name given"
                            : (::stat(native.c_str(), &st) != 0) ? std::strerror(errno)
                                                                 : "not a regular file";
    throw RtiError(Fault::CouldNotOpenFDD,
                   L"cannot open FDD file '" + path + L"': " + fromUtf8(why));
  }
  if (static_cast<std::uint64_t>(st.st_size) > kMaxFddBytes)
    throw RtiError(Fault::ErrorReadingFDD, L"error reading FDD file '" + path + L"': larger than " +
                                               std::to_wstring(kMaxFddBytes >> 20) + L" MiB");
  std::ifstream in(native, std::ios::binary);
  std::ostringstream content;
  content << in.rdbuf();
  if (!in || in.bad())
    throw RtiError(Fault::CouldNotOpenFDD, L"cannot read FDD file '" + path + L"'");
  return parseFddText(content.str(), path);
}

}  // namespace vcrti

namespace vcrti {

FddModel readFomModules(const std::vector<std::wstring>& paths) {
  FddModel model;
  const std::string err = mergeModules(model, parseFomModules(paths));
  if (!err.empty()) throw RtiError(Fault::InconsistentFDD, fromUtf8(err));
  model.fileName = paths.empty() ? standardMim().fileName : paths.front();
  return model;
}

std::vector<FddModel> parseFomModules(const std::vector<std::wstring>& paths) {
  std::vector<FddModel> modules;
  modules.reserve(paths.size());
  for (const std::wstring& path : paths) modules.push_back(parseFddFile(path));
  return modules;
}

}  // namespace vcrti
