#include "fdd_model.h"

#include "protocol.h"
#include "text.h"

#include <string_view>
#include <unordered_set>

namespace vcrti {

namespace {

constexpr std::uint32_t kModelVersion = 1;

std::string indexTree(FddTree& tree, const wchar_t* rootName) {
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

void encodeTree(const FddTree& tree, wire::FrameWriter& w) {
  w.u32(static_cast<std::uint32_t>(tree.classes.size()));
  for (const FddClass& c : tree.classes) {
    w.str(toUtf8(c.name));
    w.u32(c.parent);
    w.u32(static_cast<std::uint32_t>(c.declared.size()));
    for (std::uint32_t m : c.declared) w.str(toUtf8(tree.members[m].name));
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

bool decodeTree(Reader& r, FddTree& tree) {
  std::uint32_t count;
  // Each class takes at least 12 bytes, each member at least 4.
  if (!r.u32(count) || count > r.left() / 12) return false;
  tree.classes.resize(count);
  tree.members.clear();
  for (std::uint32_t i = 0; i < count; ++i) {
    FddClass& c = tree.classes[i];
    std::uint32_t members;
    if (!r.str(c.name) || !r.u32(c.parent) || !r.u32(members) || members > r.left() / 4)
      return false;
    c.declared.clear();
    for (std::uint32_t k = 0; k < members; ++k) {
      FddMember m;
      m.owner = i;
      if (!r.str(m.name)) return false;
      c.declared.push_back(static_cast<std::uint32_t>(tree.members.size()));
      tree.members.push_back(std::move(m));
    }
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
  std::string err = indexTree(interactions, L"HLAinteractionRoot");
  if (!err.empty()) return err;
  return indexTree(objects, L"HLAobjectRoot");
}

bool encodeFdd(const FddModel& model, ByteBuffer& out) {
  // Reuses the frame writer for its field encoders; the prefix and type byte it writes
  // are dropped so that the model is a plain blob. A name the writer could not hold
  // would otherwise leave a blob that every reader calls corrupt.
  ByteBuffer tmp;
  wire::FrameWriter w(tmp, wire::MsgType::Reply);
  w.u32(kModelVersion);
  encodeTree(model.interactions, w);
  encodeTree(model.objects, w);
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
  if (!decodeTree(r, out.interactions) || !decodeTree(r, out.objects) || r.left() != 0) {
    error = "truncated or corrupt object model";
    return false;
  }
  error = out.index();
  return error.empty();
}

}  // namespace vcrti
