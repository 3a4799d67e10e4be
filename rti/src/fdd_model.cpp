#include "fdd_model.h"

#include "protocol.h"
#include "text.h"

#include <array>
#include <map>
#include <string_view>
#include <unordered_set>

namespace vcrti {

namespace {

// 2: transportation, order and datatypes of members, the modules, the datatypes.
constexpr std::uint32_t kModelVersion = 2;

std::string indexTree(FddTree& tree, const wchar_t* rootName, std::size_t modules) {
  if (tree.classes.empty()) return "no root class";
  if (tree.classes[0].name != rootName || tree.classes[0].parent != kNoClass)
    return "root class must be " + toUtf8(rootName);
  tree.byName.clear();
  std::unordered_map<std::wstring, std::uint32_t> shortNames;
  std::vector<std::uint32_t> depth(tree.classes.size(), 0);
  std::size_t inherited = 0, nameCharacters = 0;
  std::unordered_set<std::wstring_view> memberNames;
  for (std::uint32_t i = 0; i < tree.classes.size(); ++i) {
    FddClass& c = tree.classes[i];
    if (c.name.empty()) return "class without a name";
    if (c.name.find(L'.') != std::wstring::npos)
      return "class name '" + toUtf8(c.name) + "' contains '.'";
    if (i != 0 && (c.parent == kNoClass || c.parent >= i))
      return "class '" + toUtf8(c.name) + "' has no valid parent";
    if (c.module != kNoClass && c.module >= modules)
      return "class '" + toUtf8(c.name) + "' comes from an unknown module";
    c.all.clear();
    if (i == 0) {
      c.qualified = c.name;
    } else {
      const FddClass& p = tree.classes[c.parent];
      depth[i] = depth[c.parent] + 1;
      if (depth[i] > kMaxClassDepth)
        return "classes nested more than " + std::to_string(kMaxClassDepth) + " deep";
      // Checked before anything is copied: the limits are there to keep the copies small.
      if (p.qualified.size() + 1 + c.name.size() > kMaxNameCharacters - nameCharacters ||
          p.all.size() + c.declared.size() > kMaxInheritedMembers - inherited)
        return "object model too large once its classes inherit their members";
      c.qualified = p.qualified + L"." + c.name;
      c.all = p.all;
    }
    if (c.declared.size() > kMaxInheritedMembers - inherited - c.all.size())
      return "object model too large once its classes inherit their members";
    nameCharacters += c.qualified.size();
    inherited += c.all.size() + c.declared.size();
    memberNames.clear();
    for (std::uint32_t other : c.all) memberNames.insert(tree.members[other].name);
    for (std::uint32_t m : c.declared) {
      if (m >= tree.members.size() || tree.members[m].owner != i)
        return "member table inconsistent";
      if (tree.members[m].name.empty())
        return "class '" + toUtf8(c.qualified) + "' has a member without a name";
      if (!memberNames.insert(tree.members[m].name).second)
        return "'" + toUtf8(tree.members[m].name) + "' declared twice in class '" +
               toUtf8(c.qualified) + "'";
      c.all.push_back(m);
    }
    if (!tree.byName.emplace(c.qualified, i).second)
      return "class '" + toUtf8(c.qualified) + "' declared twice";
    if (i != 0) tree.byName.emplace(c.qualified.substr(tree.classes[0].name.size() + 1), i);
    auto s = shortNames.emplace(c.name, i);
    if (!s.second) s.first->second = kNoClass;
  }
  for (auto& [name, cls] : shortNames) tree.byName.emplace(name, cls);  // never overrides a path
  for (std::uint32_t m = 0; m < tree.members.size(); ++m)
    if (tree.members[m].owner >= tree.classes.size()) return "member table inconsistent";
  return {};
}

std::string indexDataTypes(FddModel& model) {
  model.dataTypeByName.clear();
  std::size_t entries = 0;
  for (std::uint32_t i = 0; i < model.dataTypes.size(); ++i) {
    const FddDataType& d = model.dataTypes[i];
    if (d.name.empty()) return "datatype without a name";
    if (static_cast<std::uint32_t>(d.kind) >= FddDataType::kKinds)
      return "datatype '" + toUtf8(d.name) + "' of unknown kind";
    if (d.module >= model.modules.size())
      return "datatype '" + toUtf8(d.name) + "' comes from an unknown module";
    entries += 1 + d.items.size();
    if (entries > kMaxDataTypeEntries)
      return "more than " + std::to_string(kMaxDataTypeEntries) + " datatypes and their items";
    if (!model.dataTypeByName.emplace(d.name, i).second)
      return "datatype '" + toUtf8(d.name) + "' declared twice";
  }
  return {};
}

// The properties of classes and members: few combinations, each sent once, and each class
// or member names its combination by number, so that a wide model costs a frame little
// more than its names.
using Properties = std::array<std::wstring, 3>;

class PropertyTable {
 public:
  std::uint32_t add(Properties p) {
    auto it = index_.emplace(std::move(p), static_cast<std::uint32_t>(list_.size())).first;
    if (it->second == list_.size()) list_.push_back(&it->first);
    return it->second;
  }
  void encode(wire::FrameWriter& w) const {
    w.u32(static_cast<std::uint32_t>(list_.size()));
    for (const Properties* p : list_)
      for (const std::wstring& s : *p) w.str(toUtf8(s));
  }

