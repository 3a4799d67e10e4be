#include "fdd_parser.h"

#include "text.h"

#include "core_types.h"

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

// The 2000 format gives names as attributes; the later one as child elements. Both are
// accepted so that a FOM written for either reads.
std::wstring nameOf(const pugi::xml_node& n) {
  std::string name;
  if (pugi::xml_attribute a = n.attribute("name")) {
    name = a.value();
  } else if (pugi::xml_node c = child(n, "name")) {
    name = c.text().get();
  }
  auto b = name.find_first_not_of(" \t\r\n");
  auto e = name.find_last_not_of(" \t\r\n");
  return b == std::string::npos ? std::wstring() : fromUtf8(name.substr(b, e - b + 1));
}

void readClass(const pugi::xml_node& node, std::uint32_t parent, FddTree& tree,
               const char* classTag, const char* memberTag, std::uint32_t depth = 0) {
  // Each level is a call: the nesting a file may have is bounded before the stack is.
  if (depth > kMaxClassDepth)
    throw FddError{std::string("<") + classTag + "> nested more than " +
                   std::to_string(kMaxClassDepth) + " deep"};
  const auto index = static_cast<std::uint32_t>(tree.classes.size());
  tree.classes.emplace_back();
  tree.classes[index].name = nameOf(node);
  tree.classes[index].parent = parent;
  if (tree.classes[index].name.empty())
    throw FddError{std::string("<") + classTag + "> without a name"};
  for (pugi::xml_node c : node.children()) {
    if (!is(c, memberTag)) continue;
    FddMember m;
    m.name = nameOf(c);
    m.owner = index;
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
  pugi::xml_document doc;
  pugi::xml_parse_result res =
      doc.load_buffer(xml.data(), xml.size(), pugi::parse_default, pugi::encoding_auto);
  if (!res) {
    std::ostringstream os;
    os << "not well-formed XML (" << res.description() << ") at line " << lineOf(xml, res.offset);
    throw fail(os.str());
  }
  pugi::xml_node root = doc.document_element();
  if (!is(root, "objectModel"))
    throw fail(std::string("root element is <") + root.name() + ">, expected <objectModel>");

  FddModel model;
  model.fileName = name;
  try {
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
  std::ifstream in(native, std::ios::binary);
  std::ostringstream content;
  content << in.rdbuf();
  if (!in || in.bad())
    throw RtiError(Fault::CouldNotOpenFDD, L"cannot read FDD file '" + path + L"'");
  return parseFddText(content.str(), path);
}

}  // namespace vcrti
