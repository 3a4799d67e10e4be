#include "fom_modules.h"

#include "protocol.h"
#include "text.h"

#include <cstdlib>
#include <initializer_list>
#include <utility>

namespace vcrti {

namespace {

std::string quoted(const std::wstring& s) {
  return "'" + toUtf8(s) + "'";
}

// What tells two definitions of one class apart, or an empty string when they agree.
std::string difference(const FddTree& ours, const FddClass& a, const FddTree& theirs,
                       const FddClass& b, const char* memberKind) {
  if (a.transportation != b.transportation)
    return "transportation " + quoted(b.transportation) + ", not " + quoted(a.transportation);
  if (a.order != b.order) return "order " + quoted(b.order) + ", not " + quoted(a.order);
  const std::size_t n = std::min(a.declared.size(), b.declared.size());
  for (std::size_t i = 0; i < n; ++i) {
    const FddMember& x = ours.members[a.declared[i]];
    const FddMember& y = theirs.members[b.declared[i]];
    const std::string which = std::string(memberKind) + " " + std::to_string(i + 1);
    if (x.name != y.name) return which + " is " + quoted(y.name) + ", not " + quoted(x.name);
    const std::string named = std::string(memberKind) + " " + quoted(x.name);
    if (x.dataType != y.dataType)
      return named + " has datatype " + quoted(y.dataType) + ", not " + quoted(x.dataType);
    if (x.transportation != y.transportation)
      return named + " has transportation " + quoted(y.transportation) + ", not " +
             quoted(x.transportation);
    if (x.order != y.order)
      return named + " has order " + quoted(y.order) + ", not " + quoted(x.order);
  }
  if (a.declared.size() != b.declared.size())
    return std::to_string(b.declared.size()) + " " + memberKind + "s, not " +
           std::to_string(a.declared.size());
  return {};
}

void appendMembers(FddTree& tree, std::uint32_t cls, const FddTree& from, const FddClass& c) {
  for (std::uint32_t m : c.declared) {
    FddMember member = from.members[m];
    member.owner = cls;
    tree.classes[cls].declared.push_back(static_cast<std::uint32_t>(tree.members.size()));
    tree.members.push_back(std::move(member));
  }
}

class Merger {
 public:
  Merger(FddModel& into, const FddModel& from) : into_(into), from_(from) {
    // The module's modules as the model numbers them, new ones appended.
    for (const std::wstring& name : from.modules) {
      std::uint32_t k = 0;
      while (k < into.modules.size() && into.modules[k] != name) ++k;
      if (k == into.modules.size()) into.modules.push_back(name);
      moduleMap_.push_back(k);
    }
  }

  std::string tree(FddTree FddModel::*which, const char* classKind, const char* memberKind) {
    FddTree& tree = into_.*which;
    const FddTree& src = from_.*which;
    if (tree.classes.empty() || src.classes.empty()) return "a model without its root classes";
    std::vector<std::uint32_t> map(src.classes.size(), kNoClass);
    for (std::uint32_t i = 0; i < src.classes.size(); ++i) {
      const FddClass& c = src.classes[i];
      std::uint32_t at = 0;
      std::wstring qualified = tree.classes[0].name;
      if (i != 0) {
        qualified = tree.classes[map[c.parent]].qualified + L"." + c.name;
        at = tree.findClass(qualified);
      }
      if (at == kNoClass) {
        if (c.module == kNoClass)
          return std::string(classKind) + " " + quoted(qualified) + " is not defined: module " +
                 quoted(from_.moduleName(0)) + " names it to extend it, and no module before it " +
                 "defines it";
        at = static_cast<std::uint32_t>(tree.classes.size());
        FddClass added;
        added.name = c.name;
        added.parent = map[c.parent];
        added.qualified = qualified;
        tree.classes.push_back(std::move(added));
        tree.byName[qualified] = at;
        adopt(tree, at, src, c);
      } else if (c.module != kNoClass) {
        const FddClass& ours = tree.classes[at];
        if (ours.module == kNoClass) {
          adopt(tree, at, src, c);
        } else if (std::string diff = difference(tree, ours, src, c, memberKind); !diff.empty()) {
          return std::string(classKind) + " " + quoted(qualified) + " of module " +
                 quoted(from_.moduleName(c.module)) + " differs from its definition in module " +
                 quoted(into_.moduleName(ours.module)) + ": " + diff;
        }
      }
      map[i] = at;
    }
    return {};
  }