 private:
  std::map<Properties, std::uint32_t> index_;
  std::vector<const Properties*> list_;
};

// A class's module travels as its number in decimal, so that one table shape serves both.
Properties classProperties(const FddClass& c) {
  return {std::to_wstring(c.module), c.transportation, c.order};
}

Properties memberProperties(const FddMember& m) {
  return {m.dataType, m.transportation, m.order};
}

void encodeTree(const FddTree& tree, wire::FrameWriter& w) {
  PropertyTable classes, members;
  std::vector<std::uint32_t> ofClass, ofMember(tree.members.size());
  for (const FddClass& c : tree.classes) ofClass.push_back(classes.add(classProperties(c)));
  for (std::size_t m = 0; m < tree.members.size(); ++m)
    ofMember[m] = members.add(memberProperties(tree.members[m]));
  classes.encode(w);
  members.encode(w);
  w.u32(static_cast<std::uint32_t>(tree.classes.size()));
  for (std::size_t i = 0; i < tree.classes.size(); ++i) {
    const FddClass& c = tree.classes[i];
    w.str(toUtf8(c.name));
    w.u32(c.parent);
    w.u32(ofClass[i]);
    w.u32(static_cast<std::uint32_t>(c.declared.size()));
    for (std::uint32_t m : c.declared) w.str(toUtf8(tree.members[m].name)).u32(ofMember[m]);
  }
}

void encodeStrings(const std::vector<std::wstring>& list, wire::FrameWriter& w) {
  w.u32(static_cast<std::uint32_t>(list.size()));
  for (const std::wstring& s : list) w.str(toUtf8(s));
}

void encodeDataTypes(const std::vector<FddDataType>& types, wire::FrameWriter& w) {
  w.u32(static_cast<std::uint32_t>(types.size()));
  for (const FddDataType& d : types) {
    w.u32(static_cast<std::uint32_t>(d.kind));
    w.str(toUtf8(d.name));
    w.u32(d.module);
    encodeStrings(d.properties, w);
    w.u32(static_cast<std::uint32_t>(d.items.size()));
    for (const FddItem& item : d.items)
      w.str(toUtf8(item.name)).str(toUtf8(item.dataType)).str(toUtf8(item.value));
  }
}

class Reader {
 public:
  Reader(const unsigned char* p, std::size_t n) : p_(p), left_(n) {}
  bool u32(std::uint32_t& v) {
    if (left_ < 4) return false;
    v = wire::loadU32(p_);
    p_ += 4;
    left_ -= 4;
    return true;
  }
  bool str(std::wstring& s) {
    std::uint32_t n;
    if (!u32(n) || n > left_) return false;
    s = fromUtf8(std::string_view(reinterpret_cast<const char*>(p_), n));
    p_ += n;
    left_ -= n;
    return true;
  }
  std::size_t left() const { return left_; }

