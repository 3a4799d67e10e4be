#include "module_merge.h"

#include "core_types.h"
#include "fdd_parser.h"
#include "text.h"

#include <map>
#include <tuple>
#include <utility>

namespace vcrti {

namespace {

const wchar_t kMimName[] = L"the standard MIM";

std::vector<std::wstring> memberNames(const FddTree& tree, std::uint32_t cls) {
  std::vector<std::wstring> names;
  for (std::uint32_t m : tree.classes[cls].declared) names.push_back(tree.members[m].name);
  return names;
}

// Merges one module's tree into `into`; `origin` names, per class of `into`, the module
// that gave it its members (empty while none has).
void mergeTree(FddTree& into, std::vector<std::wstring>& origin, const FddTree& module,
               const std::wstring& moduleName, const wchar_t* kind) {
  if (module.classes.empty()) return;
  if (module.classes[0].name != into.classes[0].name)
    throw RtiError(Fault::ErrorReadingFDD,
                   L"error reading FOM module '" + moduleName + L"': its root " + kind +
                       L" class is " + module.classes[0].name + L", not " + into.classes[0].name);
  std::map<std::pair<std::uint32_t, std::wstring>, std::uint32_t> byParent;
  for (std::uint32_t i = 1; i < into.classes.size(); ++i)
    byParent[{into.classes[i].parent, into.classes[i].name}] = i;
  std::vector<std::uint32_t> mapped(module.classes.size(), kNoClass);
  for (std::uint32_t i = 0; i < module.classes.size(); ++i) {
    const FddClass& c = module.classes[i];
    std::uint32_t target = 0;
    if (i != 0) {
      const std::uint32_t parent = mapped[c.parent];
      auto found = byParent.find({parent, c.name});
      if (found == byParent.end()) {
        target = static_cast<std::uint32_t>(into.classes.size());
        into.classes.emplace_back();
        into.classes.back().name = c.name;
        into.classes.back().parent = parent;
        origin.emplace_back();
        byParent[{parent, c.name}] = target;
      } else {
        target = found->second;
      }
    }
    mapped[i] = target;
    if (c.declared.empty()) continue;  // scaffolding: the class is defined elsewhere
    FddClass& t = into.classes[target];
    if (!t.declared.empty()) {
      if (memberNames(module, i) == memberNames(into, target)) continue;
      std::wstring path = t.name;
      for (std::uint32_t p = t.parent; p != kNoClass; p = into.classes[p].parent)
        path = into.classes[p].name + L"." + path;
      throw ModuleConflict(std::wstring(kind) + L" class " + path + L" is defined differently by " +
                           origin[target] + L" and by '" + moduleName + L"'");
    }
    for (std::uint32_t m : c.declared) {
      t.declared.push_back(static_cast<std::uint32_t>(into.members.size()));
      into.members.push_back(FddMember{module.members[m].name, target});
    }
    origin[target] = L"'" + moduleName + L"'";
  }
}

std::vector<std::wstring> origins(const FddTree& tree, const std::wstring& name) {
  std::vector<std::wstring> out(tree.classes.size());
  for (std::size_t i = 0; i < tree.classes.size(); ++i)
    if (!tree.classes[i].declared.empty()) out[i] = name;
  return out;
}

}  // namespace

FddModel standardMim() {
  FddModel mim;
  mim.fileName = kMimName;
  mim.interactions.classes.emplace_back();
  mim.interactions.classes[0].name = L"HLAinteractionRoot";
  mim.objects.classes.emplace_back();
  mim.objects.classes[0].name = L"HLAobjectRoot";
  mim.objects.classes[0].declared.push_back(0);
  mim.objects.members.push_back(FddMember{L"HLAprivilegeToDeleteObject", 0});
  return mim;
}

FddModel mergeModules(FddModel base, const std::wstring& baseName,
                      const std::vector<std::wstring>& modules) {
  std::vector<std::wstring> interactionOrigin = origins(base.interactions, baseName);
  std::vector<std::wstring> objectOrigin = origins(base.objects, baseName);
  for (const std::wstring& path : modules) {
    const FddModel module = parseFddFile(path);
    mergeTree(base.interactions, interactionOrigin, module.interactions, path, L"interaction");
    mergeTree(base.objects, objectOrigin, module.objects, path, L"object");
  }
  base.fileName = modules.empty() ? baseName : modules.back();
  const std::string error = base.index();
  if (!error.empty())
    throw RtiError(Fault::ErrorReadingFDD, L"error reading the FOM modules: " + fromUtf8(error));
  return base;
}

void checkModulesKnown(const FddModel& federation, const std::vector<std::wstring>& modules) {
  for (const std::wstring& path : modules) {
    const FddModel module = parseFddFile(path);
    for (const auto& [tree, have, kind] :
         {std::tuple<const FddTree&, const FddTree&, const wchar_t*>{
              module.interactions, federation.interactions, L"interaction"},
          std::tuple<const FddTree&, const FddTree&, const wchar_t*>{
              module.objects, federation.objects, L"object"}}) {
      for (std::uint32_t i = 0; i < tree.classes.size(); ++i) {
        const std::wstring& name = tree.classes[i].qualified;
        const std::uint32_t cls = have.findClass(name);
        if (cls == kNoClass || have.classes[cls].qualified != name)
          throw ModuleConflict(std::wstring(kind) + L" class " + name + L" of '" + path +
                               L"' is not in the federation's object model (" +
                               federation.fileName + L")");
        for (std::uint32_t m : tree.classes[i].declared)
          if (have.findMember(cls, tree.members[m].name) == kNoClass)
            throw ModuleConflict(std::wstring(kind) + L" class " + name + L" of '" + path +
                                 L"' has " + tree.members[m].name +
                                 L", which the federation's object model (" + federation.fileName +
                                 L") does not");
      }
    }
  }
}

}  // namespace vcrti