  std::string dataTypes() {
    for (const FddDataType& d : from_.dataTypes) {
      if (const FddDataType* ours = into_.findDataType(d.name)) {
        if (!ours->sameAs(d))
          return "datatype " + quoted(d.name) + " of module " + quoted(from_.moduleName(d.module)) +
                 " differs from its definition in module " + quoted(into_.moduleName(ours->module));
        continue;
      }
      into_.dataTypes.push_back(d);
      into_.dataTypes.back().module = moduleMap_[d.module];
      into_.dataTypeByName[d.name] = static_cast<std::uint32_t>(into_.dataTypes.size() - 1);
    }
    return {};
  }

  // Every datatype the module uses is defined, by it or by the model before it.
  std::string dependencies() const {
    for (const FddTree* tree : {&from_.interactions, &from_.objects})
      for (const FddMember& m : tree->members)
        if (std::string err = resolves(m.dataType, m.name); !err.empty()) return err;
    for (const FddDataType& d : from_.dataTypes) {
      // The property that names another datatype, by kind: none for basic data and
      // fixed records, the discriminant's type for variant records.
      const int named[FddDataType::kKinds] = {-1, 0, 0, 0, -1, 1};
      const int p = named[static_cast<std::size_t>(d.kind)];
      if (p >= 0 && static_cast<std::size_t>(p) < d.properties.size())
        if (std::string err = resolves(d.properties[static_cast<std::size_t>(p)], d.name);
            !err.empty())
          return err;
      for (const FddItem& item : d.items)
        if (std::string err = resolves(item.dataType, d.name); !err.empty()) return err;
    }
    return {};
  }

 private:
  void adopt(FddTree& tree, std::uint32_t at, const FddTree& src, const FddClass& c) {
    FddClass& ours = tree.classes[at];
    ours.module = c.module == kNoClass ? kNoClass : moduleMap_[c.module];
    ours.transportation = c.transportation;
    ours.order = c.order;
    appendMembers(tree, at, src, c);
  }

  std::string resolves(const std::wstring& type, const std::wstring& user) const {
    // "NA" stands for no datatype (a parameterless representation, a field-less
    // alternative).
    if (type.empty() || type == L"NA" || into_.findDataType(type)) return {};
    return "datatype " + quoted(type) + " is not defined: module " + quoted(from_.moduleName(0)) +
           " uses it for " + quoted(user) + ", and no module before it defines it";
  }

  FddModel& into_;
  const FddModel& from_;
  std::vector<std::uint32_t> moduleMap_;
};

// Builds the standard MIM class by class. Names and properties are those of the standard's
// management object model; a module that restates one of them must restate it the same.
class MimBuilder {
 public:
  MimBuilder() {
    m_.fileName = kMimName;
    m_.modules.push_back(kMimName);
  }