 private:
  const unsigned char* p_;
  std::size_t left_;
};

bool decodeProperties(Reader& r, std::vector<Properties>& table) {
  std::uint32_t count;
  if (!r.u32(count) || count > r.left() / 12) return false;
  table.resize(count);
  for (Properties& p : table)
    for (std::wstring& s : p)
      if (!r.str(s)) return false;
  return true;
}

bool decodeTree(Reader& r, FddTree& tree) {
  std::vector<Properties> classProps, memberProps;
  if (!decodeProperties(r, classProps) || !decodeProperties(r, memberProps)) return false;
  // The module of each class combination, checked against the model's modules by index().
  std::vector<std::uint32_t> modules;
  for (const Properties& p : classProps) {
    const std::string digits = toUtf8(p[0]);
    if (digits.empty() || digits.size() > 10 ||
        digits.find_first_not_of("0123456789") != std::string::npos)
      return false;
    const unsigned long long v = std::stoull(digits);
    if (v > kNoClass) return false;
    modules.push_back(static_cast<std::uint32_t>(v));
  }
  std::uint32_t count;
  // Each class takes at least 16 bytes, each member at least 8: counts beyond what is
  // left are refused before anything is allocated for them.
  if (!r.u32(count) || count > r.left() / 16) return false;
  tree.classes.resize(count);
  tree.members.clear();
  for (std::uint32_t i = 0; i < count; ++i) {
    FddClass& c = tree.classes[i];
    std::uint32_t props, members;
    if (!r.str(c.name) || !r.u32(c.parent) || !r.u32(props) || props >= classProps.size() ||
        !r.u32(members) || members > r.left() / 8)
      return false;
    c.module = modules[props];
    c.transportation = classProps[props][1];
    c.order = classProps[props][2];
    c.declared.clear();
    for (std::uint32_t k = 0; k < members; ++k) {
      FddMember m;
      m.owner = i;
      std::uint32_t mp;
      if (!r.str(m.name) || !r.u32(mp) || mp >= memberProps.size()) return false;
      m.dataType = memberProps[mp][0];
      m.transportation = memberProps[mp][1];
      m.order = memberProps[mp][2];
      c.declared.push_back(static_cast<std::uint32_t>(tree.members.size()));
      tree.members.push_back(std::move(m));
    }
  }
  return true;
}

bool decodeStrings(Reader& r, std::vector<std::wstring>& list) {
  std::uint32_t count;
  if (!r.u32(count) || count > r.left() / 4) return false;
  list.resize(count);
  for (std::wstring& s : list)
    if (!r.str(s)) return false;
  return true;
}

bool decodeDataTypes(Reader& r, std::vector<FddDataType>& types) {
  std::uint32_t count;
  // At least 20 bytes each, an item at least 12.
  if (!r.u32(count) || count > r.left() / 20) return false;
  types.resize(count);
  for (FddDataType& d : types) {
    std::uint32_t kind, items;
    if (!r.u32(kind) || kind >= FddDataType::kKinds || !r.str(d.name) || !r.u32(d.module) ||
        !decodeStrings(r, d.properties) || !r.u32(items) || items > r.left() / 12)
      return false;
    d.kind = static_cast<FddDataType::Kind>(kind);
    d.items.resize(items);
    for (FddItem& item : d.items)
      if (!r.str(item.name) || !r.str(item.dataType) || !r.str(item.value)) return false;
  }
  return true;
}

}  // namespace

std::uint32_t FddTree::findClass(const std::wstring& name) const {
  auto it = byName.find(name);
  return it == byName.end() ? kNoClass : it->second;
}

std::uint32_t FddTree::findMember(std::uint32_t cls, const std::wstring& name) const {
  for (std::uint32_t m : classes[cls].all)
    if (members[m].name == name) return m;
  return kNoClass;
}

std::string FddModel::index() {
  std::string err = indexTree(interactions, L"HLAinteractionRoot", modules.size());
  if (err.empty()) err = indexTree(objects, L"HLAobjectRoot", modules.size());
  if (err.empty()) err = indexDataTypes(*this);
  return err;
}

const FddDataType* FddModel::findDataType(const std::wstring& name) const {
  auto it = dataTypeByName.find(name);
  return it == dataTypeByName.end() ? nullptr : &dataTypes[it->second];
}

std::wstring FddModel::moduleName(std::uint32_t module) const {
  return module < modules.size() ? modules[module] : fileName;
}

bool encodeFdd(const FddModel& model, ByteBuffer& out) {
  // Reuses the frame writer for its field encoders; the prefix and type byte it writes
  // are dropped so that the model is a plain blob. A name the writer could not hold
  // would otherwise leave a blob that every reader calls corrupt.
  ByteBuffer tmp;
  wire::FrameWriter w(tmp, wire::MsgType::Reply);
  w.u32(kModelVersion);
  encodeStrings(model.modules, w);
  encodeTree(model.interactions, w);
  encodeTree(model.objects, w);
  encodeDataTypes(model.dataTypes, w);
  if (!w.finish()) return false;
  const std::size_t skip = wire::kLengthPrefix + 1;
  out.append(tmp.data() + skip, tmp.size() - skip);
  return true;
}

bool decodeFdd(const unsigned char* data, std::size_t size, FddModel& out, std::string& error) {
  Reader r(data, size);
  std::uint32_t version;
  if (!r.u32(version) || version != kModelVersion) {
    error = "unknown object model version";
    return false;
  }
  if (!decodeStrings(r, out.modules) || !decodeTree(r, out.interactions) ||
      !decodeTree(r, out.objects) || !decodeDataTypes(r, out.dataTypes) || r.left() != 0) {
    error = "truncated or corrupt object model";
    return false;
  }
  error = out.index();
  return error.empty();
}

}  // namespace vcrti