  std::uint32_t cls(FddTree& tree, std::uint32_t parent, const wchar_t* name,
                    const wchar_t* transportation = L"", const wchar_t* order = L"") {
    FddClass c;
    c.name = name;
    c.parent = parent;
    c.module = 0;
    c.transportation = transportation;
    c.order = order;
    tree.classes.push_back(std::move(c));
    return static_cast<std::uint32_t>(tree.classes.size() - 1);
  }
  void member(FddTree& tree, std::uint32_t cls, const wchar_t* name, const wchar_t* dataType,
              const wchar_t* transportation = L"", const wchar_t* order = L"") {
    FddMember m;
    m.name = name;
    m.owner = cls;
    m.dataType = dataType;
    m.transportation = transportation;
    m.order = order;
    tree.classes[cls].declared.push_back(static_cast<std::uint32_t>(tree.members.size()));
    tree.members.push_back(std::move(m));
  }
  // Attributes of the management classes: reliable, in receive order.
  void attributes(std::uint32_t cls,
                  std::initializer_list<std::pair<const wchar_t*, const wchar_t*>> list) {
    for (const auto& [name, type] : list)
      member(m_.objects, cls, name, type, L"HLAreliable", L"Receive");
  }
  void type(FddDataType::Kind kind, const wchar_t* name, std::vector<std::wstring> properties,
            std::vector<FddItem> items = {}) {
    FddDataType d;
    d.kind = kind;
    d.name = name;
    d.properties = std::move(properties);
    d.items = std::move(items);
    m_.dataTypes.push_back(std::move(d));
  }

  FddModel build() {
    using K = FddDataType::Kind;
    FddTree& o = m_.objects;
    const std::uint32_t objectRoot = cls(o, kNoClass, L"HLAobjectRoot");
    member(o, objectRoot, L"HLAprivilegeToDeleteObject", L"HLAtoken", L"HLAreliable", L"TimeStamp");
    const std::uint32_t objectManager = cls(o, objectRoot, L"HLAmanager");
    attributes(cls(o, objectManager, L"HLAfederate"),
               {{L"HLAfederateHandle", L"HLAhandle"},
                {L"HLAfederateName", L"HLAunicodeString"},
                {L"HLAfederateType", L"HLAunicodeString"},
                {L"HLAfederateHost", L"HLAunicodeString"},
                {L"HLARTIversion", L"HLAunicodeString"},
                {L"HLAFOMmoduleDesignatorList", L"HLAmoduleDesignatorList"},
                {L"HLAtimeConstrained", L"HLAboolean"},
                {L"HLAtimeRegulating", L"HLAboolean"},
                {L"HLAasynchronousDelivery", L"HLAboolean"},
                {L"HLAfederateState", L"HLAfederateState"},
                {L"HLAtimeManagerState", L"HLAtimeState"},
                {L"HLAlogicalTime", L"HLAlogicalTime"},
                {L"HLAlookahead", L"HLAtimeInterval"},
                {L"HLAGALT", L"HLAlogicalTime"},
                {L"HLALITS", L"HLAlogicalTime"},
                {L"HLAROlength", L"HLAcount"},
                {L"HLATSOlength", L"HLAcount"},
                {L"HLAreflectionsReceived", L"HLAcount"},
                {L"HLAupdatesSent", L"HLAcount"},
                {L"HLAinteractionsReceived", L"HLAcount"},
                {L"HLAinteractionsSent", L"HLAcount"},
                {L"HLAobjectInstancesThatCanBeDeleted", L"HLAcount"},
                {L"HLAobjectInstancesUpdated", L"HLAcount"},
                {L"HLAobjectInstancesReflected", L"HLAcount"},
                {L"HLAobjectInstancesDeleted", L"HLAcount"},
                {L"HLAobjectInstancesRemoved", L"HLAcount"},
                {L"HLAobjectInstancesRegistered", L"HLAcount"},
                {L"HLAobjectInstancesDiscovered", L"HLAcount"},
                {L"HLAtimeGrantedTime", L"HLAmsec"},
                {L"HLAtimeAdvancingTime", L"HLAmsec"},
                {L"HLAconveyRegionDesignatorSets", L"HLAswitch"},
                {L"HLAconveyProducingFederate", L"HLAswitch"}});
    attributes(cls(o, objectManager, L"HLAfederation"),
               {{L"HLAfederationName", L"HLAunicodeString"},
                {L"HLAfederatesInFederation", L"HLAhandleList"},
                {L"HLARTIversion", L"HLAunicodeString"},
                {L"HLAMIMdesignator", L"HLAunicodeString"},
                {L"HLAFOMmoduleDesignatorList", L"HLAmoduleDesignatorList"},
                {L"HLAcurrentFDD", L"HLAunicodeString"},
                {L"HLAtimeImplementationName", L"HLAunicodeString"},
                {L"HLAlastSaveName", L"HLAunicodeString"},
                {L"HLAlastSaveTime", L"HLAlogicalTime"},
                {L"HLAnextSaveName", L"HLAunicodeString"},
                {L"HLAnextSaveTime", L"HLAlogicalTime"},
                {L"HLAautoProvide", L"HLAswitch"}});

    FddTree& i = m_.interactions;
    const wchar_t* const rel = L"HLAreliable";
    const std::uint32_t interactionRoot =
        cls(i, kNoClass, L"HLAinteractionRoot", rel, L"TimeStamp");
    const std::uint32_t manager = cls(i, interactionRoot, L"HLAmanager", rel, L"Receive");
    const std::uint32_t federate = cls(i, manager, L"HLAfederate", rel, L"Receive");
    member(i, federate, L"HLAfederate", L"HLAhandle");
    for (const wchar_t* group : {L"HLAadjust", L"HLArequest", L"HLAreport", L"HLAservice"})
      cls(i, federate, group, rel, L"Receive");
    const std::uint32_t federation = cls(i, manager, L"HLAfederation", rel, L"Receive");
    for (const wchar_t* group : {L"HLAadjust", L"HLArequest", L"HLAreport"})
      cls(i, federation, group, rel, L"Receive");

    for (const wchar_t* bits : {L"16", L"32", L"64"}) {
      type(K::Basic, (std::wstring(L"HLAinteger") + bits + L"BE").c_str(), {bits, L"Big"});
      type(K::Basic, (std::wstring(L"HLAinteger") + bits + L"LE").c_str(), {bits, L"Little"});
    }
    for (const wchar_t* bits : {L"32", L"64"}) {
      type(K::Basic, (std::wstring(L"HLAfloat") + bits + L"BE").c_str(), {bits, L"Big"});
      type(K::Basic, (std::wstring(L"HLAfloat") + bits + L"LE").c_str(), {bits, L"Little"});
    }
    type(K::Basic, L"HLAoctetPairBE", {L"16", L"Big"});
    type(K::Basic, L"HLAoctetPairLE", {L"16", L"Little"});
    type(K::Basic, L"HLAoctet", {L"8", L"Big"});
    type(K::Simple, L"HLAASCIIchar", {L"HLAoctet"});
    type(K::Simple, L"HLAunicodeChar", {L"HLAoctetPairBE"});
    type(K::Simple, L"HLAbyte", {L"HLAoctet"});
    type(K::Simple, L"HLAcount", {L"HLAinteger32BE"});
    type(K::Simple, L"HLAseconds", {L"HLAinteger32BE"});
    type(K::Simple, L"HLAmsec", {L"HLAinteger32BE"});
    type(K::Enumerated, L"HLAboolean", {L"HLAinteger32BE"},
         {{L"HLAfalse", L"", L"0"}, {L"HLAtrue", L"", L"1"}});
    type(K::Enumerated, L"HLAfederateState", {L"HLAinteger32BE"},
         {{L"HLAactive", L"", L"1"}, {L"HLAsaving", L"", L"2"}, {L"HLArestoring", L"", L"3"}});
    type(K::Enumerated, L"HLAtimeState", {L"HLAinteger32BE"},
         {{L"HLAtimeGranted", L"", L"0"}, {L"HLAtimeAdvancing", L"", L"1"}});
    type(K::Enumerated, L"HLAswitch", {L"HLAinteger32BE"},
         {{L"HLAenabled", L"", L"1"}, {L"HLAdisabled", L"", L"0"}});
    const wchar_t* const variable = L"HLAvariableArray";
    type(K::Array, L"HLAASCIIstring", {L"HLAASCIIchar", L"Dynamic", variable});
    type(K::Array, L"HLAunicodeString", {L"HLAunicodeChar", L"Dynamic", variable});
    type(K::Array, L"HLAopaqueData", {L"HLAbyte", L"Dynamic", variable});
    type(K::Array, L"HLAtoken", {L"HLAbyte", L"0", L"HLAfixedArray"});
    type(K::Array, L"HLAhandle", {L"HLAbyte", L"Dynamic", variable});
    type(K::Array, L"HLAhandleList", {L"HLAhandle", L"Dynamic", variable});
    type(K::Array, L"HLAlogicalTime", {L"HLAbyte", L"Dynamic", variable});
    type(K::Array, L"HLAtimeInterval", {L"HLAbyte", L"Dynamic", variable});
    type(K::Array, L"HLAmoduleDesignatorList", {L"HLAunicodeString", L"Dynamic", variable});
    return std::move(m_);
  }

  static constexpr const wchar_t* kMimName = L"HLAstandardMIM";

 private:
  FddModel m_;
};

}  // namespace

const FddModel& standardMim() {
  static const FddModel mim = [] {
    FddModel m = MimBuilder().build();
    const std::string err = m.index();
    if (!err.empty()) std::abort();  // a fault of this file, caught by every test
    return m;
  }();
  return mim;
}

std::string mergeModule(FddModel& model, const FddModel& module) {
  FddModel grown = model;
  Merger merger(grown, module);
  std::string err = merger.tree(&FddModel::interactions, "interaction class", "parameter");
  if (err.empty()) err = merger.tree(&FddModel::objects, "object class", "attribute");
  if (err.empty()) err = merger.dataTypes();
  if (err.empty()) err = merger.dependencies();
  if (err.empty()) {
    err = grown.index();
    if (!err.empty()) err = "with module " + quoted(module.moduleName(0)) + ": " + err;
  }
  if (err.empty()) model = std::move(grown);
  return err;
}

std::string mergeModules(FddModel& model, const std::vector<FddModel>& modules) {
  FddModel grown = model.interactions.classes.empty() ? standardMim() : model;
  const std::wstring& mim = standardMim().modules[0];
  bool withMim = false;
  for (const std::wstring& m : grown.modules) withMim = withMim || m == mim;
  if (!withMim)
    if (std::string err = mergeModule(grown, standardMim()); !err.empty()) return err;
  for (const FddModel& module : modules)
    if (std::string err = mergeModule(grown, module); !err.empty()) return err;
  model = std::move(grown);
  return {};
}

bool encodeModules(const std::vector<FddModel>& modules, ByteBuffer& out) {
  unsigned char count[4];
  wire::storeU32(count, static_cast<std::uint32_t>(modules.size()));
  out.append(count, 4);
  ByteBuffer blob;
  for (const FddModel& m : modules) {
    blob.clear();
    if (!encodeFdd(m, blob)) return false;
    unsigned char size[4];
    wire::storeU32(size, static_cast<std::uint32_t>(blob.size()));
    out.append(size, 4);
    out.append(blob.data(), blob.size());
  }
  return true;
}

bool decodeModules(const unsigned char* data, std::size_t size, std::vector<FddModel>& out,
                   std::string& error) {
  out.clear();
  if (size < 4) {
    error = "truncated list of modules";
    return false;
  }
  std::uint32_t count = wire::loadU32(data);
  std::size_t pos = 4;
  // Each takes at least its length and a model's version.
  if (count > (size - pos) / 8) {
    error = "truncated list of modules";
    return false;
  }
  for (std::uint32_t i = 0; i < count; ++i) {
    if (size - pos < 4) {
      error = "truncated list of modules";
      return false;
    }
    const std::uint32_t n = wire::loadU32(data + pos);
    pos += 4;
    if (n > size - pos) {
      error = "truncated list of modules";
      return false;
    }
    out.emplace_back();
    if (!decodeFdd(data + pos, n, out.back(), error)) return false;
    // A module is merged as the module it names first: one that names none is no module.
    if (out.back().modules.empty()) {
      error = "a module without a name";
      return false;
    }
    pos += n;
  }
  if (pos != size) {
    error = "corrupt list of modules";
    return false;
  }
  return true;
}

}  // namespace vcrti
